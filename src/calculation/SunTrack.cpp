// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/SunTrack.h"

#include "calculation/EarthOrientation.h"
#include "calculation/Sun.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace calculation {

// Interpolation from three values (Meeus, chapter 3), in powers of the time.
SunTrack::Parabola SunTrack::Parabola::Through(double before, double at, double after)
{
    return {at, 0.5 * (after - before), 0.5 * (after + before) - at};
}

SunTrack::SunTrack(double utNoon, double longitudeTurns)
{
    constexpr double kSecondsPerDay = 86400.0;
    const SunAround sun = ApparentSunAround(utNoon + DeltaT(utNoon) / kSecondsPerDay);
    m_parallax = sun.HorizontalParallax();

    // Local hour angle = apparent sidereal time at Greenwich + longitude - right ascension (Meeus, chapter
    // 13).
    const Direction& noon = sun.directions[1];
    const double rightAscension = std::atan2(noon.y, noon.x) / kTurn;
    m_hourAngleAtNoon = WithinHalfTurn(GreenwichMeanSiderealTime(utNoon) + longitudeTurns +
                                       sun.equationOfEquinoxes[1] / kTurn - rightAscension);

    std::array<double, 3> x{};
    std::array<double, 3> y{};
    for (std::size_t i = 0; i < 3; ++i) {
        // The frame turns with the mean sun, relative to the equinox. The hour angle uses the nutation of
        // noon, so that the difference to the nutation of the other two days is added here.
        const double turned = rightAscension + kSiderealGainPerDay * (static_cast<double>(i) - 1.0) +
                              (sun.equationOfEquinoxes[i] - sun.equationOfEquinoxes[1]) / kTurn;
        const SineCosine frame = SineCosineOf(turned * kTurn);
        x[i] = sun.directions[i].x * frame.cosine + sun.directions[i].y * frame.sine;
        y[i] = sun.directions[i].y * frame.cosine - sun.directions[i].x * frame.sine;
    }
    m_x = Parabola::Through(x[0], x[1], x[2]);
    m_y = Parabola::Through(y[0], y[1], y[2]);
    m_z = Parabola::Through(sun.directions[0].z, noon.z, sun.directions[2].z);

    // Near the edge of the date the transit a day away may be nearer to noon, by part of a second: the hour
    // angle at noon does not include how the sun's speed changes over the day.
    const double transit = TransitNear(-m_hourAngleAtNoon);
    const double other = TransitNear(transit < 0.0 ? transit + 1.0 : transit - 1.0);
    m_ownTransit = std::abs(other) < std::abs(transit) ? other : transit;
}

// The frame turns once a day, so that its x axis crosses the meridian at intervals of whole days; the sun is
// close to that axis.
double SunTrack::TransitNear(double time) const
{
    const double axis = -m_hourAngleAtNoon + std::round(time + m_hourAngleAtNoon);
    double transit = axis;
    for (int pass = 0; pass < 2; ++pass) {
        transit = axis + std::atan2(m_y.At(transit), m_x.At(transit)) / kTurn;
    }
    return transit;
}

double SunTrack::Transit(int index) const
{
    return index == 0 ? m_ownTransit : TransitNear(m_ownTransit + index);
}

SunTrack::Sample SunTrack::Altitude(double time, const Latitude& latitude) const
{
    const SineCosine hourAngle = SineCosineOf((time + m_hourAngleAtNoon) * kTurn);
    const double x = m_x.At(time);
    const double y = m_y.At(time);
    const double turning = latitude.Cosine() * (x * hourAngle.cosine + y * hourAngle.sine);
    Sample sample;
    sample.sine = latitude.Sine() * m_z.At(time) + turning;
    sample.rate =
        latitude.Sine() * m_z.RateAt(time) +
        latitude.Cosine() * (m_x.RateAt(time) * hourAngle.cosine + m_y.RateAt(time) * hourAngle.sine +
                             kTurn * (y * hourAngle.cosine - x * hourAngle.sine));
    sample.curvature = -kTurn * kTurn * turning;
    return sample;
}

double SunTrack::Elevation(double time, const Latitude& latitude) const
{
    return DegreesOfSine(TopocentricSine(Altitude(time, latitude).sine));
}

SineCosine SunTrack::Declination(double time) const
{
    const double sine = m_z.At(time);
    return {sine, std::sqrt(1.0 - sine * sine)};
}

// Halley's method (Philosophical Transactions 18, 1694, 136), which is Newton's with the second derivative:
// the root of f lies near t - f / (f' - f f'' / (2 f')). Each step triples the correct digits, so that an
// ordinary event takes one step; Newton's takes two or three. Bisection keeps the result between the two
// limits.
double SunTrack::TimeOf(const Crossing& crossing, const Latitude& latitude) const
{
    constexpr int kMostSteps = 40;
    constexpr double kEnough = 1e-8; // days: a thousandth of a second
    double below = crossing.below;
    double above = crossing.above;
    double time = crossing.guess;
    for (int step = 0; step < kMostSteps; ++step) {
        const Sample sample = Altitude(time, latitude);
        const double excess = sample.sine - crossing.sine;
        (excess < 0.0 ? below : above) = time;
        const double newton = -excess / sample.rate;
        const double bend = 0.5 * sample.curvature / sample.rate;
        double move = newton / (1.0 + bend * newton);
        // The first neglected term; the third derivative is that of the earth's rotation.
        double error = std::abs(move * move * move) * (bend * bend + kTurn * kTurn / 6.0);
        const double low = std::min(below, above);
        const double high = std::max(below, above);
        // In this form the test refuses NaN too.
        if (!(time + move >= low && time + move <= high)) {
            move = 0.5 * (low + high) - time;
            error = high - low;
        }
        time += move;
        if (error < kEnough) {
            break;
        }
    }
    return time;
}

} // namespace calculation
