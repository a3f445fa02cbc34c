// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/AlternateNames.h"

#include "places/Dumps.h"
#include "places/Gazetteer.h"
#include "places/ImportReport.h"
#include "places/Numbers.h"
#include "places/TableFile.h"
#include "places/Tokens.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace beacond {

namespace {

enum Column : std::size_t { kPlace = 1, kLanguage, kName, kFewestColumns = 8 };

// The largest cities have some 10 KiB of names.
constexpr std::size_t kMostBytes = std::size_t{64} << 10;

/// Whether the column names a language: nothing, a code of ISO 639 ("ar", "zh-Hant"), or Pinyin. Otherwise it
/// names a kind of code: "link", "post", "iata".
bool IsLanguage(std::string_view language)
{
    const std::string_view code = language.substr(0, language.find('-'));
    const bool isCode = (code.size() == 2 || code.size() == 3) &&
                        std::all_of(code.begin(), code.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    return language.empty() || isCode || language == "piny";
}

bool HasAlias(const GazetteerPlace& place, const std::string& alias)
{
    const std::string& all = place.aliases;
    for (std::size_t at = all.find(alias); at != std::string::npos; at = all.find(alias, at + 1)) {
        const std::size_t end = at + alias.size();
        if ((at == 0 || all[at - 1] == ',') && (end == all.size() || all[end] == ','))
            return true;
    }
    return alias == place.name;
}

/// The reason why the name is not added, or null.
const char* Add(GazetteerPlace& place, std::string_view name)
{
    if (!IsText(name))
        return "alternate name: not valid text";
    std::string alias(name);
    std::replace(alias.begin(), alias.end(), ',', ' '); // separates the aliases; a search ignores both
    if (place.aliases.size() + alias.size() > kMostBytes)
        return "alternate name: its place has too many names";
    if (HasAlias(place, alias))
        return nullptr;
    place.aliases.append(",").append(alias);
    return nullptr;
}

} // namespace

void AddAlternateNames(const Dumps& dumps, Gazetteer& gazetteer, ImportReport& report)
{
    std::unordered_map<std::uint32_t, std::size_t> index;
    for (std::size_t i = 0; i < gazetteer.places.size(); ++i)
        index.emplace(gazetteer.places[i].id, i);
    dumps.ForEach(DumpKind::AlternateNames, [&](const Columns& row) {
        const auto id = row.size() >= kFewestColumns ? NumberIn<std::uint32_t>(row[kPlace]) : std::nullopt;
        const auto place = id ? index.find(*id) : index.end();
        const char* fault = nullptr;
        if (!id)
            fault = "alternate name: not 8 columns with the id of a place";
        else if (place == index.end())
            fault = "alternate name: of no place in the tables";
        else if (!IsLanguage(row[kLanguage]))
            fault = "alternate name: a code or a link";
        else
            fault = Add(gazetteer.places[place->second], row[kName]);
        if (fault)
            report.Skip(fault, row);
    });
}

} // namespace beacond
