// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Address.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace beacond {

/// The message with a device ID and a personal code. It does not contain the word "test", which would sign up
/// a person who replies with the message quoted. For phones it fits into one text message of 160 characters.
/// @param isStopRead whether a reply with the word STOP is read
[[nodiscard]] std::string CodeMessage(AddressKind kind, std::int64_t device, std::string_view code,
                                      bool isStopRead);

/// The confirmation that the messages have ended, likewise.
[[nodiscard]] std::string StopMessage();

} // namespace beacond
