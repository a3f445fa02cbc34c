// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Arrangement.h"
#include "places/FileContents.h"
#include "places/Fold.h"
#include "places/Gazetteer.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace beacond {

namespace {

/// Adds the names of the places, place by place.
class NameRows
{
public:
    explicit NameRows(FileContents& contents)
        : m_contents(contents)
    {
    }

    void Add(const GazetteerPlace& place, std::uint32_t number)
    {
        m_seen.clear();
        const FoldedName primary = FoldName(place.name);
        const std::vector<FoldedName> spellings = Folded(place.spellings);
        const std::vector<FoldedName> aliases = Folded(place.aliases);
        // In order of rank: only the first of two equal texts is kept.
        AddWhole(primary, number, layout::NameKind::Primary);
        for (const FoldedName& spelling : spellings)
            AddWhole(spelling, number, layout::NameKind::SpellingOrWord);
        for (const FoldedName& alias : aliases)
            AddWhole(alias, number, layout::NameKind::Alias);
        AddWords(primary, number, layout::NameKind::SpellingOrWord);
        for (const FoldedName& spelling : spellings)
            AddWords(spelling, number, layout::NameKind::SpellingOrWord);
        for (const FoldedName& alias : aliases)
            AddWords(alias, number, layout::NameKind::AliasWord);
    }

private:
    static std::vector<FoldedName> Folded(std::string_view names)
    {
        std::vector<FoldedName> folded;
        for (const std::string_view name : SplitNames(names))
            folded.push_back(FoldName(name));
        return folded;
    }

    void AddWhole(const FoldedName& name, std::uint32_t place, layout::NameKind kind)
    {
        if (!name.text.empty() && m_seen.insert(name.text).second)
            Push(m_contents.texts.Append(name.text), place, kind);
    }

    /// Each word begins a further text that extends to the end of the name: "york city" finds New York City.
    void AddWords(const FoldedName& name, std::uint32_t place, layout::NameKind kind)
    {
        for (const std::size_t word : name.words) {
            const std::string rest = name.text.substr(word);
            if (!rest.empty() && m_seen.insert(rest).second)
                Push(m_contents.texts.Append(rest), place, kind);
        }
    }

    void Push(layout::Text text, std::uint32_t place, layout::NameKind kind)
    {
        m_contents.names.push_back({text, place * 4 + static_cast<std::uint32_t>(kind)});
    }

    FileContents& m_contents;
    std::unordered_set<std::string> m_seen; ///< texts of the current place
};

} // namespace

void ArrangeNames(const Gazetteer& gazetteer, FileContents& contents)
{
    for (layout::Region& region : contents.regions) {
        region.firstName = static_cast<std::uint32_t>(contents.names.size());
        NameRows rows(contents);
        for (std::uint32_t i = region.firstPlace; i < region.firstPlace + region.placeCount; ++i) {
            if (!gazetteer.places[i].hidden)
                rows.Add(gazetteer.places[i], i);
        }
        region.nameCount = static_cast<std::uint32_t>(contents.names.size()) - region.firstName;
        const char* texts = contents.texts.Bytes().data();
        std::sort(contents.names.begin() + region.firstName, contents.names.end(),
                  [texts](const layout::Name& a, const layout::Name& b) {
                      const int order = std::strcmp(texts + a.text, texts + b.text);
                      return order != 0 ? order < 0 : a.placeAndKind < b.placeAndKind;
                  });
    }
}

} // namespace beacond
