// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/IncomingText.h"
#include "messages/SignupOptions.h"

#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace beacond {

/// A hook can't be used; the text gives the reason.
class HookError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A text message that a provider has posted.
struct HookMessage
{
    std::string id; ///< not empty
    std::optional<std::chrono::sys_seconds> time;
    /// Nothing if the sender is no international number, for instance the name of a company.
    std::optional<IncomingText> text;
};

/// The form in which one provider posts text messages.
class Hook final
{
public:
    /// Throws HookError, for instance if the file of the secret can't be read or has fewer than 16
    /// characters.
    explicit Hook(HookOptions options);

    [[nodiscard]] const HookOptions& Options() const { return m_options; }
    /// Whether the sender of the body knows the secret. The time of the comparison does not depend on it.
    /// @param proof the value of the header: the secret, or the HMAC-SHA256 of the body in Base64 or
    ///   hexadecimal digits, which "sha256=" may precede
    [[nodiscard]] bool IsGenuine(std::string_view proof, std::string_view body) const;
    /// Nothing if the body is malformed or has no identifier, or a configured time is missing or unreadable.
    [[nodiscard]] std::optional<HookMessage> Read(std::string_view body) const;

private:
    HookOptions m_options;
    std::string m_secret;
};

/// The time of a text: seconds or milliseconds since 1970, or "2026-11-22T10:00:00Z", also with a fraction
/// of a second or with an offset such as "+01:00".
[[nodiscard]] std::optional<std::chrono::sys_seconds> ParseMessageTime(std::string_view text);

} // namespace beacond
