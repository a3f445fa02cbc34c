// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace calculation {

// TT - UT1 in seconds; daysSince2000 counts days of UT from 2000 January 1, 12h.
// To 2005 the polynomials of Espenak and Meeus, "Five Millennium Canon of Solar Eclipses"
// (NASA/TP-2006-214141, 2006), section 3.2; from there to 2026 the yearly observed values of the
// International Earth Rotation Service, joined by straight lines, within 0.1 s of its daily values. Beyond,
// the value of 2026 and the long-term slowing of the earth's rotation, 32.5 seconds per century squared
// (Morrison, Stephenson, Hohenkerk, Zawilski, "Addendum 2020 to 'Measurement of the Earth's rotation'", Proc.
// R. Soc. A 477, 2021): nobody knows it to better than tens of seconds a century ahead.
[[nodiscard]] double DeltaT(double daysSince2000);

} // namespace calculation
