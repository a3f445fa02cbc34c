// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Arrangement.h"
#include "places/FileContents.h"
#include "places/Fold.h"
#include "places/Gazetteer.h"
#include "support/Ascii.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

namespace beacond {

namespace {

struct ShortForm
{
    std::string_view brief;
    std::string_view full;
};

// Words that people write in either form, folded.
constexpr std::array kShortForms = {ShortForm{"st", "saint"},   ShortForm{"st", "sankt"},
                                    ShortForm{"ste", "sainte"}, ShortForm{"sta", "santa"},
                                    ShortForm{"sto", "santo"},  ShortForm{"mt", "mount"},
                                    ShortForm{"ft", "fort"},    ShortForm{"cd", "ciudad"}};

/// The name with the word from `begin` to `end` in another form.
FoldedName WithWord(const FoldedName& name, std::size_t begin, std::size_t end, std::string_view word)
{
    FoldedName other = name;
    other.text.replace(begin, end - begin, word);
    for (std::size_t& next : other.words) {
        if (next >= end)
            next = next - (end - begin) + word.size();
    }
    return other;
}

/// The name with one of its words in the other form: "St. Louis" and "Saint Louis". The last word stays,
/// since people abbreviate a word only before another one.
std::vector<FoldedName> OtherForms(const FoldedName& name)
{
    std::vector<FoldedName> others;
    std::size_t begin = 0;
    for (const std::size_t end : name.words) {
        const std::string_view word = std::string_view(name.text).substr(begin, end - begin);
        for (const ShortForm& form : kShortForms) {
            if (word == form.brief || word == form.full)
                others.push_back(WithWord(name, begin, end, word == form.full ? form.brief : form.full));
        }
        begin = end;
    }
    return others;
}

/// "Halle" of "Halle (Saale)", or empty. A number in brackets means a part of the place: "Zürich (Kreis 11)".
std::string_view BeforeBracket(std::string_view name)
{
    const std::size_t bracket = std::min(name.find(" ("), name.size());
    const std::string_view inBrackets = name.substr(bracket);
    const bool isPart = std::any_of(inBrackets.begin(), inBrackets.end(), &IsDigit);
    return inBrackets.empty() || isPart ? std::string_view() : name.substr(0, bracket);
}

constexpr std::array<std::string_view, 5> kGermanCountries = {"AT", "CH", "DE", "LI", "LU"};

/// "Muenchen" of "München", as people write it who have no such key; empty without one of these letters.
std::string WithoutUmlauts(std::string_view name)
{
    static constexpr std::pair<std::string_view, std::string_view> kLetters[] = {
        {"ä", "ae"}, {"ö", "oe"}, {"ü", "ue"}, {"Ä", "Ae"}, {"Ö", "Oe"}, {"Ü", "Ue"}};
    std::string plain(name);
    for (const auto& [letter, pair] : kLetters) {
        for (std::size_t at = plain.find(letter); at != std::string::npos; at = plain.find(letter, at))
            plain.replace(at, letter.size(), pair);
    }
    return plain == name ? std::string() : plain;
}

struct NameRow
{
    std::string text;
    std::uint32_t placeAndKind;
};

/// Collects the names of the places of a region, place by place.
class NameRows
{
public:
    void Add(const GazetteerPlace& place, std::uint32_t number)
    {
        m_seen.clear();
        const bool isGerman = std::find(kGermanCountries.begin(), kGermanCountries.end(),
                                        place.firstDivision.substr(0, 2)) != kGermanCountries.end();
        const FoldedName primary = FoldName(place.name);
        const FoldedName plain = FoldName(isGerman ? WithoutUmlauts(place.name) : std::string());
        std::vector<FoldedName> spellings = Folded(place.spellings);
        if (isGerman) {
            for (FoldedName& spelling : Folded(WithoutUmlauts(place.spellings)))
                spellings.push_back(std::move(spelling));
        }
        const std::vector<FoldedName> aliases = Folded(place.aliases);
        const std::vector<FoldedName> formerNames = Folded(place.formerNames);
        std::vector<FoldedName> forms = OtherForms(primary);
        for (const FoldedName& spelling : spellings) {
            for (FoldedName& other : OtherForms(spelling))
                forms.push_back(std::move(other));
        }
        // In order of rank: only the first of two equal texts is kept.
        AddWhole(primary, number, layout::NameKind::Primary);
        AddWhole(plain, number, layout::NameKind::Primary);
        AddWhole(FoldName(BeforeBracket(place.name)), number, layout::NameKind::Primary);
        for (const FoldedName& spelling : spellings)
            AddWhole(spelling, number, layout::NameKind::Spelling);
        for (const FoldedName& form : forms)
            AddWhole(form, number, layout::NameKind::Word);
        AddWords(primary, number, layout::NameKind::Word);
        AddWords(plain, number, layout::NameKind::Word);
        for (const FoldedName& spelling : spellings)
            AddWords(spelling, number, layout::NameKind::Word);
        for (const FoldedName& form : forms)
            AddWords(form, number, layout::NameKind::Word);
        for (const FoldedName& alias : aliases)
            AddWhole(alias, number, layout::NameKind::Alias);
        for (const FoldedName& alias : aliases)
            AddWords(alias, number, layout::NameKind::AliasWord);
        for (const FoldedName& former : formerNames) {
            AddWhole(former, number, layout::NameKind::AliasWord);
            AddWords(former, number, layout::NameKind::AliasWord);
        }
    }

    /// Puts the names into the file, in the order of the search. Their texts are in that order too, so that a
    /// search for typing errors, which reads all names with one first letter, reads memory in its order.
    void Arrange(FileContents& contents)
    {
        std::sort(m_rows.begin(), m_rows.end(), [](const NameRow& a, const NameRow& b) {
            return std::tie(a.text, a.placeAndKind) < std::tie(b.text, b.placeAndKind);
        });
        layout::Text text = 0;
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            if (i == 0 || m_rows[i].text != m_rows[i - 1].text)
                text = contents.texts.Append(m_rows[i].text);
            contents.names.push_back({text, m_rows[i].placeAndKind});
        }
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
            Push(name.text, place, kind);
    }

    /// Each word begins a further text that extends to the end of the name: "york city" finds New York City.
    void AddWords(const FoldedName& name, std::uint32_t place, layout::NameKind kind)
    {
        for (const std::size_t word : name.words) {
            const std::string rest = name.text.substr(word);
            if (!rest.empty() && m_seen.insert(rest).second)
                Push(rest, place, kind);
        }
    }

    void Push(const std::string& text, std::uint32_t place, layout::NameKind kind)
    {
        m_rows.push_back({text, place * layout::kNameKinds + static_cast<std::uint32_t>(kind)});
    }

    std::vector<NameRow> m_rows;
    std::unordered_set<std::string> m_seen; ///< texts of the current place
};

} // namespace

void ArrangeNames(const Gazetteer& gazetteer, FileContents& contents)
{
    for (layout::Region& region : contents.regions) {
        region.firstName = static_cast<std::uint32_t>(contents.names.size());
        NameRows rows;
        for (std::uint32_t i = region.firstPlace; i < region.firstPlace + region.placeCount; ++i) {
            if (!gazetteer.places[i].hidden)
                rows.Add(gazetteer.places[i], i);
        }
        rows.Arrange(contents);
        region.nameCount = static_cast<std::uint32_t>(contents.names.size()) - region.firstName;
    }
}

} // namespace beacond
