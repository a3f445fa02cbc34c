// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/PostalJoin.h"

#include "places/Dumps.h"
#include "places/FileContents.h"
#include "places/Fold.h"
#include "places/Gazetteer.h"
#include "places/ImportReport.h"
#include "places/Numbers.h"
#include "places/Overlay.h"
#include "places/PlacesError.h"
#include "places/TextTable.h"
#include "support/Ascii.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <numbers>
#include <set>
#include <tuple>
#include <vector>

namespace beacond {

namespace {

// Columns of GeoNames' tables of postal codes.
enum Column : std::size_t { kCountry, kCode, kPlaceName, kLatitude = 9, kLongitude, kColumns = 12 };

constexpr double kKilometresPerDegree = 111.2;
constexpr double kCellDegrees = 0.5;
constexpr int kCellsAround = 1;
constexpr int kMostCellsAround = 6;
// Of a code of one country. A code of a rural area can name a dozen villages.
constexpr std::size_t kMostPlaces = 5;
constexpr std::size_t kMostNamedPlaces = 20;
constexpr std::size_t kLongestCode = 16;
// The memory of a small machine; GeoNames has five million codes in all countries.
constexpr std::size_t kMostEntries = 50'000'000;
constexpr double kReachKm = 40.0;
// The distance that a code's point may have from its place.
constexpr double kSpreadKm = 2.0;
// Many small places have no population in the table.
constexpr double kSmallest = 100.0;
// A place that is a part of the name that the table gives, before those around it: "Toronto" of "Downtown
// Toronto (Railway Lands)". The place with the whole name comes first.
constexpr double kNamedInPart = 1e20;
constexpr double kNamed = 1e30;
constexpr std::size_t kLettersOfAPart = 4;

bool SharesCodes(std::string_view postalCountry, std::string_view country)
{
    return postalCountry == country || (postalCountry == "US" && HasZipCodes(country));
}

/// Equirectangular approximation at the mean latitude: exact to one per cent over the distances compared
/// here.
double DistanceKm(double latitudeA, double longitudeA, double latitudeB, double longitudeB)
{
    const double east = std::remainder(longitudeA - longitudeB, 360.0) *
                        std::cos((latitudeA + latitudeB) / 2.0 * std::numbers::pi / 180.0);
    return kKilometresPerDegree * std::hypot(latitudeA - latitudeB, east);
}

struct Candidate
{
    std::uint32_t place;
    double distanceKm;
    double weight;
};

/// The order of the countries that have one code: the program asks for codes of the United States and Canada.
std::uint16_t OrderOf(std::string_view country)
{
    if (HasZipCodes(country))
        return 0;
    if (country == "CA")
        return 1;
    return static_cast<std::uint16_t>(static_cast<unsigned char>(country[0]) * 256 +
                                      static_cast<unsigned char>(country[1]));
}

/// The places, indexed by cells of a map grid.
class Grid
{
public:
    explicit Grid(const Gazetteer& gazetteer)
        : m_gazetteer(gazetteer)
    {
        for (std::uint32_t i = 0; i < gazetteer.places.size(); ++i) {
            const GazetteerPlace& place = gazetteer.places[i];
            if (!place.hidden && !place.isCopy)
                m_cells[{Cell(Degrees(place.latitude)), Cell(Degrees(place.longitude))}].push_back(i);
        }
    }

    /// The places of a postal country around a point: those of the neighbouring cells, or of the nearest ring
    /// of cells that has one.
    [[nodiscard]] std::vector<Candidate> Around(std::string_view country, double latitude,
                                                double longitude) const
    {
        std::vector<Candidate> found;
        for (int ring = kCellsAround; found.empty() && ring <= kMostCellsAround; ++ring) {
            for (int y = -ring; y <= ring; ++y) {
                for (int x = -ring; x <= ring; ++x)
                    Collect(country, latitude, longitude, {Cell(latitude) + y, Cell(longitude) + x}, found);
            }
        }
        return found;
    }

private:
    static double Degrees(std::int32_t units) { return units / layout::kUnitsPerDegree; }
    static int Cell(double degrees) { return static_cast<int>(std::floor(degrees / kCellDegrees)); }

