// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Settings.h"
#include "fuzz/FuzzTarget.h"
#include "http/ProxyList.h"

#include <optional>
#include <string>

using namespace beacond;

namespace {

/// The settings; nullopt if the text is refused.
std::optional<Settings> SettingsOf(const std::string& text)
{
    try {
        return ParseSettings(text, "service.toml");
    } catch (const SettingsError& error) {
        const std::string line = error.what();
        Demand(line.starts_with("service.toml:"), "a refusal names the file");
        Demand(line.find('\n') == std::string::npos, "a refusal is one line");
        return std::nullopt;
    }
}

bool IsWithin(std::int64_t number, std::int64_t lowest, std::int64_t highest)
{
    return number >= lowest && number <= highest;
}

void CheckSettings(const Settings& settings)
{
    Demand(settings.http.baseUrl.starts_with("http") && !settings.http.baseUrl.ends_with('/'),
           "paths can be appended to the base address");
    Demand(settings.http.baseUrl.find_first_of("\r\n\"<> ") == std::string::npos,
           "the base address can stand in a page and a header");
    Demand(IsWithin(settings.http.threads, 0, 256) && IsWithin(settings.http.connections, 1, 1'000'000) &&
               IsWithin(settings.http.connectionsPerAddress, 1, 1'000'000),
           "numbers are in their ranges");
    Demand(settings.store.url.starts_with("sqlite:"), "the store is of a known kind");
    Demand(!settings.places.file.empty() && !settings.keys.folder.empty() && !settings.messages.spool.empty(),
           "paths are not empty");
    const ProxyList proxies(settings.http.proxies);
    static_cast<void>(proxies);
}

} // namespace

// The text of a configuration file.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (const std::optional<Settings> settings = SettingsOf(text)) {
        CheckSettings(*settings);
        Demand(!SettingsOf(text + "\n[unknown]\nkey = 1\n"), "an unknown key is refused");
    }
    return 0;
}
