// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Angle.h"
#include "calculation/Place.h"

namespace calculation {

// The sun over one civil date on one meridian, interpolated between three positions a day apart. Times are
// days from the noon (12h of the local clock) of that date, so that the date is -0.5 to 0.5.
//
// The three coordinates of the sun are interpolated (Meeus, "Astronomical Algorithms", 2nd ed., formula 3.3)
// in a frame that turns with the mean sun, in which the sun barely moves. Against the theory itself they are
// within 0.05" within the date, 0.3" over -1.5 to 1.5 and 2" over -2.5 to 2.5. A date needs the sun at a
// dozen instants, and the theory at each of them would take three times as long.
class SunTrack final
{
public:
    SunTrack() = default;
    // utNoon: the date's local noon in days of UT from 2000 January 1, 12h. longitudeTurns: east positive.
    SunTrack(double utNoon, double longitudeTurns);

    // The time of the meridian passage that belongs to the date, within 0.001 s of the track's: the one
    // within the date; of two, the one nearer noon; of none, the nearest. The passages before and after have
    // the indexes -1, 1 and so on.
    [[nodiscard]] double Transit(int index) const;

    struct Sample
    {
        double sine = 0.0;      // of the altitude
        double rate = 0.0;      // of that sine, per day
        double curvature = 0.0; // of that sine, per day squared, as far as it comes from the earth's turning
    };
    // Geocentric altitude of the sun's centre (Meeus, formula 13.6, and its derivatives).
    [[nodiscard]] Sample Altitude(double time, const Latitude& latitude) const;
    // Topocentric altitude of the centre in degrees, without refraction, -90 to 90.
    [[nodiscard]] double Elevation(double time, const Latitude& latitude) const;
    [[nodiscard]] SineCosine Declination(double time) const;

    // The instant when the sun's altitude passes a value, between two instants on whose sides it stands.
    struct Crossing
    {
        double below = 0.0; // an instant when the sun is lower
        double above = 0.0; // an instant when it is higher; before or after the other
        double sine = 0.0;  // of the altitude, geocentric
        double guess = 0.0; // where to start
    };
    // Within 0.01 s of the crossing of the track; ends after a limited number of steps whatever it is given.
    [[nodiscard]] double TimeOf(const Crossing& crossing, const Latitude& latitude) const;

    // Sines of the altitude at a meridian passage, upper and lower, where the sun has that declination.
    [[nodiscard]] static double UpperSine(const SineCosine& declination, const Latitude& latitude)
    {
        return latitude.Sine() * declination.sine + latitude.Cosine() * declination.cosine;
    }
    [[nodiscard]] static double LowerSine(const SineCosine& declination, const Latitude& latitude)
    {
        return latitude.Sine() * declination.sine - latitude.Cosine() * declination.cosine;
    }

    // The parallax in altitude is the horizontal one times the cosine of the altitude (Meeus, chapter 40); of
    // its sine that makes the parallax times the square of the cosine. The geocentric sine at which the
    // centre's topocentric altitude has the given sine, and the other way round.
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