    void Collect(std::string_view country, double latitude, double longitude, std::pair<int, int> cell,
                 std::vector<Candidate>& found) const
    {
        const auto places = m_cells.find(cell);
        if (places == m_cells.end())
            return;
        for (const std::uint32_t i : places->second) {
            const GazetteerPlace& place = m_gazetteer.places[i];
            if (!SharesCodes(country, m_gazetteer.regions[place.region].Country()))
                continue;
            const double km =
                DistanceKm(latitude, longitude, Degrees(place.latitude), Degrees(place.longitude));
            // The fourth power ranks a suburb above the city next to it, and the city above its own quarters.
            found.push_back(
                {i, km, std::max<double>(place.population, kSmallest) / std::pow(km + kSpreadKm, 4.0)});
        }
    }

    const Gazetteer& m_gazetteer;
    std::map<std::pair<int, int>, std::vector<std::uint32_t>> m_cells;
};

/// Collects the codes with their places.
class Codes
{
public:
    Codes(const Gazetteer& gazetteer, FileContents& contents, ImportReport& report)
        : m_gazetteer(gazetteer)
        , m_contents(contents)
        , m_report(report)
        , m_grid(gazetteer)
    {
        for (const GazetteerPlace& place : gazetteer.places)
            m_folded.push_back(Fold(place.name));
    }

    /// Adds the code of a row of the operator.
    void AddNewer(const Columns& row)
    {
        if (const std::vector<Candidate> best = Best(row); !best.empty()) {
            ++m_newerRows[std::string(CountryOf(best.front()))];
            Add(row, best);
        }
    }

    /// Adds the code of a row of the packed table, unless the operator's tables have codes of the country of
    /// its place: in the packed table the codes of the territories are those of the United States.
    void AddPacked(const Columns& row)
    {
        const std::vector<Candidate> best = Best(row);
        if (best.empty())
            return;
        const auto newer = m_newerRows.find(CountryOf(best.front()));
        if (newer == m_newerRows.end()) {
            Add(row, best);
            return;
        }
        ReplacedCodes& replaced = m_report.replacedCodes[NameOfCountry(newer->first)];
        ++replaced.packed;
        replaced.imported = newer->second;
    }

    /// Puts the codes into the file.
    void Arrange()
    {
        const char* const texts = m_contents.texts.Bytes().data();
        std::sort(m_entries.begin(), m_entries.end(), [texts](const Entry& a, const Entry& b) {
            if (a.code != b.code)
                return std::strcmp(texts + a.code, texts + b.code) < 0;
            return std::tuple(a.country, -a.weight, a.place) < std::tuple(b.country, -b.weight, b.place);
        });
        std::set<std::uint32_t> places;
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            const Entry& entry = m_entries[i];
            const bool isNewCode = i == 0 || entry.code != m_entries[i - 1].code;
            if (isNewCode || entry.country != m_entries[i - 1].country)
                places.clear();
            m_report.codes += isNewCode ? 1U : 0U;
            const std::size_t most = entry.weight >= kNamed ? kMostNamedPlaces : kMostPlaces;
            if (places.size() < most && places.insert(entry.place).second)
                m_contents.codes.push_back({entry.code, entry.place});
        }
    }

private:
    struct Entry
    {
        layout::Text code;
        std::uint32_t place;
        float weight;
        std::uint16_t country;
    };

    std::string_view CountryOf(const Candidate& candidate) const
    {
        return m_gazetteer.regions[m_gazetteer.places[candidate.place].region].Country();
    }

    std::string NameOfCountry(std::string_view code) const
    {
        return std::find_if(m_gazetteer.regions.begin(), m_gazetteer.regions.end(),
                            [code](const GazetteerRegion& region) { return region.code == code; })
            ->name;
    }

    /// The best places for the code of a row, best first; none if the row is skipped.
    std::vector<Candidate> Best(const Columns& row)
    {
        const bool isComplete = row.size() == kColumns && !NormalPostalCode(row[kCode]).empty() &&
                                row[kCode].size() <= kLongestCode;
        const auto latitude = isComplete ? UnitsIn(row[kLatitude], 90.0) : std::nullopt;
        const auto longitude = isComplete ? UnitsIn(row[kLongitude], 180.0) : std::nullopt;
        if (!latitude || !longitude) {
            m_report.Skip("postal code: not 12 columns with a code and a point", row);
            return {};
        }
        std::vector<Candidate> best = m_grid.Around(row[kCountry], *latitude / layout::kUnitsPerDegree,
                                                    *longitude / layout::kUnitsPerDegree);
        if (best.empty())
            m_report.Skip("postal code: no place near it", row);
        Weigh(best, FoldName(row[kPlaceName]));
        return best;
    }

