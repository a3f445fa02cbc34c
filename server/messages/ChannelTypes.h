// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Channel.h"

#include <memory>
#include <string>

namespace beacond {

/// A channel of the type "smtp", "http" or "ntfy". Reads the files of its secrets; connects at the first
/// message. Throws ChannelError.
[[nodiscard]] std::unique_ptr<Channel> MakeSmtpChannel(const ChannelOptions& options);
[[nodiscard]] std::unique_ptr<Channel> MakeHttpChannel(const ChannelOptions& options);
[[nodiscard]] std::unique_ptr<Channel> MakeNtfyChannel(const ChannelOptions& options);

/// The first line of a file. Throws ChannelError for a file that is missing or too long, or a line that is
/// empty or not printable ASCII.
/// @param file empty for no secret: the result is empty
[[nodiscard]] std::string ReadSecret(const std::filesystem::path& file);

} // namespace beacond
