// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <cstdint>

/// One prayer with its names and numbers in each part of the program. Asr has two rows, one for each of its
/// rules.
struct Prayer
{
    std::int16_t slot = 0; ///< of the scheduler
    int number = 0;        ///< at the service
    std::int16_t tab = 0;  ///< page of the settings dialog
    QLatin1String element; ///< below the alerts of settings.xml
    QLatin1String caption; ///< in the main window and in the settings dialog
    QLatin1String name;    ///< in the popup
    /// The Asr method under which the slot counts; empty for a slot that always counts.
    QLatin1String asrMethod;
    QLatin1String link;     ///< control of the main window that opens the tab
    QLatin1String time;     ///< control of the main window
    QLatin1String tabLabel; ///< control of the settings dialog that opens the tab

    [[nodiscard]] bool CountsUnder(const QString& method) const
    {
        return asrMethod.isEmpty() || method == asrMethod;
    }
};

/// In the order of the day. The scheduler computes slots 3, 4 and 8 too, which no prayer uses.
/// Intended: "Farj" in the main window, and a tab label of Maghrib without a prefix.
inline constexpr std::array kPrayers = [] {
    using namespace Qt::Literals::StringLiterals;
    return std::array<Prayer, 7>{{
        {1, 1, 3, "fajr"_L1, "Fajr"_L1, "Fajr"_L1, ""_L1, "LblFarjLink"_L1, "LblFarjTime"_L1, "LblFajr"_L1},
        {2, 2, 4, "shuruq"_L1, "Shuruq"_L1, "Shuruq"_L1, ""_L1, "LblShuruqLink"_L1, "LblShuruqTime"_L1,
         "LblShuruq"_L1},
        {5, 3, 5, "duhr"_L1, "Duhr"_L1, "Duhr"_L1, ""_L1, "LblDuhrLink"_L1, "LblDuhrTime"_L1, "LblDuhr"_L1},
        {6, 4, 6, "asr"_L1, "Asr"_L1, "Asr (Shafi)"_L1, "shafi"_L1, "LblAsrLink"_L1, "LblAsrTime"_L1,
         "LblAsr"_L1},
        {7, 4, 6, "asr"_L1, "Asr"_L1, "Asr (Hanafi)"_L1, "hanafi"_L1, "LblAsrLink"_L1, "LblAsrTime"_L1,
         "LblAsr"_L1},
        {9, 5, 7, "maghrib"_L1, "Maghrib"_L1, "Maghrib"_L1, ""_L1, "LblMaghribLink"_L1, "LblMaghribTime"_L1,
         "Maghrib"_L1},
        {10, 6, 8, "isha"_L1, "Isha"_L1, "Isha"_L1, ""_L1, "LblIshaLink"_L1, "LblIshaTime"_L1, "LblIsha"_L1},
    }};
}();

/// The prayer of a slot; nullptr for a slot that no prayer uses and for any other number.
[[nodiscard]] const Prayer* PrayerOfSlot(std::int16_t slot);
/// The first row of the prayer of a tab; nullptr for any other tab.
[[nodiscard]] const Prayer* PrayerOfTab(std::int16_t tab);

/// Minutes since midnight as clock text: "5:07" and "17:30" in 24-hour form, "5:07 AM" and "5:30 PM"
/// otherwise. Hours are not padded. Intended: 12:00 to 12:59 read AM, since the test is for hours above 12.
[[nodiscard]] QString FormatPrayerTime(std::int16_t Minutes, bool Is24Hour);
