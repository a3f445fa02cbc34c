// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Days.h"
#include "calculation/Reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>

namespace {

const NamedEvent& EventOf(Short slot)
{
    return *std::find_if(kEvents.begin(), kEvents.end(),
                         [slot](const NamedEvent& event) { return event.slot == slot; });
}

// Columns 0 to 7 of slots.csv and published.csv: place, offset, date, angles.
double DecimalMinutes(const ReferenceRow& row, Short slot, int daysOn = 0)
{
    const auto date = calculation::DaysSince2000(row.Whole(3), row.Whole(4), row.Whole(5)) + daysOn;
    auto day = DayOf({row.Whole(0), row.Whole(1)}, date - row.Whole(2) / kMinutesPerDay, row.Whole(6) / 100.0,
                     row.Whole(7) / 100.0);
    return Minutes(day.WithinDate(EventOf(slot).event));
}

Short WholeMinute(const ReferenceRow& row, Short slot)
{
    auto calculator =
        CalculatorOf({row.Whole(0), row.Whole(1)}, row.Whole(2), row.Whole(3), row.Whole(4), row.Whole(5));
    calculator.SetHorAngle(row.Whole(6), row.Whole(7));
    return calculator.Horarium(slot);
}

// Minutes by which a clock time is past another, the short way round.
double ClockDifference(double minutes, double from)
{
    return std::remainder(minutes - from, kMinutesPerDay);
}

// The events of a place and date by their slots, in minutes from the 0:00 of that date.
struct DateRows
{
    std::map<Short, ReferenceRow> rows;
    std::map<Short, double> minutes;
    int without = 0;

    void Add(const ReferenceRow& row)
    {
        const Short slot = row.Whole(8);
        if (row.Text(9) == "none") {
            ++without;
            EXPECT_GE(WholeMinute(row, slot), 1) << row.line;
            EXPECT_LT(WholeMinute(row, slot), 1440) << row.line;
            return;
        }
        // Of two events on a date the one of the date's own solar day counts; the table marks the other as
        // carried.
        const bool isCarried = row.Whole(10) == 1;
        if (isCarried && rows.contains(slot)) {
            return;
        }
        rows.insert_or_assign(slot, row);
        minutes[slot] = row.Number(9) + (isCarried && (slot == 2 || slot == 9) ? kMinutesPerDay : 0.0);
    }

    // The end of the portion of the night next to sunrise or sunset, if the table's event lies beyond it.
    // Computed from the table's sunrise and sunset, and so a few minutes off if the night changes quickly
    // from day to day.
    static constexpr double kLimitSlack = 2.5;
    [[nodiscard]] std::optional<double> LimitPassed(Short slot) const
    {
        if (slot != 1 && slot != 10) {
            return std::nullopt;
        }
        const double night = kMinutesPerDay - (minutes.at(9) - minutes.at(2));
        const double portion = night * rows.at(slot).Whole(slot == 1 ? 6 : 7) / -6000.0;
        const double limit = slot == 1 ? minutes.at(2) - portion : minutes.at(9) + portion;
        const double beyond = ClockDifference(minutes.at(slot), limit) * (slot == 1 ? -1.0 : 1.0);
        return beyond > kLimitSlack ? std::optional(limit) : std::nullopt;
    }
};

// Largest error in seconds allowed for each slot, just above the measured one. Rows in which the sun climbs
// slowly have a larger error in the table itself; they belong to slots 2 and 9.
const std::map<Short, double> kLimits{{1, 0.25}, {2, 0.45}, {5, 0.12}, {6, 0.2},
                                      {7, 0.2},  {9, 0.6},  {10, 0.2}};

TEST(SlotReference, everyRowOfTheTable_withinTheLimitOfItsSlotAndTheSameMinute)
{
    std::map<std::string, DateRows> dates;
    for (const ReferenceRow& row : ReferenceTable("slots.csv")) {
        dates[row.line.substr(0, row.line.find(',' + row.Text(8) + ',' + row.Text(9)))].Add(row);
    }
    std::map<Short, ErrorStatistics> statistics;
    int limited = 0;
    int without = 0;
    int count = 0;
    int different = 0;
    for (const auto& [key, date] : dates) {
        without += date.without;
        for (const auto& [slot, row] : date.rows) {
            const double found = DecimalMinutes(row, slot);
            if (const auto limit = date.LimitPassed(slot)) {
                ++limited;
                EXPECT_NEAR(ClockDifference(found, *limit), 0.0, DateRows::kLimitSlack) << row.line;
                continue;
            }
            statistics[slot].Add(ClockDifference(found, row.Number(9)) * 60.0, row.line);
            ++count;
            const double expected = std::min(std::floor(row.Number(9) + 0.5), kMinutesPerDay - 1.0);
            const double difference = WholeMinute(row, slot) - expected;
            if (difference != 0.0) {
                ++different;
                const double secondsFromHalfMinute =
                    std::abs(std::remainder(row.Number(9) - 0.5, 1.0)) * 60.0;
                EXPECT_EQ(std::abs(difference), 1.0) << row.line;
                EXPECT_LT(secondsFromHalfMinute, 1.0) << row.line;
            }
        }
    }
    for (const auto& [slot, limit] : kLimits) {
        const ErrorStatistics& errors = statistics[slot];
        errors.Print("slot " + std::to_string(slot), "s");
        EXPECT_LT(errors.Largest(), limit) << errors.WorstRow();
        EXPECT_GT(errors.Count(), 180) << slot;
    }
    std::printf("%d of %d whole minutes differ\n", different, count);
    EXPECT_GT(count, 1400);
    EXPECT_LE(different, count / 100);
    EXPECT_EQ(limited, 18);
    EXPECT_EQ(without, 40);
}

// Authorities add minutes for precaution and round, so that the test limits by how much the printed minute is
// later than the moment.
TEST(PublishedTimetables, everyRow_laterByItsPrecautionAlone)
{
    int count = 0;
    for (const ReferenceRow& row : ReferenceTable("published.csv")) {
        for (int day = 0; day < row.Whole(9); ++day) {
            ++count;
            const double later = row.Number(10) - DecimalMinutes(row, row.Whole(8), day);
            EXPECT_GE(later, row.Number(11)) << row.line << " and " << day;
            EXPECT_LE(later, row.Number(12)) << row.line << " and " << day;
        }
    }
    EXPECT_EQ(count, 67);
}

} // namespace
