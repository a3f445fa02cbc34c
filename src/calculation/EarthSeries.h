// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Series.h"

#include <array>

// The earth's heliocentric longitude, latitude and distance, mean ecliptic and equinox of date: the larger
// terms of VSOP87, version D (Bretagnon and Francou, Astronomy and Astrophysics 202, 1988, 309) as selected
// in Meeus, "Astronomical Algorithms", 2nd ed., appendix III. Amplitudes in units of 1e-8 radian or
// astronomical unit, phases in radians, frequencies in radians per thousand Julian years; the digit at the
// end of a name is the power of that time by which the sum is multiplied. Of the powers above 0 and of the
// distance only the terms that matter here are kept.
namespace calculation::earth {

inline constexpr std::array<Term, 64> kLongitude0{{
    {175347046, 0, 0},
    {3341656, 4.6692568, 6283.0758500},
    {34894, 4.62610, 12566.15170},
    {3497, 2.7441, 5753.3849},
    {3418, 2.8289, 3.5231},
    {3136, 3.6277, 77713.7715},
    {2676, 4.4181, 7860.4194},
    {2343, 6.1352, 3930.2097},
    {1324, 0.7425, 11506.7698},
    {1273, 2.0371, 529.6910},
    {1199, 1.1096, 1577.3435},
    {990, 5.233, 5884.927},
    {902, 2.045, 26.298},
    {857, 3.508, 398.149},
    {780, 1.179, 5223.694},
    {753, 2.533, 5507.553},
    {505, 4.583, 18849.228},
    {492, 4.205, 775.523},
    {357, 2.920, 0.067},
    {317, 5.849, 11790.629},
    {284, 1.899, 796.298},
    {271, 0.315, 10977.079},
    {243, 0.345, 5486.778},
    {206, 4.806, 2544.314},
    {205, 1.869, 5573.143},
    {202, 2.458, 6069.777},
    {156, 0.833, 213.299},
    {132, 3.411, 2942.463},
    {126, 1.083, 20.775},
    {115, 0.645, 0.980},
    {103, 0.636, 4694.003},
    {102, 0.976, 15720.839},
    {102, 4.267, 7.114},
    {99, 6.21, 2146.17},
    {98, 0.68, 155.42},
    {86, 5.98, 161000.69},
    {85, 1.30, 6275.96},
    {85, 3.67, 71430.70},
    {80, 1.81, 17260.15},
    {79, 3.04, 12036.46},
    {75, 1.76, 5088.63},
    {74, 3.50, 3154.69},
    {74, 4.68, 801.82},
    {70, 0.83, 9437.76},
    {62, 3.98, 8827.39},
    {61, 1.82, 7084.90},
    {57, 2.78, 6286.60},
    {56, 4.39, 14143.50},
    {56, 3.47, 6279.55},
    {52, 0.19, 12139.55},
    {52, 1.33, 1748.02},
    {51, 0.28, 5856.48},
    {49, 0.49, 1194.45},
    {41, 5.37, 8429.24},
    {41, 2.40, 19651.05},
    {39, 6.17, 10447.39},
    {37, 6.04, 10213.29},
    {37, 2.57, 1059.38},
    {36, 1.71, 2352.87},
    {36, 1.78, 6812.77},
    {33, 0.59, 17789.85},
    {30, 0.44, 83996.85},
    {30, 2.74, 1349.87},
    {25, 3.16, 4690.48},
}};

inline constexpr std::array<Term, 12> kLongitude1{{
    {628331966747, 0, 0},
    {206059, 2.678235, 6283.075850},
    {4303, 2.6351, 12566.1517},
    {425, 1.590, 3.523},
    {119, 5.796, 26.298},
    {109, 2.966, 1577.344},
    {93, 2.59, 18849.23},
    {72, 1.14, 529.69},
    {68, 1.87, 398.15},
    {67, 4.41, 5507.55},
    {59, 2.89, 5223.69},
    {56, 2.17, 155.42},
}};

inline constexpr std::array<Term, 4> kLongitude2{{
    {52919, 0, 0},
    {8720, 1.0721, 6283.0758},
    {309, 0.867, 12566.152},
    {27, 0.05, 3.52},
}};

inline constexpr std::array<Term, 1> kLongitude3{{{289, 5.844, 6283.076}}};

inline constexpr std::array<Term, 5> kLatitude0{{
    {280, 3.199, 84334.662},
    {102, 5.422, 5507.553},
    {80, 3.88, 5223.69},
    {44, 3.70, 2352.87},
    {32, 4.00, 1577.34},
}};

inline constexpr std::array<Term, 3> kDistance0{{
    {100013989, 0, 0},
    {1670700, 3.0984635, 6283.0758500},
    {13956, 3.05525, 12566.15170},
}};

inline constexpr std::array<Term, 1> kDistance1{{{103019, 1.107490, 6283.075850}}};

} // namespace calculation::earth
