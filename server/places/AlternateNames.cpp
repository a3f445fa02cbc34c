// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/AlternateNames.h"

#include "places/Dumps.h"
#include "places/Gazetteer.h"
#include "places/ImportReport.h"
#include "places/Numbers.h"
#include "places/TableFile.h"
#include "places/Tokens.h"

#include <unicode/locid.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace beacond {

namespace {

enum Column : std::size_t {
    kPlace = 1,
    kLanguage,
    kName,
    kPreferred,
    kShort,
    kColloquial,
    kHistoric,
    kFewestColumns
};

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

/// Whether one of the names, which commas separate, is `name`.
bool Has(std::string_view names, std::string_view name)
{
    for (std::size_t at = names.find(name); at != std::string_view::npos; at = names.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        if ((at == 0 || names[at - 1] == ',') && (end == names.size() || names[end] == ','))
            return true;
    }
    return false;
}

/// Tells the names by which the people of a country look for its places.
class Languages
{
public:
    /// Whether the code of ISO 639 is of English or of the main language of the country.
    bool IsSpokenIn(std::string_view country, std::string_view language)
    {
        auto known = m_languages.find(country);
        if (known == m_languages.end())
            known = m_languages.emplace(country, MainLanguage(country)).first;
        return language == "en" || language == known->second;
    }

private:
    static std::string MainLanguage(std::string_view country)
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale locale("und", std::string(country).c_str());
        locale.addLikelySubtags(status);
        return U_SUCCESS(status) ? locale.getLanguage() : "";
    }

    std::map<std::string, std::string, std::less<>> m_languages; ///< by country
};

/// The list of names to which the name of a row belongs: a preferred or short name is a spelling of the
/// place.
std::string& ListFor(const Columns& row, GazetteerPlace& place, Languages& languages)
{
    if (row[kHistoric] == "1")
        return place.formerNames;
    const bool isCommon = row[kPreferred] == "1" || row[kShort] == "1";
    const std::string_view country = std::string_view(place.firstDivision).substr(0, 2);
    return isCommon && languages.IsSpokenIn(country, row[kLanguage]) ? place.spellings : place.aliases;
}

/// The reason why the name is not added, or null.
const char* Add(const Columns& row, GazetteerPlace& place, Languages& languages)
{
    if (!IsText(row[kName]))
        return "alternate name: not valid text";
    std::string name(row[kName]);
    std::replace(name.begin(), name.end(), ',', ' '); // separates the names; a search ignores both
    std::string& names = ListFor(row, place, languages);
    if (place.aliases.size() + place.spellings.size() + place.formerNames.size() + name.size() > kMostBytes)
        return "alternate name: its place has too many names";
    if (name != place.name && !Has(names, name))
        names.append(",").append(name);
    return nullptr;
}

} // namespace

void AddAlternateNames(const Dumps& dumps, Gazetteer& gazetteer, ImportReport& report)
{
    std::unordered_map<std::uint32_t, std::size_t> index;
    for (std::size_t i = 0; i < gazetteer.places.size(); ++i)
        index.emplace(gazetteer.places[i].id, i);
    Languages languages;
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
            fault = Add(row, gazetteer.places[place->second], languages);
        if (fault)
            report.Skip(fault, row);
    });
}

} // namespace beacond
