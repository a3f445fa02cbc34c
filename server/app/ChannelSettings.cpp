// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ChannelSettings.h"

#include "app/SettingsReader.h"

#include <algorithm>
#include <set>

namespace beacond {

namespace {

constexpr char kTables[] = "messages.channel";

std::string DefaultKindOf(const std::string& type)
{
    return type == "http" ? "sms" : type == "ntfy" ? "ntfy" : "mail";
}

// The channel that is available without a table.
ChannelOptions SpoolOptions(const std::filesystem::path& folder)
{
    ChannelOptions options;
    options.name = "spool";
    options.type = "spool";
    options.kind = DefaultKindOf(options.type);
    options.perSecond = 1000;
    options.connections = 1;
    options.folder = folder;
    return options;
}

void ReadOwnKeys(SettingsReader& reader, const std::string& table, ChannelOptions& options)
{
    reader.Read(table + ".server", options.server);
    reader.Read(table + ".tls", options.tls);
    reader.Read(table + ".from", options.from);
    reader.Read(table + ".user", options.user);
    reader.ReadOptional(table + ".password_file", options.passwordFile);
    reader.Read(table + ".servers", options.servers);
    reader.Read(table + ".method", options.method);
    reader.Read(table + ".url", options.url);
    reader.Read(table + ".headers", options.headers);
    reader.Read(table + ".body", options.body);
    reader.Read(table + ".bodies", options.bodies);
    reader.Read(table + ".body_type", options.bodyType);
    reader.Read(table + ".accepted", options.accepted);
    reader.Read(table + ".accepted_text", options.acceptedText);
    reader.Read(table + ".refused", options.refused);
    reader.Read(table + ".not_taken", options.notTaken);
    reader.Read(table + ".refused_text", options.refusedText);
    reader.ReadOptional(table + ".secret_file", options.secretFile);
    reader.ReadOptional(table + ".folder", options.folder);
}

ChannelOptions ReadChannel(SettingsReader& reader, const std::string& table)
{
    ChannelOptions options;
    reader.Read(table + ".name", options.name);
    reader.Read(table + ".type", options.type);
    options.kind = DefaultKindOf(options.type);
    reader.Read(table + ".kind", options.kind);
    reader.Read(table + ".per_second", options.perSecond, 0.001, 10'000);
    reader.Read(table + ".connections", options.connections, 1, 64);
    reader.Read(table + ".price", options.price, 0, 1'000'000'000);
    std::int64_t timeout = options.timeout.count();
    reader.Read(table + ".timeout", timeout, 1, 60);
    options.timeout = std::chrono::seconds(timeout);
    reader.ReadOptional(table + ".ca_file", options.caFile);
    ReadOwnKeys(reader, table, options);
    if (const std::optional<ChannelProblem> problem = ProblemOf(options)) {
        reader.AddError(problem->key.empty() ? table : table + "." + problem->key, problem->reason);
    }
    return options;
}

} // namespace

std::vector<ChannelOptions> ReadChannels(SettingsReader& reader, const std::vector<std::string>& names,
                                         const std::filesystem::path& spool)
{
    std::vector<ChannelOptions> known{SpoolOptions(spool)};
    for (const std::string& table : reader.TablesOf(kTables)) {
        const ChannelOptions options = ReadChannel(reader, table);
        const bool isKnown = std::any_of(known.begin(), known.end(), [&](const ChannelOptions& channel) {
            return channel.name == options.name;
        });
        if (isKnown) {
            reader.AddError(table + ".name", "there is another channel of that name");
        }
        known.push_back(options);
    }
    std::vector<ChannelOptions> used;
    std::set<std::string> kinds;
    for (const std::string& name : names) {
        const auto found = std::find_if(known.begin(), known.end(),
                                        [&](const ChannelOptions& channel) { return channel.name == name; });
        if (found == known.end()) {
            reader.AddError("messages.channels", "\"" + name +
                                                     "\" is not a channel; \"spool\" is one, and each name "
                                                     "in [[messages.channel]]");
        } else if (!kinds.insert(found->kind).second) {
            reader.AddError("messages.channels",
                            "\"" + name + "\" is a second channel for the kind \"" + found->kind + '"');
        } else {
            used.push_back(*found);
        }
    }
    return used;
}

} // namespace beacond
