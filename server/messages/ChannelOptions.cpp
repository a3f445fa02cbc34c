// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/ChannelOptions.h"

#include "messages/HttpTemplate.h"
#include "messages/MailAddress.h"
#include "support/Ascii.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace beacond {

namespace {

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsName(std::string_view text)
{
    constexpr std::size_t kLongest = 32;
    return !text.empty() && text.size() <= kLongest && std::all_of(text.begin(), text.end(), [](char c) {
        return IsLetterOrDigit(c) || c == '-' || c == '_';
    });
}

// The host of "host:port" or "[::1]:port"; empty if there is no port.
std::string_view HostOf(std::string_view server)
{
    constexpr std::size_t kMostDigits = 5;
    const std::size_t colon = server.rfind(':');
    if (colon == std::string_view::npos || colon == 0) {
        return {};
    }
    const std::string_view host = server.substr(0, colon);
    const std::string_view port = server.substr(colon + 1);
    const bool isHost = std::all_of(host.begin(), host.end(), [](char c) {
        return IsLetterOrDigit(c) || std::string_view("-.[]:").find(c) != std::string_view::npos;
    });
    const bool isPort =
        !port.empty() && port.size() <= kMostDigits && std::all_of(port.begin(), port.end(), &IsDigit);
    return isHost && isPort ? host : std::string_view();
}

std::optional<ChannelProblem> ProblemOfSmtp(const ChannelOptions& options)
{
    const std::string_view host = HostOf(options.server);
    if (host.empty()) {
        return ChannelProblem{"server", R"(host and port are expected, such as "smtp.example.org:587")"};
    }
    if (!IsOneOf(options.tls, {"starttls", "tls", "none"})) {
        return ChannelProblem{"tls", R"("starttls", "tls" or "none" is expected)"};
    }
    if (options.tls == "none" && !IsLoopbackHost(host)) {
        return ChannelProblem{"tls", R"("none" is for a server on the loopback only)"};
    }
    if (NormalisedMailAddress(options.from) != options.from) {
        return ChannelProblem{"from", "a mail address in lower case is expected"};
    }
    if (options.user.empty() != options.passwordFile.empty()) {
        return ChannelProblem{"user", "user and password_file belong together"};
    }
    return std::nullopt;
}

std::optional<ChannelProblem> ProblemOfNtfy(const ChannelOptions& options)
{
    if (options.servers.empty()) {
        return ChannelProblem{"servers", "at least one address is expected"};
    }
    for (const std::string& server : options.servers) {
        if (const auto problem = ProblemOfAddress(server)) {
            return ChannelProblem{"servers", *problem};
        }
        if (server.find('/', server.find("://") + 3) != std::string::npos ||
            server.find_first_of("?#") != std::string::npos) {
            return ChannelProblem{"servers", "an address without a path is expected"};
        }
    }
    if (!options.secretFile.empty() && options.servers.size() > 1) {
        return ChannelProblem{"secret_file", "a token is for a single server"};
    }
    return std::nullopt;
}

std::optional<ChannelProblem> ProblemOfHttp(const ChannelOptions& options)
{
    if (!IsOneOf(options.method, {"GET", "POST", "PUT"})) {
        return ChannelProblem{"method", R"("GET", "POST" or "PUT" is expected)"};
    }
    if (!IsOneOf(options.bodyType, {"form", "json", "text"})) {
        return ChannelProblem{"body_type", R"("form", "json" or "text" is expected)"};
    }
    if (options.accepted.empty()) {
        return ChannelProblem{"accepted", "at least one status is expected"};
    }
    return ProblemOfTemplate(options);
}

} // namespace

std::optional<ChannelProblem> ProblemOf(const ChannelOptions& options)
{
    if (!IsName(options.name)) {
        return ChannelProblem{"name", "up to 32 letters, digits, hyphens and underscores are expected"};
    }
    if (!IsOneOf(options.type, {"smtp", "ntfy", "http", "spool"})) {
        return ChannelProblem{"type", R"("smtp", "ntfy", "http" or "spool" is expected)"};
    }
    if (!IsOneOf(options.kind, {"mail", "sms", "ntfy"})) {
        return ChannelProblem{"kind", R"("mail", "sms" or "ntfy" is expected)"};
    }
    if (options.type == "spool" && options.folder.empty()) {
        return ChannelProblem{"folder", "a path is expected"};
    }
    if (options.type == "smtp") {
        return ProblemOfSmtp(options);
    }
    if (options.type == "http") {
        return ProblemOfHttp(options);
    }
    return options.type == "ntfy" ? ProblemOfNtfy(options) : std::nullopt;
}

} // namespace beacond
