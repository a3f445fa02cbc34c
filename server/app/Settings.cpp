// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Settings.h"

#include "http/ProxyList.h"

#include <boost/asio/ip/address.hpp>
#include <toml++/toml.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <set>
#include <sstream>

namespace beacond {

namespace {

// Reads the keys of one file, and knows afterwards which of the file's keys were not asked for.
class Reader final
{
public:
    Reader(const toml::table& root, std::string_view name)
        : m_root(root)
        , m_name(name)
    {
    }

    // Each takes the value of a key, if the file has it, and leaves the default otherwise.
    void Take(std::string_view key, std::string& value);
    void Take(std::string_view key, std::filesystem::path& value);
    void Take(std::string_view key, std::int64_t& value, std::int64_t lowest, std::int64_t highest);
    void Take(std::string_view key, std::vector<std::string>& value);
    void Take(std::string_view key, ListenAddress& value);

    [[noreturn]] void Fail(std::string_view key, const std::string& reason) const;
    void RefuseUnknown() const;

private:
    const toml::node* Find(std::string_view key);
    void RefuseUnknown(const toml::table& table, const std::string& prefix) const;
    [[noreturn]] void FailAt(const toml::node* node, std::string_view key, const std::string& reason) const;

    const toml::table& m_root;
    std::string_view m_name;
    std::set<std::string, std::less<>> m_known;
};

const toml::node* Reader::Find(std::string_view key)
{
    m_known.emplace(key);
    return m_root.at_path(key).node();
}

void Reader::FailAt(const toml::node* node, std::string_view key, const std::string& reason) const
{
    std::ostringstream text;
    text << m_name;
    if (node != nullptr) {
        text << ':' << node->source().begin.line;
    }
    text << ": " << key << ": " << reason;
    throw SettingsError(text.str());
}

void Reader::Fail(std::string_view key, const std::string& reason) const
{
    FailAt(m_root.at_path(key).node(), key, reason);
}

void Reader::Take(std::string_view key, std::string& value)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const auto text = node->value_exact<std::string>();
        if (!text) {
            FailAt(node, key, "a text in quotes is expected");
        }
        value = *text;
    }
}

void Reader::Take(std::string_view key, std::filesystem::path& value)
{
    std::string text = value.string();
    Take(key, text);
    if (text.empty()) {
        Fail(key, "a path is expected");
    }
    value = text;
}

void Reader::Take(std::string_view key, std::int64_t& value, std::int64_t lowest, std::int64_t highest)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const auto number = node->value_exact<std::int64_t>();
        if (!number || *number < lowest || *number > highest) {
            FailAt(node, key,
                   "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
                       " is expected");
        }
        value = *number;
    }
}

void Reader::Take(std::string_view key, std::vector<std::string>& value)
{
    const toml::node* const node = Find(key);
    if (node == nullptr) {
        return;
    }
    const toml::array* const items = node->as_array();
    if (items == nullptr || (!items->empty() && !items->is_homogeneous(toml::node_type::string))) {
        FailAt(node, key, "a list of texts is expected");
    }
    value.clear();
    for (const toml::node& item : *items) {
        value.push_back(item.value_or(std::string()));
    }
}

void Reader::Take(std::string_view key, ListenAddress& value)
{
    std::string text;
    Take(key, text);
    if (m_root.at_path(key).node() == nullptr) {
        return;
    }
    try {
        value = ParseListenAddress(text);
    } catch (const std::invalid_argument& error) {
        Fail(key, error.what());
    }
}

void Reader::RefuseUnknown() const
{
    RefuseUnknown(m_root, "");
}

void Reader::RefuseUnknown(const toml::table& table, const std::string& prefix) const
{
    for (const auto& [name, node] : table) {
        const std::string key = prefix + std::string(name.str());
        if (name.str().find('.') != std::string_view::npos) {
            FailAt(&node, key, "unknown key: a name in quotes is no table and key");
        }
        const auto isWithin = [&](const std::string& known) { return known.starts_with(key + '.'); };
        if (const toml::table* const inner = node.as_table();
            inner != nullptr && std::any_of(m_known.begin(), m_known.end(), isWithin)) {
            RefuseUnknown(*inner, key + '.');
        } else if (!m_known.contains(key)) {
            FailAt(&node, key, "unknown key");
        }
    }
}

