// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/Announcements.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace beacond;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::sys_seconds kNoon = std::chrono::sys_days(std::chrono::year(2027) / 3 / 10) + 12h;

Strip StripFor(std::int64_t id, const char* dist, const char* country, const char* from, const char* until)
{
    return {id, "html", dist, country, from, until};
}

} // namespace

TEST(WaitMinutes, identifiers_areSpreadOverTenToFourteen_eachAlwaysTheSame)
{
    std::map<int, int> spread;
    for (int i = 0; i < 5000; ++i) {
        ++spread[WaitMinutes("installation " + std::to_string(i))];
    }
    ASSERT_EQ(spread.size(), 5U);
    for (const auto& [minutes, count] : spread) {
        EXPECT_GE(minutes, 10);
        EXPECT_LE(minutes, 14);
        EXPECT_NEAR(count, 1000, 150) << minutes;
    }
    // Installed clients rely on these values.
    EXPECT_EQ(WaitMinutes(""), 10);
    EXPECT_EQ(WaitMinutes("AQIDBAUGBwgJCgsMDQ4PEBESExQVFhcY"), 10);
}

TEST(ChooseStrip, otherDistributionCountryOrDay_isNotShown)
{
    const struct
    {
        Strip strip;
        bool isShown;
    } rows[] = {
        {StripFor(1, "", "", "", ""), true},
        {StripFor(2, "mosque", "", "", ""), true},
        {StripFor(3, "another", "", "", ""), false},
        {StripFor(4, "", "DE", "", ""), true},
        {StripFor(5, "", "FR", "", ""), false},
        {StripFor(6, "", "", "2027-03-10", "2027-03-10"), true},
        {StripFor(7, "", "", "2027-03-11", ""), false},
        {StripFor(8, "", "", "", "2027-03-09"), false},
    };
    for (const auto& row : rows) {
        const Announcements announcements{{row.strip}, {}};
        EXPECT_EQ(ChooseStrip(announcements, "pc", "mosque", "DE", kNoon) != nullptr, row.isShown)
            << row.strip.id;
    }
}

TEST(ChooseStrip, requestsOfOneInstallation_getAllStripsInTurn)
{
    const Announcements announcements{
        {StripFor(1, "", "", "", ""), StripFor(2, "", "", "", ""), StripFor(3, "", "", "", "")}, {}};
    std::set<std::int64_t> shown;
    for (int request = 0; request < 3; ++request) {
        const auto now = kNoon + request * std::chrono::minutes(WaitMinutes("pc"));
        shown.insert(ChooseStrip(announcements, "pc", "", "ZZ", now)->id);
    }
    EXPECT_EQ(shown.size(), 3U);
}

TEST(NewerRelease, newestOfAll_isOfferedToOlderClientsOnly)
{
    const Announcements announcements{
        {}, {{"1", "9", "https://a/9"}, {"1", "10", "https://a/10"}, {"1", "5", "https://a/5"}}};

    ASSERT_NE(NewerRelease(announcements, "1", "5"), nullptr);
    EXPECT_EQ(NewerRelease(announcements, "1", "5")->sequence, "10");
    EXPECT_EQ(NewerRelease(announcements, "1", "10"), nullptr);
    EXPECT_EQ(NewerRelease(announcements, "2", "1"), nullptr);
    EXPECT_NE(NewerRelease(announcements, "", "abc"), nullptr);
    EXPECT_EQ(NewerRelease({}, "1", "5"), nullptr);
}

TEST(NewerRelease, partsBetweenThePoints_areWholeNumbers)
{
    const struct
    {
        const char* release;
        const char* client;
        bool isNewer;
    } rows[] = {
        {"1.10", "1.9", true}, {"1.9", "1.10", false}, {"1.10", "1.1", true}, {"1.0", "1", false},
        {"1", "1.0", false},   {"1.05", "1.5", false}, {"10", "9.9", true},   {"1.1", "1", true},
    };
    for (const auto& row : rows) {
        const Announcements ofName{{}, {{row.release, "1", "https://a/"}}};
        EXPECT_EQ(NewerRelease(ofName, row.client, "1") != nullptr, row.isNewer)
            << row.release << " to " << row.client;
        const Announcements ofSequence{{}, {{"1", row.release, "https://a/"}}};
        EXPECT_EQ(NewerRelease(ofSequence, "1", row.client) != nullptr, row.isNewer)
            << row.release << " to " << row.client;
    }
}

TEST(IsVersionNumber, releaseNumbers_areAcceptedAndOtherTextsAreNot)
{
    for (const char* const text : {"1", "10", "1.5", "0"}) {
        EXPECT_TRUE(IsVersionNumber(text)) << text;
    }
    for (const char* const text :
         {"", "a", "-1", "1.", ".5", "1.2.3", "1e5", " 1", "inf", "1234567890123456"}) {
        EXPECT_FALSE(IsVersionNumber(text)) << text;
    }
}
