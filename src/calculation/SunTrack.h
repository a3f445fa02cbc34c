// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Angle.h"
#include "calculation/Place.h"

namespace calculation {

// The sun over one civil date on one meridian, from three positions a day apart. Times are days from the noon
// (12h of the local clock) of that date, so that the date is -0.5 to 0.5.
//
// Held in a frame that turns with the mean sun, in which the sun barely moves: its three coordinates are
// parabolas in the time. Against the theory itself they are within 0.05" within the date, 0.3" over -1.5
// to 1.5 and 2" over -2.5 to 2.5.
class SunTrack final
{
public:
    SunTrack() = default;
    // utNoon: the date's local noon in days of UT from 2000 January 1, 12h. longitudeTurns: east positive.
    SunTrack(double utNoon, double longitudeTurns);

    // The time of the meridian passage that belongs to the date: the one within it; of two, the one nearer
    // noon; of none, the nearest. The passages before and after have the indexes -1, 1 and so on.
    [[nodiscard]] double Transit(int index) const;

    struct Sample
    {
        double sine = 0.0;      // of the altitude
        double rate = 0.0;      // of that sine, per day
        double curvature = 0.0; // of that sine, per day squared, as far as it comes from the earth's turning
    };
    // Geocentric altitude of the sun's centre.
    [[nodiscard]] Sample Altitude(double time, const Latitude& latitude) const;
    [[nodiscard]] SineCosine Declination(double time) const;
    // Sines of the altitude at a meridian passage, upper and lower, where the sun has that declination.
    [[nodiscard]] static double UpperSine(const SineCosine& declination, const Latitude& latitude)
    {
        return latitude.Sine() * declination.sine + latitude.Cosine() * declination.cosine;
    }
    [[nodiscard]] static double LowerSine(const SineCosine& declination, const Latitude& latitude)
    {
        return latitude.Sine() * declination.sine - latitude.Cosine() * declination.cosine;
    }

    // Radians.
    [[nodiscard]] double HorizontalParallax() const { return m_parallax; }
    // The parallax in altitude is the horizontal one times the cosine of the altitude (Meeus, "Astronomical
    // Algorithms", 2nd ed., chapter 40); of its sine that makes the parallax times the square of the cosine.
    // The geocentric sine at which the centre's topocentric altitude has the given sine.
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

    Parabola m_x; // in the plane of the equator, towards the sun at noon
    Parabola m_y;
    Parabola m_z;
    double m_hourAngleAtNoon = 0.0; // turns, -0.5 to 0.5
    double m_ownTransit = 0.0;
    double m_parallax = 0.0;
};

} // namespace calculation
