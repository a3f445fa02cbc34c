// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace calculation {

// TT - UT1 in seconds; daysSince2000 counts days of UT from 2000 January 1, 12h.
// To 2005 the polynomials of Espenak and Meeus, "Five Millennium Canon of Solar Eclipses"
// (NASA/TP-2006-214141, 2006); from there to 2026 the yearly observed values of the
// International Earth Rotation Service, joined by straight lines, within 0.1 s of its daily values. Beyond,
// the value of 2026 and the long-term slowing of the earth's rotation, 32.5 seconds per century squared
// (Stephenson, Morrison, Hohenkerk, "Measurement of the Earth's rotation: 720 BC to AD 2015", Proc. R. Soc. A
// 472, 2016, 20160404, equation 4.1; their addendum of 2021 has 31.4, which is 0.6 s less in 2100): nobody
// knows it to better than tens of seconds a century ahead.
[[nodiscard]] double DeltaT(double daysSince2000);

} // namespace calculation
