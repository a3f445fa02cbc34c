// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Matching.h"

#include "places/Fold.h"
#include "places/PlacesFile.h"
#include "places/TypingError.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string>
#include <tuple>

namespace beacond {

namespace {

// Latin texts of two or three letters are often airport codes or abbreviations.
constexpr std::size_t kLettersOfAnAlias = 4;
constexpr std::size_t kLettersOfAShortText = 2;
constexpr std::size_t kLettersOfALongText = 4;
// The whole name of a village counts at least as a city of 50,000, so that the first rows include it.
constexpr std::uint64_t kLeastWeightOfAWholeName = 50'000'000;
// For shorter texts nearly every name is within one typing error.
constexpr std::size_t kLettersOfATypingError = 4;
// The same is true of aliases, of which a place has many.
constexpr std::size_t kLettersOfATypingErrorInAnAlias = 6;
constexpr std::uint8_t kNotFound = 0xFF;

/// How well a name matches, best first.
enum Rank : std::uint8_t { kWhole, kPrimary, kSpelling, kWord, kAlias, kAliasWord };

/// The factors of the population, by the rank. A whole name counts ten times its beginning: a large city
/// still comes before a village whose name is the city's first word ("Kansas"). A spelling or a later word
/// counts a tenth of the shown name, from four letters on three tenths: "den h" of Den Haag. An alias counts
/// a hundredth: most aliases are the names of other languages. One or two Latin letters seldom are a whole
/// name or begin a later word, so that these count ten times less. The order of large cities depends little
/// on the exact factors.
using Weights = std::array<std::uint64_t, 6>;
constexpr Weights kWeightsOfAShortText = {1000, 1000, 100, 10, 10, 1};
constexpr Weights kWeights = {10'000, 1000, 100, 100, 10, 1};
constexpr Weights kWeightsOfALongText = {10'000, 1000, 300, 300, 10, 1};

const Weights& WeightsOf(std::size_t letters, bool isAscii)
{
    if (letters >= kLettersOfALongText)
        return kWeightsOfALongText;
    return letters <= kLettersOfAShortText && isAscii ? kWeightsOfAShortText : kWeights;
}

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

using Names = std::span<const layout::Name>;

/// Finds places of one scope and remembers the best rank of each.
class Finder
{
public:
    Finder(const PlacesFile& file, const layout::Scope& scope, std::string_view folded)
        : m_file(file)
        , m_regions(file.Regions().subspan(scope.firstRegion, scope.regionCount))
        , m_folded(folded)
        , m_letters(CountLetters(folded))
        , m_isName(m_letters >= kLettersOfAnAlias || !IsAscii(folded))
        , m_weights(WeightsOf(m_letters, IsAscii(folded)))
    {
    }

    std::vector<FoundPlace> Find()
    {
        for (const layout::Region& region : m_regions)
            TakeAll(region, BeginningWith(NamesOf(region), m_folded));
        if (m_found.empty() && m_letters >= kLettersOfATypingError) {
            for (const layout::Region& region : m_regions)
                TakeMistyped(region);
        }
        return std::move(m_found);
    }

private:
    Names NamesOf(const layout::Region& region) const
    {
        return m_file.Names().subspan(region.firstName, region.nameCount);
    }

    Names BeginningWith(Names names, std::string_view prefix) const
    {
        const auto compare = [this, prefix](const layout::Name& name) {
            return std::strncmp(m_file.TextAt(name.text), prefix.data(), prefix.size());
        };
        const auto first = std::partition_point(names.begin(), names.end(),
                                                [&](const layout::Name& n) { return compare(n) < 0; });
        const auto last =
            std::partition_point(first, names.end(), [&](const layout::Name& n) { return compare(n) == 0; });
        return {first, last};
    }

    std::uint8_t RankOf(const layout::Name& name) const
    {
        // If the names in the file are not sorted, a name without the prefix also gets here.
        const bool isExact = m_folded == m_file.TextAt(name.text);
        switch (name.Kind()) {
        case layout::NameKind::Primary:
            return isExact ? kWhole : kPrimary;
        case layout::NameKind::Spelling:
            return isExact && m_isName ? kPrimary : kSpelling;
        case layout::NameKind::Word:
            return isExact && m_isName ? kPrimary : kWord;
        case layout::NameKind::Alias:
            return isExact && m_isName ? kPrimary : kAlias;
        case layout::NameKind::AliasWord:
            break;
        }
        return kAliasWord;
    }

    void TakeAll(const layout::Region& region, Names names)
    {
        if (names.empty())
            return;
        m_best.assign(region.placeCount, kNotFound);
        for (const layout::Name& name : names)
            Take(region, name, RankOf(name));
        Collect(region);
    }

    void Take(const layout::Region& region, const layout::Name& name, std::uint8_t rank)
    {
        const std::uint32_t place = name.Place() - region.firstPlace;
        if (m_best[place] == kNotFound)
            m_taken.push_back(place);
        m_best[place] = std::min(m_best[place], rank);
    }

    /// Of an alias the whole is typed: the beginnings of aliases are like those of many other names.
    bool MayBeMistyped(const layout::Name& name) const
    {
        return name.Kind() <= layout::NameKind::Word ||
               (m_letters >= kLettersOfATypingErrorInAnAlias &&
                CountLetters(m_file.TextAt(name.text)) <= m_letters + 1);
    }

    /// A lookup needs the first letter. The common errors in the first letter are tried one by one; all other
    /// candidates share the first letter with the typed text.
    void TakeMistyped(const layout::Region& region)
    {
        m_best.assign(region.placeCount, kNotFound);
        const Names names = NamesOf(region);
        const std::string_view first = m_folded.substr(0, LetterLength(m_folded));
        for (const layout::Name& name : BeginningWith(names, first)) {
            if (BeginsWithOneError(m_file.TextAt(name.text), m_folded) && MayBeMistyped(name))
                Take(region, name, kAlias);
        }
        for (const std::string& other : VariantsOfFirstLetter(m_folded)) {
            for (const layout::Name& name : BeginningWith(names, other)) {
                if (MayBeMistyped(name))
                    Take(region, name, kAlias);
            }
        }
        Collect(region);
    }

    void Collect(const layout::Region& region)
    {
        for (const std::uint32_t taken : m_taken) {
            const std::uint32_t place = region.firstPlace + taken;
            const std::uint64_t weight =
                m_weights.at(m_best[taken]) * (m_file.Places()[place].population + std::uint64_t{1});
            const bool isWhole = m_best[taken] == kWhole;
            m_found.push_back({place, isWhole ? std::max(weight, kLeastWeightOfAWholeName) : weight});
        }
        m_taken.clear();
    }

    const PlacesFile& m_file;
    std::span<const layout::Region> m_regions;
    std::string_view m_folded;
    std::size_t m_letters;
    bool m_isName; ///< an alias that equals the text is a name of the place, not a code
    const Weights& m_weights;
    std::vector<std::uint8_t> m_best;   ///< best rank of each place of the current region
    std::vector<std::uint32_t> m_taken; ///< the places found in the current region
    std::vector<FoundPlace> m_found;
};

} // namespace

std::vector<FoundPlace> FindPlaces(const PlacesFile& file, const layout::Scope& scope,
                                   std::string_view folded)
{
    if (folded.empty())
        return {};
    return Finder(file, scope, folded).Find();
}

void KeepBest(std::vector<FoundPlace>& found, std::size_t most)
{
    const auto order = [](const FoundPlace& f) { return std::tuple(~f.weight, f.place); };
    const auto isBetter = [&order](const FoundPlace& a, const FoundPlace& b) { return order(a) < order(b); };
    const auto last = found.begin() + static_cast<std::ptrdiff_t>(std::min(most, found.size()));
    std::nth_element(found.begin(), last, found.end(), isBetter);
    std::sort(found.begin(), last, isBetter);
    found.erase(last, found.end());
}

} // namespace beacond