    void Weigh(std::vector<Candidate>& candidates, const FoldedName& named) const
    {
        for (Candidate& candidate : candidates) {
            const std::string& name = m_folded[candidate.place];
            if (candidate.distanceKm < kReachKm && IsPartOf(named, name))
                candidate.weight =
                    (named.text == name ? kNamed : kNamedInPart) *
                    std::max<double>(m_gazetteer.places[candidate.place].population, kSmallest);
        }
        std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
            return std::tuple(-a.weight, a.place) < std::tuple(-b.weight, b.place);
        });
        std::size_t kept = 0;
        for (const Candidate& candidate : candidates) {
            if (kept == 0 || (kept < kMostPlaces && candidate.distanceKm < kReachKm))
                candidates[kept++] = candidate;
        }
        candidates.resize(kept);
    }

    /// Whether `part` is the name, or words of it.
    static bool IsPartOf(const FoldedName& name, std::string_view part)
    {
        if (part.empty() || name.text == part)
            return !part.empty();
        const auto ends = [&name](std::size_t at) {
            return at == name.text.size() || std::binary_search(name.words.begin(), name.words.end(), at);
        };
        const auto isAt = [&](std::size_t word) {
            return name.text.compare(word, part.size(), part) == 0 && ends(word + part.size());
        };
        return CountLetters(part) >= kLettersOfAPart &&
               (isAt(0) || std::any_of(name.words.begin(), name.words.end(), isAt));
    }

    void Add(const Columns& row, const std::vector<Candidate>& best)
    {
        if (m_entries.size() >= kMostEntries)
            throw PlacesError(row.Position() + ": too many postal codes");
        const layout::Text code = m_contents.texts.Share(NormalPostalCode(row[kCode]));
        for (const Candidate& place : best)
            m_entries.push_back(
                {code, place.place, static_cast<float>(place.weight), OrderOf(CountryOf(place))});
    }

    const Gazetteer& m_gazetteer;
    FileContents& m_contents;
    ImportReport& m_report;
    Grid m_grid;
    std::vector<std::string> m_folded; ///< names of the places
    std::vector<Entry> m_entries;
    std::map<std::string, std::size_t, std::less<>> m_newerRows; ///< of the operator, by country
};

} // namespace

std::string NormalPostalCode(std::string_view code)
{
    std::string normal;
    const icu::UnicodeString text =
        icu::UnicodeString::fromUTF8({code.data(), static_cast<std::int32_t>(code.size())});
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 c = text.char32At(i);
        if (const std::int32_t digit = u_charDigitValue(c); digit >= 0)
            normal.push_back(static_cast<char>('0' + digit));
        else if (c < 0x80 && IsLetterOrDigit(static_cast<char>(c)))
            normal.push_back(ToUpper(static_cast<char>(c)));
    }
    return normal;
}

bool HasZipCodes(std::string_view country)
{
    // The territories are separate countries in the table of places.
    static constexpr std::string_view kCountries[] = {"AS", "GU", "MP", "PR", "US", "VI"};
    return std::find(std::begin(kCountries), std::end(kCountries), country) != std::end(kCountries);
}

void JoinPostalCodes(const TextTable& packed, const TextTable& overlay, const Dumps& dumps,
                     const Gazetteer& gazetteer, FileContents& contents, ImportReport& report)
{
    Codes codes(gazetteer, contents, report);
    dumps.ForEach(DumpKind::PostalCodes, [&codes](const Columns& row) { codes.AddNewer(row); });
    packed.ForEach([&codes](const Columns& row) { codes.AddPacked(row); });
    overlay.ForEach([&codes](const Columns& row) {
        if (row[0] == kAddedPostalCode)
            codes.AddPacked(row.WithoutFirst());
    });
    codes.Arrange();
}

} // namespace beacond
