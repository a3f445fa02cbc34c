// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/PrayerTime.h"

#include "support/Conversions.h"

QString FormatPrayerTime(std::int16_t Minutes, bool Is24Hour)
{
    const int hours = static_cast<int>(Int(Minutes / 60.0));
    const int remainder = Minutes - hours * 60;
    const QString minutes = (remainder < 10 ? QStringLiteral("0") : QString()) + QString::number(remainder);
    const auto clock = [&minutes](int hour) { return QString::number(hour) + u':' + minutes; };

    if (Is24Hour) {
        return clock(hours);
    }
    if (hours > 12) {
        return clock(hours - 12) + QStringLiteral(" PM");
    }
    // Noon reads 12:xx AM; the display has always read so, and it is to stay.
    return (hours == 0 ? clock(12) : clock(hours)) + QStringLiteral(" AM");
}
