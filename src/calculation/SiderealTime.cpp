// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/SiderealTime.h"

#include "calculation/Angle.h"

namespace calculation {

double GreenwichMeanSiderealTime(double daysSince2000)
{
    constexpr double kArcsecondsPerTurn = 1296000.0;
    const double centuries = daysSince2000 / 36525.0;
    const double slow = centuries * centuries * 1.3915817;
    // The whole days turn the earth by whole turns, which are best dropped before they cost digits.
    return 0.7790572732640 + WithinHalfTurn(daysSince2000) + kSiderealGainPerDay * daysSince2000 +
           (0.014506 + slow) / kArcsecondsPerTurn;
}

} // namespace calculation
