// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/PostalJoin.h"

#include "places/FileContents.h"
#include "places/Fold.h"
#include "places/Gazetteer.h"
#include "places/ImportReport.h"
#include "places/Numbers.h"
#include "places/TextTable.h"
#include "support/Ascii.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <numbers>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace beacond {

namespace {

// Columns of GeoNames' tables of postal codes.
enum Column : std::size_t { kCountry, kCode, kPlaceName, kLatitude = 9, kLongitude, kColumns = 12 };

constexpr double kKilometresPerDegree = 111.2;
constexpr double kCellDegrees = 0.5;
constexpr int kCellsAround = 1;
constexpr int kMostCellsAround = 6;
constexpr std::size_t kMostPlaces = 5;
constexpr double kReachKm = 40.0;
// The distance that a code's point may have from its place.
constexpr double kSpreadKm = 2.0;
// Many small places have no population in the table.
constexpr double kSmallest = 100.0;

// Territories share the postal codes of the United States, but are separate countries in the table of places.
bool SharesCodes(std::string_view postalCountry, std::string_view country)
{
    static constexpr std::string_view kTerritories[] = {"AS", "GU", "MP", "PR", "VI"};
    return postalCountry == country ||
           (postalCountry == "US" &&
            std::find(std::begin(kTerritories), std::end(kTerritories), country) != std::end(kTerritories));
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

/// The best places for a code, at least one if there are candidates.
std::vector<std::uint32_t> Best(std::vector<Candidate> candidates, const std::string& named,
                                const Gazetteer& gazetteer)
{
    for (Candidate& candidate : candidates) {
        if (!named.empty() && candidate.distanceKm < kReachKm &&
            Fold(gazetteer.places[candidate.place].name) == named)
            candidate.weight = std::numeric_limits<double>::infinity();
    }
    std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        return std::tuple(-a.weight, a.place) < std::tuple(-b.weight, b.place);
    });
    std::vector<std::uint32_t> best;
    for (const Candidate& candidate : candidates) {
        if (best.empty() || (best.size() < kMostPlaces && candidate.distanceKm < kReachKm))
            best.push_back(candidate.place);
    }
    return best;
}

} // namespace

std::string NormalPostalCode(std::string_view code)
{
    std::string normal;
    for (const char c : code) {
        if (IsLetterOrDigit(c))
            normal.push_back(ToUpper(c));
    }
    return normal;
}

void JoinPostalCodes(const TextTable& postal, const Gazetteer& gazetteer, FileContents& contents,
                     ImportReport& report)
{
    const Grid grid(gazetteer);
    postal.ForEach([&](TextTable::Columns row) {
        const bool complete = row.size() == kColumns;
        const std::string code = complete ? NormalPostalCode(row[kCode]) : std::string();
        const auto latitude = complete ? UnitsIn(row[kLatitude], 90.0) : std::nullopt;
        const auto longitude = complete ? UnitsIn(row[kLongitude], 180.0) : std::nullopt;
        if (code.empty() || !latitude || !longitude) {
            report.Skip("postal code: not 12 columns with a code and a point");
            return;
        }
        const std::vector<std::uint32_t> best =
            Best(grid.Around(row[kCountry], *latitude / layout::kUnitsPerDegree,
                             *longitude / layout::kUnitsPerDegree),
                 Fold(row[kPlaceName]), gazetteer);
        if (best.empty()) {
            report.Skip("postal code: no place near it");
            return;
        }
        ++report.codes;
        for (const std::uint32_t place : best)
            contents.codes.push_back({contents.texts.Share(code), place});
    });
    const char* texts = contents.texts.Bytes().data();
    std::stable_sort(contents.codes.begin(), contents.codes.end(),
                     [texts](const layout::Code& a, const layout::Code& b) {
                         return std::strcmp(texts + a.code, texts + b.code) < 0;
                     });
}

} // namespace beacond
