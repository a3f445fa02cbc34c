// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Prayers.h"

#include <gtest/gtest.h>

namespace {

TEST(Prayers, eachRow_hasItsOwnSlot_andSharesATabOnlyWithinOnePrayer)
{
    for (const Prayer& prayer : kPrayers) {
        SCOPED_TRACE(prayer.name.data());
        EXPECT_EQ(PrayerOfSlot(prayer.slot), &prayer);
        ASSERT_GT(prayer.tab, 2) << "the General and the Mobile Alert page";
        EXPECT_EQ(PrayerOfTab(prayer.tab)->element, prayer.element);
        EXPECT_EQ(PrayerOfTab(prayer.tab)->number, prayer.number);
    }
}

TEST(FormatPrayerTime, minutes_giveClockText)
{
    struct Row
    {
        std::int16_t minutes;
        const char* twelve;
        const char* twentyFour;
    };
    // Intended: noon reads AM.
    for (const Row& row :
         {Row{0, "12:00 AM", "0:00"}, Row{5, "12:05 AM", "0:05"}, Row{65, "1:05 AM", "1:05"},
          Row{310, "5:10 AM", "5:10"}, Row{750, "12:30 AM", "12:30"}, Row{780, "1:00 PM", "13:00"},
          Row{1050, "5:30 PM", "17:30"}, Row{1439, "11:59 PM", "23:59"}, Row{-1215, "-21:45 AM", "-21:45"}}) {
        EXPECT_EQ(FormatPrayerTime(row.minutes, false), QLatin1String(row.twelve));
        EXPECT_EQ(FormatPrayerTime(row.minutes, true), QLatin1String(row.twentyFour));
    }
}

} // namespace
