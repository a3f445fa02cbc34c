// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/SiderealTime.h"

#include "calculation/Angle.h"

namespace calculation {

double GreenwichMeanSiderealTime(double daysSince2000)
{
    const double centuries = daysSince2000 / 36525.0;
    const double slow = centuries * centuries * (0.000387933 - centuries / 38710000.0) / 360.0;
    // The whole days turn the earth by whole turns, which are best dropped before they cost digits.
    return 280.46061837 / 360.0 + WithinHalfTurn(daysSince2000) + kSiderealGainPerDay * daysSince2000 + slow;
}

} // namespace calculation
