// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace calculation {

// The sine and cosine of a geodetic latitude, which every altitude needs.
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

// Geographic coordinates in hundredths of a degree, north and east positive. A latitude beyond 90 degrees
// counts as the pole; longitudes wrap around.
struct Place
{
    std::int16_t latitude = 0;
    std::int16_t longitude = 0;

    [[nodiscard]] double LatitudeDegrees() const;
    [[nodiscard]] double LongitudeDegrees() const { return longitude / 100.0; }
    [[nodiscard]] double LongitudeTurns() const { return longitude / 36000.0; }
};

// Initial bearing of the great circle to the Kaaba (21.4225 N, 39.8262 E) on the sphere (Snyder, "Map
// Projections: A Working Manual", USGS Professional Paper 1395, 1987, chapter 5), degrees clockwise
// from true north, 0 <= bearing < 360. 0 at the Kaaba and at its antipode, where it is not defined. At a pole
// it is the limit along the meridian of the given longitude.
[[nodiscard]] double QiblaBearing(const Place& place);

} // namespace calculation
