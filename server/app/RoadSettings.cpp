// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RoadSettings.h"

#include "app/SettingsReader.h"
#include "messages/IncomingText.h"
#include "support/Ascii.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace beacond {

namespace {

constexpr std::int64_t kMostSignups = 100'000;

void ReadSignups(SettingsReader& reader, SignupOptions& signups)
{
    reader.Read("messages.signups_per_network", signups.ofANetwork, 1, kMostSignups);
    reader.Read("messages.signups_per_address", signups.limits.ofAnAddress, 1, kMostSignups);
    reader.Read("messages.signups_per_domain", signups.limits.ofADomain, 1, kMostSignups);
    reader.Read("messages.signups_per_number_range", signups.ofANumberRange, 1, kMostSignups);
    reader.Read("messages.signups_per_day", signups.limits.inAll, 1, kMostSignups);
    reader.Read("messages.sms_prefixes", signups.phonePrefixes);
    for (const std::string& prefix : signups.phonePrefixes) {
        const bool isPrefix = prefix.size() > 1 && prefix[0] == '+' && prefix[1] != '0' &&
                              std::all_of(prefix.begin() + 1, prefix.end(), &IsDigit);
        if (!isPrefix) {
            reader.AddError("messages.sms_prefixes",
                            "the beginnings of numbers are expected, such as \"+44\"");
        }
    }
}

bool IsToken(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](char c) { return IsLetterOrDigit(c) || c == '-' || c == '_'; });
}

HookOptions ReadHook(SettingsReader& reader, const std::string& table)
{
    HookOptions hook;
    reader.Read(table + ".name", hook.name);
    reader.Read(table + ".proof", hook.proof);
    reader.Read(table + ".header", hook.header);
    reader.ReadOptional(table + ".secret_file", hook.secretFile);
    reader.Read(table + ".format", hook.format);
    reader.Read(table + ".sender", hook.sender);
    reader.Read(table + ".sender_prefix", hook.senderPrefix);
    reader.Read(table + ".text", hook.text);
    reader.Read(table + ".id", hook.id);
    reader.Read(table + ".time", hook.time);
    const struct
    {
        const char* key;
        bool isValid;
        const char* reason;
    } rules[] = {
        {".name", IsToken(hook.name), "letters, digits, hyphens and underscores are expected"},
        {".proof", hook.proof == "hmac-sha256" || hook.proof == "secret",
         R"("hmac-sha256" or "secret" is expected)"},
        {".header", IsToken(hook.header), "the name of the header with the proof is expected"},
        {".secret_file", !hook.secretFile.empty(), "a path is expected"},
        {".format", hook.format == "form" || hook.format == "json", R"("form" or "json" is expected)"},
        {".sender", !hook.sender.empty(), "the name of a field is expected"},
        {".sender_prefix", hook.senderPrefix.empty() || hook.senderPrefix == "+", R"("+" or "" is expected)"},
        {".text", !hook.text.empty(), "the name of a field is expected"},
        {".id", !hook.id.empty(), "the name of a field is expected"},
    };
    for (const auto& rule : rules) {
        if (!rule.isValid) {
            reader.AddError(table + rule.key, rule.reason);
        }
    }
    return hook;
}

} // namespace

void ReadRoads(SettingsReader& reader, Settings::Messages& messages)
{
    ReadSignups(reader, messages.signups);
    reader.ReadOptional("messages.invite_file", messages.inviteFile);
    reader.ReadOptional("messages.maildir", messages.roads.maildir);
    reader.Read("messages.mail_server", messages.roads.mailServer);
    if (!messages.roads.maildir.empty() && messages.roads.mailServer.empty()) {
        reader.AddError("messages.mail_server",
                        "the name of your server in its header Authentication-Results is expected");
    }
    reader.ReadOptional("messages.gammu_inbox", messages.roads.gammuInbox);
    reader.ReadOptional("messages.smstools_incoming", messages.roads.smstoolsIncoming);
    for (const std::string& table : reader.TablesOf("messages.hook")) {
        const HookOptions hook = ReadHook(reader, table);
        const bool isKnown = std::any_of(messages.hooks.begin(), messages.hooks.end(),
                                         [&](const HookOptions& other) { return other.name == hook.name; });
        if (isKnown) {
            reader.AddError(table + ".name", "there is another hook of that name");
        }
        messages.hooks.push_back(hook);
    }
}

std::vector<std::string> ReadInvites(const std::filesystem::path& file)
{
    if (file.empty()) {
        return {};
    }
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::string> words = WordsOf(std::string(std::istreambuf_iterator<char>(stream), {}));
    if (!stream || words.empty()) {
        throw SettingsError({file.string() + ": an invite word on each line is expected"});
    }
    return words;
}

} // namespace beacond
