// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Prayers.h"

#include "support/Conversions.h"

#include <algorithm>

namespace {

template <typename Test>
const Prayer* FirstWith(Test test)
{
    const auto* const found = std::find_if(kPrayers.begin(), kPrayers.end(), test);
    return found == kPrayers.end() ? nullptr : found;
}

} // namespace

const Prayer* PrayerOfSlot(std::int16_t slot)
{
    return FirstWith([slot](const Prayer& prayer) { return prayer.slot == slot; });
}

const Prayer* PrayerOfTab(std::int16_t tab)
{
    return FirstWith([tab](const Prayer& prayer) { return prayer.tab == tab; });
}

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
    // Intended: the hour from noon on reads 12:xx AM.
    return (hours == 0 ? clock(12) : clock(hours)) + QStringLiteral(" AM");
}
