// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <cstdint>

/// Slots of the scheduler that are used by name.
inline constexpr std::int16_t kSunriseSlot = 2;
inline constexpr std::int16_t kAsrHanafiSlot = 7;
inline constexpr std::int16_t kSunsetSlot = 9;
inline constexpr std::int16_t kIshaSlot = 10;

/// One prayer with its names and numbers in each part of the program. Asr has two rows, one for each of its
/// rules, so that six prayers have seven rows.
struct Prayer
{
    std::int16_t slot = 0;  ///< of the scheduler; each row has its own
    int number = 0;         ///< at the service, which stores it: never renumber a prayer
    std::int16_t tab = 0;   ///< page of the settings dialog; 1 and 2 are General and Mobile Alert
    QLatin1String element;  ///< below the alerts of settings.xml
    QLatin1String caption;  ///< title of the page; the other texts of the windows stand in their .ui files
    QLatin1String name;     ///< in the popup
    QLatin1String link;     ///< control of the main window that opens the tab
    QLatin1String time;     ///< control of the main window
    QLatin1String tabLabel; ///< control of the settings dialog that opens the tab
    /// The Asr method under which the slot counts; empty for a slot that always counts.
    QLatin1String asrMethod{};

    [[nodiscard]] bool CountsUnder(const QString& method) const
    {
        return asrMethod.isEmpty() || method == asrMethod;
    }
};

/// In the order of the day, which the countdown and the columns of the main window follow. The module
/// computes no slots 3, 4 and 8 (they are -1), and no prayer uses them. The service repeats the elements in
/// server/places/Tokens.cpp and the range of the numbers in server/protocol/MessageScripts.cpp.
/// Intended: "Farj" in the names of two controls, and a tab label of Maghrib without a prefix.
inline constexpr std::array kPrayers = [] {
    using namespace Qt::Literals::StringLiterals;
    return std::array<Prayer, 7>{{
        {.slot = 1,
         .number = 1,
         .tab = 3,
         .element = "fajr"_L1,
         .caption = "Fajr"_L1,
         .name = "Fajr"_L1,
         .link = "LblFarjLink"_L1,
         .time = "LblFarjTime"_L1,
         .tabLabel = "LblFajr"_L1},
        {.slot = kSunriseSlot,
         .number = 2,
         .tab = 4,
         .element = "shuruq"_L1,
         .caption = "Shuruq"_L1,
         .name = "Shuruq"_L1,
         .link = "LblShuruqLink"_L1,
         .time = "LblShuruqTime"_L1,
         .tabLabel = "LblShuruq"_L1},
        {.slot = 5,
         .number = 3,
         .tab = 5,
         .element = "duhr"_L1,
         .caption = "Duhr"_L1,
         .name = "Duhr"_L1,
         .link = "LblDuhrLink"_L1,
         .time = "LblDuhrTime"_L1,
         .tabLabel = "LblDuhr"_L1},
        {.slot = 6,
         .number = 4,
         .tab = 6,
         .element = "asr"_L1,
         .caption = "Asr"_L1,
         .name = "Asr (Shafi)"_L1,
         .link = "LblAsrLink"_L1,
         .time = "LblAsrTime"_L1,
         .tabLabel = "LblAsr"_L1,
         .asrMethod = "shafi"_L1},
        {.slot = kAsrHanafiSlot,
         .number = 4,
         .tab = 6,
         .element = "asr"_L1,
         .caption = "Asr"_L1,
         .name = "Asr (Hanafi)"_L1,
         .link = "LblAsrLink"_L1,
         .time = "LblAsrTime"_L1,
         .tabLabel = "LblAsr"_L1,
         .asrMethod = "hanafi"_L1},
        {.slot = kSunsetSlot,
         .number = 5,
         .tab = 7,
         .element = "maghrib"_L1,
         .caption = "Maghrib"_L1,
         .name = "Maghrib"_L1,
         .link = "LblMaghribLink"_L1,
         .time = "LblMaghribTime"_L1,
         .tabLabel = "Maghrib"_L1},
        {.slot = kIshaSlot,
         .number = 6,
         .tab = 8,
         .element = "isha"_L1,
         .caption = "Isha"_L1,
         .name = "Isha"_L1,
         .link = "LblIshaLink"_L1,
         .time = "LblIshaTime"_L1,
         .tabLabel = "LblIsha"_L1},
    }};
}();

/// The prayer of a slot; nullptr for a slot that no prayer uses and for any other number.
[[nodiscard]] const Prayer* PrayerOfSlot(std::int16_t slot);
/// The first row of the prayer of a tab; nullptr for any other tab.
[[nodiscard]] const Prayer* PrayerOfTab(std::int16_t tab);

/// Minutes since midnight as clock text: "5:07" and "17:30" in 24-hour form, "5:07 AM" and "5:30 PM"
/// otherwise. Hours are not padded. Intended: 12:00 to 12:59 read AM, since the test is for hours above 12.
[[nodiscard]] QString FormatPrayerTime(std::int16_t Minutes, bool Is24Hour);