void CheckBaseUrl(const Reader& reader, std::string& url)
{
    const std::size_t host = url.starts_with("https://") ? 8 : url.starts_with("http://") ? 7 : 0;
    while (url.ends_with('/')) {
        url.pop_back();
    }
    const bool isPlain = std::all_of(url.begin(), url.end(), [](char c) { return c > ' ' && c < '\x7F'; });
    if (host == 0 || url.size() <= host || !isPlain || url.find_first_of("?#\"<>") != std::string::npos) {
        reader.Fail("http.base_url",
                    "an http or https address is expected, such as \"https://service.example.org\"");
    }
}

void TakeLimits(Reader& reader, LimitOptions& limits)
{
    constexpr std::int64_t kMost = 1'000'000;
    reader.Take("limits.network_per_minute", limits.networkPerMinute, 0, kMost);
    reader.Take("limits.network_burst", limits.networkBurst, 1, kMost);
    reader.Take("limits.installation_per_minute", limits.installationPerMinute, 0, kMost);
    reader.Take("limits.installation_burst", limits.installationBurst, 1, kMost);
    std::int64_t overload = limits.overload.count();
    reader.Take("limits.overload_milliseconds", overload, 0, 60'000);
    limits.overload = std::chrono::milliseconds(overload);
}

Settings Read(Reader& reader)
{
    Settings settings;
    reader.Take("http.listen", settings.http.listen);
    reader.Take("http.base_url", settings.http.baseUrl);
    CheckBaseUrl(reader, settings.http.baseUrl);
    reader.Take("http.proxies", settings.http.proxies);
    try {
        const ProxyList proxies(settings.http.proxies);
    } catch (const std::exception& error) {
        reader.Fail("http.proxies", error.what());
    }
    reader.Take("http.threads", settings.http.threads, 0, 256);
    reader.Take("http.connections", settings.http.connections, 1, 1'000'000);
    reader.Take("http.connections_per_address", settings.http.connectionsPerAddress, 1, 1'000'000);
    reader.Take("store.url", settings.store.url);
    // SQLite has names with a colon that stand for no file.
    if (!settings.store.url.starts_with("sqlite:") || settings.store.url.size() == 7 ||
        settings.store.url[7] == ':') {
        reader.Fail("store.url", "\"sqlite:\" and a path are expected");
    }
    reader.Take("keys.folder", settings.keys.folder);
    reader.Take("places.file", settings.places.file);
    reader.Take("metrics.listen", settings.metrics.listen);
    reader.Take("service.dists", settings.service.dists);
    reader.Take("messages.channels", settings.messages.channels);
    for (const std::string& channel : settings.messages.channels) {
        if (channel != "spool") {
            reader.Fail("messages.channels", "\"" + channel + "\" is no channel; \"spool\" is one");
        }
    }
    reader.Take("messages.signup_address", settings.messages.signupAddress);
    reader.Take("messages.spool", settings.messages.spool);
    constexpr std::int64_t kMostSignups = 100'000;
    reader.Take("messages.signups_per_network", settings.messages.signupsPerNetwork, 1, kMostSignups);
    reader.Take("messages.signups_per_address", settings.messages.signups.ofAnAddress, 1, kMostSignups);
    reader.Take("messages.signups_per_domain", settings.messages.signups.ofADomain, 1, kMostSignups);
    reader.Take("messages.signups_per_day", settings.messages.signups.inAll, 1, kMostSignups);
    reader.Take("messages.wrong_codes_alarm", settings.messages.wrongCodesAlarm, 1, 1'000'000);
    TakeLimits(reader, settings.limits);
    reader.Take("log.level", settings.log.level);
    constexpr std::array<std::string_view, 4> kLevels = {"debug", "info", "warning", "error"};
    if (std::find(kLevels.begin(), kLevels.end(), settings.log.level) == kLevels.end()) {
        reader.Fail("log.level", "\"debug\", \"info\", \"warning\" or \"error\" is expected");
    }
    reader.RefuseUnknown();
    return settings;
}

} // namespace

Settings ParseSettings(std::string_view text, std::string_view name)
{
    try {
        const toml::table root = toml::parse(text);
        Reader reader(root, name);
        return Read(reader);
    } catch (const toml::parse_error& error) {
        std::ostringstream line;
        line << name << ':' << error.source().begin.line << ": " << error.description();
        throw SettingsError(line.str());
    }
}

Settings ReadSettings(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (std::filesystem::is_directory(file) || !stream) {
        throw SettingsError(file.string() + ": can't be read");
    }
    return ParseSettings(std::string(std::istreambuf_iterator<char>(stream), {}), file.string());
}

} // namespace beacond
