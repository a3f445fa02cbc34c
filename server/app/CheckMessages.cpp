// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CheckMessages.h"

#include "app/Check.h"
#include "app/Settings.h"
#include "messages/Address.h"
#include "messages/Channels.h"

#include <boost/asio/ip/tcp.hpp>

#include <algorithm>
#include <optional>

namespace beacond {

namespace {

namespace fs = std::filesystem;

struct Endpoint
{
    std::string host;
    std::string port;
};

// The server in "host:port" or in an address such as "https://host:port/path".
Endpoint EndpointIn(const std::string& text)
{
    const std::size_t scheme = text.find("://");
    const std::size_t begin = scheme == std::string::npos ? 0 : scheme + 3;
    const std::string server = text.substr(begin, text.find_first_of("/?#", begin) - begin);
    // The last colon after the bracket of an IPv6 address.
    const std::size_t bracket = server.find(']');
    const std::size_t colon = server.find(':', bracket == std::string::npos ? 0 : bracket);
    std::string host = server.substr(0, colon);
    if (bracket != std::string::npos) {
        host = server.substr(1, bracket - 1);
    }
    const std::string usual = text.starts_with("http://")    ? "80"
                              : text.starts_with("https://") ? "443"
                                                             : "25";
    return {host, colon == std::string::npos ? usual : server.substr(colon + 1)};
}

std::vector<Endpoint> EndpointsOf(const ChannelOptions& channel)
{
    std::vector<Endpoint> endpoints;
    for (const std::string& server : channel.servers) {
        endpoints.push_back(EndpointIn(server));
    }
    for (const std::string& server : {channel.server, channel.url}) {
        if (!server.empty()) {
            endpoints.push_back(EndpointIn(server));
        }
    }
    return endpoints;
}

// Empty if the connection succeeds.
std::string ProblemOfConnecting(const std::string& host, const std::string& port)
{
    boost::asio::ip::tcp::iostream stream;
    stream.expires_after(std::chrono::seconds(5));
    stream.connect(host, port);
    return stream ? "" : "can't connect to " + host + " port " + port + ": " + stream.error().message();
}

void Connect(const ChannelOptions& channel, Findings& findings)
{
    const std::string begin = "messages.channel: " + channel.name + ": ";
    for (const auto& [host, port] : EndpointsOf(channel)) {
        const std::string problem = ProblemOfConnecting(host, port);
        if (!problem.empty()) {
            findings.warnings.push_back(begin + problem);
        }
    }
}

void CheckSecret(const ChannelOptions& channel, const fs::path& file, Findings& findings)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(file, ignored);
    const fs::perms others = fs::perms::group_all | fs::perms::others_all;
    if (!file.empty() && fs::exists(status) && (status.permissions() & others) != fs::perms::none) {
        findings.warnings.push_back("messages.channel: " + channel.name + ": " + file.string() +
                                    ": others than its owner can use it; run chmod 600 on it");
    }
}

void CheckSpool(const ChannelOptions& channel, Findings& findings)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(channel.folder, ignored);
    const fs::perms others = fs::perms::group_all | fs::perms::others_all;
    if (fs::exists(status) && (status.permissions() & others) != fs::perms::none) {
        findings.warnings.push_back("messages.channel: " + channel.name + ": " + channel.folder.string() +
                                    ": others than its owner can use it; run chmod 700 on it");
    }
}

void CheckChannel(const ChannelOptions& channel, bool isConnecting, Findings& findings)
{
    CheckSecret(channel, channel.passwordFile, findings);
    CheckSecret(channel, channel.secretFile, findings);
    try {
        const Channels opened({channel});
    } catch (const std::exception& error) {
        findings.errors.push_back("messages.channel: " + channel.name + ": " + error.what());
    }
    if (isConnecting) {
        Connect(channel, findings);
    }
}

} // namespace

void CheckMessages(const Settings& settings, bool isConnecting, Findings& findings)
{
    const std::vector<ChannelOptions>& channels = settings.messages.channelOptions;
    for (const ChannelOptions& channel : channels) {
        // A spool is a folder, which opening would create.
        if (channel.type == "spool") {
            CheckSpool(channel, findings);
        } else {
            CheckChannel(channel, isConnecting, findings);
        }
    }
    const std::optional<Address> address = ParseAddress(settings.notices.address);
    const bool isServed = address && std::any_of(channels.begin(), channels.end(), [&](const auto& channel) {
                              return channel.kind == NameOf(address->kind);
                          });
    if (address && !isServed) {
        findings.warnings.emplace_back(
            "operator.address: no channel serves addresses of its kind; only the log tells");
    }
}

} // namespace beacond
