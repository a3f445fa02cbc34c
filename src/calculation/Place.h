// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace calculation {

// A geodetic latitude with its sine and cosine, which every altitude needs.
class Latitude final
{
public:
    // degrees: -90 to 90.
    [[nodiscard]] static Latitude FromDegrees(double degrees);

    [[nodiscard]] double Sine() const { return m_sine; }
    [[nodiscard]] double Cosine() const { return m_cosine; }
    [[nodiscard]] bool IsNorthern() const { return m_sine >= 0.0; }

private:
    double m_sine = 0.0;
    double m_cosine = 1.0;
};

// Where on earth: hundredths of a degree, north and east positive. A latitude beyond a pole is that pole;
// longitudes go round.
struct Place
{
    std::int16_t latitude = 0;
    std::int16_t longitude = 0;

    [[nodiscard]] double LatitudeDegrees() const;
    [[nodiscard]] double LongitudeDegrees() const { return longitude / 100.0; }
    [[nodiscard]] double LongitudeTurns() const { return longitude / 36000.0; }
};

// Initial bearing of the great circle to the Kaaba (21.4225 N, 39.8262 E) on the sphere (Snyder, "Map
// Projections: A Working Manual", USGS Professional Paper 1395, 1987, formula 5-4b), degrees clockwise
// from true north, 0 <= bearing < 360. 0 at the Kaaba and at its antipode, where every direction or none
// leads there. At a pole "north" is the direction in which the place's own meridian runs on, so that the
// bearing follows the longitude given.
[[nodiscard]] double QiblaBearing(const Place& place);

} // namespace calculation
