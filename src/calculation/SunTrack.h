// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Angle.h"
#include "calculation/Place.h"

namespace calculation {

// The sun over one civil date at one longitude, interpolated between three positions a day apart. Times are
// days from the noon (12h of the local clock) of that date, so that the date is -0.5 to 0.5.
//
// The three coordinates of the sun are interpolated (Meeus, "Astronomical Algorithms", 2nd ed., chapter 3) in
// a frame that turns with the mean sun, in which the sun barely moves. They agree with the theory to 0.05"
// within the date, 0.3" over -1.5 to 1.5 and 2" over -2.5 to 2.5. A date needs the sun at a dozen instants;
// computing the theory at each of them would take three times as long.
class SunTrack final
{
public:
    SunTrack() = default;
    // utNoon: the date's local noon in days of UT from 2000 January 1, 12h. longitudeTurns: east positive.
    SunTrack(double utNoon, double longitudeTurns);

    // Time of a transit, within 0.001 s of that of the track. Index 0 is the transit of the date: the one
    // within the date; if there are two, the one nearer to noon; if there is none, the nearest. The transits
    // before and after it have the indexes -1, 1 and so on.
    [[nodiscard]] double Transit(int index) const;

    struct Sample
    {
        double sine = 0.0;      // of the altitude
        double rate = 0.0;      // of that sine, per day
        double curvature = 0.0; // of that sine, per day squared, as far as it comes from the earth's rotation
    };
    // Geocentric altitude of the sun's centre (Meeus, chapter 13) and its derivatives.
    [[nodiscard]] Sample Altitude(double time, const Latitude& latitude) const;
    // Topocentric altitude of the centre in degrees, without refraction, -90 to 90.
    [[nodiscard]] double Elevation(double time, const Latitude& latitude) const;
    [[nodiscard]] SineCosine Declination(double time) const;

    // The sun's altitude crosses a value between an instant when it is lower and one when it is higher.
    struct Crossing
    {
        double below = 0.0; // an instant when the sun is lower
        double above = 0.0; // an instant when it is higher; before or after the other
        double sine = 0.0;  // of the altitude, geocentric
        double guess = 0.0; // start of the iteration
    };
    // Time of the crossing, within 0.01 s of that of the track. The number of steps is limited for any input.
    [[nodiscard]] double TimeOf(const Crossing& crossing, const Latitude& latitude) const;

    // Sine of the altitude at the upper and at the lower transit of a sun with this declination.
    [[nodiscard]] static double UpperSine(const SineCosine& declination, const Latitude& latitude)
    {
        return latitude.Sine() * declination.sine + latitude.Cosine() * declination.cosine;
    }
    [[nodiscard]] static double LowerSine(const SineCosine& declination, const Latitude& latitude)
    {
        return latitude.Sine() * declination.sine - latitude.Cosine() * declination.cosine;
    }

    // Conversions between the sines of the geocentric and the topocentric altitude of the centre. The
    // parallax in altitude is the horizontal parallax times the cosine of the altitude (Meeus, chapter 40),
    // and so the sines differ by the horizontal parallax times the square of the cosine.
    [[nodiscard]] double GeocentricSine(double topocentricSine) const
    {
        return topocentricSine + m_parallax * (1.0 - topocentricSine * topocentricSine);
    }
    [[nodiscard]] double TopocentricSine(double geocentricSine) const
    {
        return geocentricSine - m_parallax * (1.0 - geocentricSine * geocentricSine);
    }

private:
    struct Parabola
    {
        double constant = 0.0;
        double linear = 0.0;
        double square = 0.0;
        static Parabola Through(double before, double at, double after);
        [[nodiscard]] double At(double time) const { return constant + time * (linear + time * square); }
        [[nodiscard]] double RateAt(double time) const { return linear + 2.0 * time * square; }
    };

    [[nodiscard]] double TransitNear(double time) const;

    Parabola m_x;                   // in the plane of the equator, towards the sun at noon
    Parabola m_y;                   // in the plane of the equator, 90 degrees east of it
    Parabola m_z;                   // towards the north pole
    double m_hourAngleAtNoon = 0.0; // turns, -0.5 to 0.5
    double m_ownTransit = 0.0;
    double m_parallax = 0.0; // horizontal, radians
};

} // namespace calculation
