// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Settings.h"

#include "app/ChannelSettings.h"
#include "app/RoadSettings.h"
#include "app/SettingsReader.h"
#include "http/ProxyList.h"
#include "messages/Address.h"
#include "messages/TextWording.h"

#include <toml++/toml.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <utility>

namespace beacond {

namespace {

std::vector<std::string> EachOnOneLine(std::vector<std::string> lines)
{
    for (std::string& line : lines) {
        std::replace_if(
            line.begin(), line.end(), [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; }, ' ');
    }
    return lines;
}

void CheckBaseUrl(SettingsReader& reader, std::string& url)
{
    const std::size_t host = url.starts_with("https://") ? 8 : url.starts_with("http://") ? 7 : 0;
    while (url.ends_with('/')) {
        url.pop_back();
    }
    const bool isPlain = std::all_of(url.begin(), url.end(), [](char c) { return c > ' ' && c < '\x7F'; });
    if (host == 0 || url.size() <= host || !isPlain || url.find_first_of("?#\"<>") != std::string::npos) {
        reader.AddError("http.base_url",
                        "an http or https address is expected, such as \"https://service.example.org\"");
    }
}

void ReadLimits(SettingsReader& reader, LimitOptions& limits)
{
    constexpr std::int64_t kMost = 1'000'000;
    reader.Read("limits.network_per_minute", limits.networkPerMinute, 0, kMost);
    reader.Read("limits.network_burst", limits.networkBurst, 1, kMost);
    reader.Read("limits.installation_per_minute", limits.installationPerMinute, 0, kMost);
    reader.Read("limits.installation_burst", limits.installationBurst, 1, kMost);
    std::int64_t overload = limits.overload.count();
    reader.Read("limits.overload_milliseconds", overload, 0, 60'000);
    limits.overload = std::chrono::milliseconds(overload);
}

void ReadOperator(SettingsReader& reader, Settings::Operator& notices)
{
    reader.Read("operator.address", notices.address);
    if (!notices.address.empty()) {
        const std::optional<Address> address = ParseAddress(notices.address);
        if (address && address->kind != AddressKind::Sms) {
            notices.address = address->text;
        } else {
            reader.AddError("operator.address", "a mail address or an ntfy topic is expected");
        }
    }
    reader.Read("operator.outbox_minutes", notices.limits.outboxMinutes, 1, 10);
    reader.Read("operator.channel_failures", notices.limits.channelFailures, 1, 1'000'000);
}

Settings ReadAll(SettingsReader& reader)
{
    Settings settings;
    reader.Read("http.listen", settings.http.listen);
    reader.Read("http.base_url", settings.http.baseUrl);
    CheckBaseUrl(reader, settings.http.baseUrl);
    reader.Read("http.proxies", settings.http.proxies);
    try {
        const ProxyList proxies(settings.http.proxies);
    } catch (const std::exception& error) {
        reader.AddError("http.proxies", error.what());
    }
    reader.Read("http.threads", settings.http.threads, 0, 256);
    reader.Read("http.connections", settings.http.connections, 1, 1'000'000);
    reader.Read("http.connections_per_address", settings.http.connectionsPerAddress, 1, 1'000'000);
    reader.Read("store.url", settings.store.url);
    // SQLite has special names with a colon that are not files.
    if (!settings.store.url.starts_with("sqlite:") || settings.store.url.size() == 7 ||
        settings.store.url[7] == ':') {
        reader.AddError("store.url", "\"sqlite:\" and a path are expected");
    }
    reader.Read("keys.folder", settings.keys.folder);
    reader.Read("places.file", settings.places.file);
    reader.Read("metrics.listen", settings.metrics.listen);
    reader.Read("service.dists", settings.service.dists);
    reader.Read("messages.channels", settings.messages.channels);
    reader.Read("messages.signup_address", settings.messages.signupAddress);
    reader.Read("messages.spool", settings.messages.spool);
    reader.Read("messages.spend_per_day", settings.messages.spendPerDay, 0, 1'000'000'000'000);
    reader.Read("messages.language", settings.messages.language);
    if (!IsTextLanguage(settings.messages.language)) {
        reader.AddError("messages.language", "one of these is expected: " + TextLanguages());
    }
    settings.messages.channelOptions =
        ReadChannels(reader, settings.messages.channels, settings.messages.spool);
    for (ChannelOptions& channel : settings.messages.channelOptions) {
        channel.replyTo = settings.messages.signupAddress;
        if (channel.price > 0 && settings.messages.spendPerDay == 0) {
            reader.AddError("messages.spend_per_day",
                            "a limit is expected, since the channel \"" + channel.name + "\" has a price");
        }
    }
    ReadRoads(reader, settings.messages);
    reader.Read("messages.wrong_codes_alarm", settings.messages.wrongCodesAlarm, 1, 1'000'000);
    ReadOperator(reader, settings.notices);
    ReadLimits(reader, settings.limits);
    reader.Read("log.level", settings.log.level);
    constexpr std::array<std::string_view, 3> kLevels = {"info", "warning", "error"};
    if (std::find(kLevels.begin(), kLevels.end(), settings.log.level) == kLevels.end()) {
        reader.AddError("log.level", "\"info\", \"warning\" or \"error\" is expected");
    }
    reader.RequireNoErrors();
    settings.values = reader.Values();
    return settings;
}

} // namespace

SettingsError::SettingsError(std::vector<std::string> lines)
    : std::runtime_error(EachOnOneLine({lines.front()}).front())
    , m_lines(EachOnOneLine(std::move(lines)))
{
}

std::vector<std::string> ChangedKeys(const Settings& before, const Settings& after)
{
    std::vector<std::string> keys;
    for (const auto& [key, value] : after.values) {
        const auto found = before.values.find(key);
        if (found == before.values.end() || found->second != value) {
            keys.push_back(key);
        }
    }
    return keys;
}

Settings ParseSettings(std::string_view text, std::string_view name)
{
    try {
        const toml::table root = toml::parse(text);
        SettingsReader reader(root, name);
        return ReadAll(reader);
    } catch (const toml::parse_error& error) {
        std::ostringstream line;
        line << name << ':' << error.source().begin.line << ": " << error.description();
        throw SettingsError({line.str()});
    }
}

Settings ReadSettings(const std::filesystem::path& file)
{
    namespace fs = std::filesystem;
    std::error_code failure;
    // Opening a pipe would wait for a writer.
    if (!fs::is_regular_file(file, failure)) {
        throw SettingsError({file.string() + ": can't be read"});
    }
    const auto state = [&file, &failure] {
        return std::pair(fs::file_size(file, failure), fs::last_write_time(file, failure));
    };
    const auto before = state();
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw SettingsError({file.string() + ": can't be read"});
    }
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    if (state() != before || text.size() != before.first) {
        throw SettingsError({file.string() + ": changed while it was read"});
    }
    return ParseSettings(text, file.string());
}

} // namespace beacond
