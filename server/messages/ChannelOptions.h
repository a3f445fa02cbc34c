// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace beacond {

/// The configuration of a channel. Each member is a key of [[messages.channel]], described in
/// server/service.toml.example.
struct ChannelOptions
{
    std::string name{};
    std::string type{}; ///< "smtp", "ntfy", "http" or "spool"
    std::string kind{}; ///< of its addresses: "mail", "sms" or "ntfy"
    double perSecond = 10;
    std::int64_t connections = 4;
    std::int64_t price = 0;
    std::chrono::seconds timeout{10}; ///< of one message
    std::filesystem::path caFile{};   ///< certificates to trust; empty for those of the system

    std::string server{};                 ///< smtp: host and port
    std::string tls = "starttls";         ///< smtp: or "tls", or "none" on the loopback
    std::string from{};                   ///< smtp: address of the sender
    std::string replyTo{};                ///< smtp: messages.signup_address, which takes STOP
    std::string user{};                   ///< smtp: empty for no authentication
    std::filesystem::path passwordFile{}; ///< smtp

    std::vector<std::string> servers{}; ///< ntfy: base addresses; a topic elsewhere is refused

    std::string method = "POST";                 ///< http: or "GET", "PUT"
    std::string url{};                           ///< http
    std::vector<std::string> headers{};          ///< http: "Name: value"
    std::string body{};                          ///< http
    std::map<std::string, std::string> bodies{}; ///< http: by language, in place of body
    std::string bodyType = "form"; ///< http: or "json", "text"; the encoding of its placeholders
    std::vector<std::int64_t> accepted = {200, 201, 202, 204};     ///< http: statuses
    std::string acceptedText{};                                    ///< http: an accepted reply contains it
    std::vector<std::int64_t> refused = {400, 404, 410, 413, 422}; ///< http: statuses that no retry changes
    std::vector<std::int64_t> notTaken = {401, 402, 403, 429}; ///< http: statuses without which the provider
                                                               ///< may have the message
    std::string refusedText{}; ///< http: a reply that contains it refuses for good

    std::filesystem::path secretFile{}; ///< http: for the placeholder {secret}; ntfy: access token

    std::filesystem::path folder{}; ///< spool
};

/// A mistake in the options of a channel.
struct ChannelProblem
{
    std::string key; ///< of the configuration, below [[messages.channel]]
    std::string reason;
};

/// The first mistake. Opens no file.
[[nodiscard]] std::optional<ChannelProblem> ProblemOf(const ChannelOptions& options);

} // namespace beacond
