// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Prayers.h"

#include <gtest/gtest.h>

namespace {

struct Row
{
    const char* name;
    std::int16_t minutes;
    bool is24Hour;
    const char* text;
};

class FormatPrayerTimeRows : public testing::TestWithParam<Row>
{
};

TEST_P(FormatPrayerTimeRows, minutes_giveClockText)
{
    EXPECT_EQ(FormatPrayerTime(GetParam().minutes, GetParam().is24Hour), QLatin1String(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    FormatPrayerTime, FormatPrayerTimeRows,
    testing::Values(Row{"midnight_12", 0, false, "12:00 AM"}, Row{"fiveMinutesLeft_12", 5, false, "12:05 AM"},
                    Row{"morning_12", 307, false, "5:07 AM"}, Row{"noonReadsAM_12", 750, false, "12:30 AM"},
                    Row{"one_12", 780, false, "1:00 PM"}, Row{"lastMinute_12", 1439, false, "11:59 PM"},
                    Row{"negative_12", -1215, false, "-21:45 AM"}, Row{"midnight_24", 0, true, "0:00"},
                    Row{"unpadded_24", 65, true, "1:05"}, Row{"evening_24", 1050, true, "17:30"},
                    Row{"negative_24", -1215, true, "-21:45"}),
    [](const testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

} // namespace
