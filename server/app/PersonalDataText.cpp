// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PersonalDataText.h"

#include "messages/Address.h"
#include "secrets/Keys.h"
#include "store/Store.h"

#include <toml++/toml.h>

#include <array>
#include <ctime>
#include <sstream>
#include <string_view>

namespace beacond {

namespace {

constexpr std::array<std::string_view, 7> kPrayers = {
    "end of the registration", "Fajr", "Shuruq", "Duhr", "Asr", "Maghrib", "Isha"};

std::string_view PrayerName(int prayer)
{
    return kPrayers.at(static_cast<std::size_t>(prayer));
}

toml::table ConsentOf(std::int64_t at, const std::string& source, const std::string& words)
{
    return toml::table{{"time", TimeText(at)}, {"source", source}, {"words", words}};
}

toml::table DeviceOf(const PersonalData& data, const Key& addressKey)
{
    const PersonalData::Device& device = *data.device;
    toml::array installations;
    for (const std::string& hash : data.installations) {
        installations.push_back(HexText(hash));
    }
    toml::array last;
    for (const PersonalData::LastText& text : data.lastTexts) {
        last.push_back(toml::table{{"prayer", PrayerName(text.prayer)}, {"queued", TimeText(text.queuedAt)}});
    }
    toml::array waiting;
    for (const OutboxRow& text : data.waiting) {
        waiting.push_back(
            toml::table{{"prayer", PrayerName(text.prayer)}, {"time", text.time}, {"place", text.place}});
    }
    return toml::table{{"id", device.id},
                       {"address", addressKey.Unseal(device.sealedAddress)},
                       {"kind", device.kind},
                       {"consent", ConsentOf(device.consentAt, device.consentSource, device.consentText)},
                       {"installations", std::move(installations)},
                       {"last_texts", std::move(last)},
                       {"waiting_texts", std::move(waiting)}};
}

toml::table SignupTable(const PersonalData::PendingSignup& signup, const Key& addressKey)
{
    toml::table table{{"consent", ConsentOf(signup.consentAt, signup.consentSource, signup.consentText)},
                      {"code_expires", TimeText(signup.codeExpiresAt)}};
    if (!signup.sealedAddress.empty()) {
        table.insert("address", addressKey.Unseal(signup.sealedAddress));
    }
    if (signup.confirmedAt != 0) {
        table.insert("confirmed", TimeText(signup.confirmedAt));
    }
    return table;
}

} // namespace

std::string PersonalDataText(const Address& address, const PersonalData& data,
                             std::optional<std::int64_t> blockedSince, const Key& addressKey)
{
    toml::array signups;
    for (const PersonalData::PendingSignup& signup : data.signups) {
        signups.push_back(SignupTable(signup, addressKey));
    }
    toml::table all{{"address", address.text},
                    {"kind", NameOf(address.kind)},
                    {"signups_of_the_last_day", std::move(signups)}};
    if (data.device) {
        all.insert("device", DeviceOf(data, addressKey));
    }
    if (blockedSince) {
        all.insert("blocked_since", TimeText(*blockedSince));
    }
    std::ostringstream text;
    text << toml::json_formatter{all};
    return text.str();
}

std::string TimeText(std::int64_t seconds)
{
    const std::time_t time = seconds;
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::array<char, sizeof "2027-03-10T05:07:00Z-and-a-long-year"> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

std::string HexText(const std::string& bytes)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4U];
        text += kDigits[value & 0xFU];
    }
    return text;
}

} // namespace beacond
