// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/ZoneOffset.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using std::chrono::sys_days;

namespace {

constexpr std::chrono::sys_seconds kJanuary = sys_days(2025y / 1 / 15) + 12h;
constexpr std::chrono::sys_seconds kRamadan = sys_days(2025y / 3 / 15) + 12h;
constexpr std::chrono::sys_seconds kJuly = sys_days(2025y / 7 / 15) + 12h;

} // namespace

TEST(ZoneOffset, StandardOffset_anySeason_isWithoutSummerTime)
{
    struct Row
    {
        const char* zone;
        int minutes;
    };
    const Row rows[] = {
        {"Asia/Riyadh", 180},        {"Europe/Berlin", 60},
        {"America/New_York", -300},  {"Australia/Sydney", 600},
        {"Asia/Kolkata", 330},       {"Asia/Kathmandu", 345},
        {"America/St_Johns", -210},  {"Australia/Lord_Howe", 630}, // summer time is half an hour
        {"Antarctica/Troll", 0},                                   // summer time is two hours
        {"Europe/Dublin", 0}, // the database marks the winter time as daylight saving
        {"Africa/Casablanca", 60},   {"Africa/El_Aaiun", 60}, // an hour back in Ramadan only
        {"Pacific/Chatham", 765},    {"Pacific/Kiritimati", 840},
        {"Pacific/Marquesas", -570}, {"Asia/Tehran", 210},
        {"Asia/Almaty", 300},        {"Europe/Istanbul", 180},
        {"Africa/Cairo", 120},       {"Asia/Gaza", 120},
        {"America/Santiago", -240},  {"UTC", 0},
        {"Asia/Kabul", 270},         {"Asia/Yangon", 390},
        {"Asia/Colombo", 330},       {"Indian/Cocos", 390},
        {"Australia/Darwin", 570},   {"Australia/Adelaide", 570},
        {"Australia/Eucla", 525},    {"Australia/Broken_Hill", 570},
    };
    for (const Row& row : rows) {
        for (const auto now : {kJanuary, kRamadan, kJuly})
            EXPECT_EQ(beacond::StandardOffset(row.zone, now), std::chrono::minutes(row.minutes))
                << row.zone << " " << now.time_since_epoch().count();
    }
}

TEST(ZoneOffset, StandardOffset_atAChange_isTheSameOnBothSides)
{
    const std::chrono::sys_seconds spring = sys_days(2025y / 3 / 30) + 1h;
    const std::chrono::sys_seconds autumn = sys_days(2025y / 10 / 26) + 1h;
    for (const char* zone : {"Europe/Berlin", "Europe/Dublin"}) {
        for (const auto change : {spring, autumn})
            EXPECT_EQ(beacond::StandardOffset(zone, change - 1s), beacond::StandardOffset(zone, change))
                << zone;
    }
}

TEST(ZoneOffset, StandardOffset_afterAReform_isTheNewOne)
{
    // One zone for all of Kazakhstan since 1 March 2024; no summer time in Turkey since 2016.
    EXPECT_EQ(beacond::StandardOffset("Asia/Almaty", sys_days(2024y / 2 / 1)), 360min);
    EXPECT_EQ(beacond::StandardOffset("Asia/Almaty", sys_days(2024y / 4 / 1)), 300min);
    EXPECT_EQ(beacond::StandardOffset("Europe/Istanbul", sys_days(2015y / 7 / 1)), 120min);
    EXPECT_EQ(beacond::StandardOffset("Europe/Istanbul", sys_days(2017y / 7 / 1)), 180min);
    // Summer time was interrupted for Ramadan.
    EXPECT_EQ(beacond::StandardOffset("Africa/Cairo", sys_days(2014y / 7 / 10)), 120min);
}

TEST(ZoneOffset, StandardOffset_noZoneOfTheDatabase_isEmpty)
{
    for (const char* name :
         {"", "Mars/Olympus", "../../etc/passwd", "/etc/localtime", "localtime", "Fixed/UTC+01:00:00"}) {
        EXPECT_EQ(beacond::StandardOffset(name, kJuly), std::nullopt) << name;
        EXPECT_FALSE(beacond::IsTimeZone(name)) << name;
    }
}
