// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace beacond {

/// The rules of sign-ups. Each member is a key of [messages], described in server/service.toml.example.
struct SignupOptions
{
    SignupLimits limits;          ///< devicesOfKind is ignored: it follows from the rate of the channel
    std::int64_t ofANetwork = 20; ///< through the form from one network within an hour
    std::int64_t ofANumberRange =
        20; ///< of phone numbers that differ in their last four digits, within a day
    std::vector<std::string> phonePrefixes; ///< numbers with another beginning are not served, such as "+44"
    std::int64_t spendPerDay = 0;           ///< the limit for all messages of a day (UTC); 0 for none
    bool isStopReadFromMail = false;        ///< a reply to a mail of the service arrives in a watched folder
    bool isStopReadFromText = false;        ///< the same for text messages, which may come by a hook
    std::vector<std::string> invites;       ///< a sign-up needs one of these words; empty for none
};

/// The folders from which sign-ups are taken; empty paths for none.
struct RoadOptions
{
    std::filesystem::path maildir;
    std::string mailServer; ///< the authserv-id of the server that delivers into the Maildir
    std::filesystem::path gammuInbox;
    std::filesystem::path smstoolsIncoming;
};

/// A provider of text messages that posts each incoming one to /hook/NAME. Each member is a key of
/// [[messages.hook]].
struct HookOptions
{
    std::string name;
    std::string proof = "hmac-sha256"; ///< of the body with the secret, or "secret": the secret itself
    std::string header;                ///< of the proof
    std::filesystem::path secretFile;
    std::string format = "form"; ///< or "json"
    std::string sender;          ///< the fields; in JSON, names or positions separated by dots
    std::string senderPrefix;    ///< put before the sender, "+" where a provider leaves it out
    std::string text;
    std::string id; ///< the same in each repetition of a message
    std::string
        time; ///< seconds or milliseconds since 1970, or ISO 8601; without it handled ids are kept for ever
};

} // namespace beacond
