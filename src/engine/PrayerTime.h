// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

/// Minutes since midnight as clock text: "5:07" and "17:30" in 24-hour form, "5:07 AM" and "5:30 PM"
/// otherwise. Hours are not padded. The hour from 12:00 on reads AM, the test being for hours above 12.
[[nodiscard]] QString FormatPrayerTime(std::int16_t Minutes, bool Is24Hour);
