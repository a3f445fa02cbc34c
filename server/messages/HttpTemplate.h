// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/ChannelOptions.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

struct OutgoingMessage;

/// A request to a provider, complete.
struct ProviderRequest
{
    std::string url;
    std::vector<std::string> headers; ///< "Name: value"
    std::string body;
};

/// Fills the placeholders {address}, {number}, {text}, {subject}, {id}, {language} and {secret} of a channel,
/// each encoded for its place. Other braces stay as they are.
/// @return nothing if a value can't stand in a header field
[[nodiscard]] std::optional<ProviderRequest>
FillTemplate(const ChannelOptions& options, const OutgoingMessage& message, std::string_view secret);

/// The first mistake in the url, the headers or the bodies: for instance a placeholder in the host, in the
/// name of a header field or outside a JSON string.
[[nodiscard]] std::optional<ChannelProblem> ProblemOfTemplate(const ChannelOptions& options);

/// The reason why texts must not be sent to that address: not https, except on the loopback, or no address.
[[nodiscard]] std::optional<std::string> ProblemOfAddress(const std::string& url);

/// Whether a host is on the loopback: "localhost", 127.0.0.0/8, "::1".
[[nodiscard]] bool IsLoopbackHost(std::string_view host);

} // namespace beacond
