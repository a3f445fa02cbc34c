// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/ListeningSocket.h"
#include "messages/ChannelOptions.h"
#include "messages/OperatorAlerts.h"
#include "messages/SignupOptions.h"
#include "protocol/RequestLimits.h"
#include "store/Store.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// The configuration is unusable. The text is one line for the first mistake: file, line, key, reason.
class SettingsError : public std::runtime_error
{
public:
    /// @param lines one for each mistake, at least one. A line break that is quoted from the file becomes a
    ///   space
    explicit SettingsError(std::vector<std::string> lines);
    [[nodiscard]] const std::vector<std::string>& Lines() const { return m_lines; }

private:
    std::vector<std::string> m_lines;
};

using ListenAddress = boost::asio::ip::tcp::endpoint;

/// The configuration of the service. Each member is a key of the configuration file, described in
/// server/service.toml.example; missing keys keep these defaults.
struct Settings
{
    struct Http
    {
        ListenAddress listen = ParseListenAddress("127.0.0.1:8750");
        std::string baseUrl = "http://localhost:8750"; ///< without a slash at the end
        std::vector<std::string> proxies;              ///< addresses whose X-Forwarded-For is trusted
        std::int64_t threads = 0;                      ///< 0: one for each core
        std::int64_t connections = 10'000;
        std::int64_t connectionsPerAddress = 1'000;
    } http;

    struct StoreSettings
    {
        std::string url = "sqlite:state/service.db";
    } store;

    struct KeySettings
    {
        std::filesystem::path folder = "state/keys";
    } keys;

    struct PlacesSettings
    {
        std::filesystem::path file = "state/places.bin";
    } places;

    struct MetricsSettings
    {
        ListenAddress listen = ParseListenAddress("127.0.0.1:8751");
    } metrics;

    struct Service
    {
        std::vector<std::string> dists; ///< distributions that are counted by name
    } service;

    struct Messages
    {
        std::vector<std::string> channels;          ///< "spool", and names of further channels
        std::vector<ChannelOptions> channelOptions; ///< of these channels
        std::string signupAddress;
        std::filesystem::path spool = "state/spool";
        std::int64_t spendPerDay = 0;     ///< the sum of the channels' prices; 0 for no limit
        std::string language = "en";      ///< of the texts
        SignupOptions signups;            ///< without the invite words
        std::filesystem::path inviteFile; ///< empty if anyone may sign up
        RoadOptions roads;
        std::vector<HookOptions> hooks;
        std::int64_t wrongCodesAlarm = 100; ///< within an hour
    } messages;

    struct Operator
    {
        std::string address; ///< normalised mail address or ntfy topic; empty for the log alone
        OperatorLimits limits;
    } notices;

    LimitOptions limits;

    struct Log
    {
        std::string level = "info"; ///< "info", "warning" or "error"
    } log;

    /// The text of each value by its key, to compare two configurations.
    using Values = std::map<std::string, std::string, std::less<>>;
    Values values;
};

/// The keys whose values differ between two configurations.
[[nodiscard]] std::vector<std::string> ChangedKeys(const Settings& before, const Settings& after);

/// Throws SettingsError for a file that can't be read, is not valid TOML, or has an unknown key or an invalid
/// value.
[[nodiscard]] Settings ReadSettings(const std::filesystem::path& file);
/// The same from a text; errors name it as @p name.
[[nodiscard]] Settings ParseSettings(std::string_view text, std::string_view name);

} // namespace beacond
