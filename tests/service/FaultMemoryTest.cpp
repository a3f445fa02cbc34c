// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Memory.h"
#include "fakes/SettingsFile.h"
#include "fakes/StandIn.h"
#include "service/StartUpProgram.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

// Several times the size of the largest reply.
constexpr qint64 kHighestPeak = 4 * 1024 * 1024;
constexpr qint64 kMostGrowthPerReply = 2 * 1024 * 1024 / 300;

struct Fault
{
    const char* how;
    int replies = 300;
    /// Each reply lasts until the time limit.
    bool isEndless = false;
};

class FaultMemory : public testing::TestWithParam<Fault>
{
};

// The running program with many alarms, each of which sends two requests.
TEST_P(FaultMemory, manyReplies_useNoMoreMemory)
{
    if (!Memory::kIsTrue) {
        GTEST_SKIP() << "a sanitizer keeps what is freed";
    }
    const int replies = GetParam().replies;
    StandIn service;
    FakePlatform platform;
    const HttpLimits limits =
        GetParam().isEndless ? HttpLimits{1024 * 1024, 1, 20} : HttpLimits{1024 * 1024, 10, 20'000};
    RebasedHttp http = service.Http(limits);
    const Platform interfaces = platform.With(platform.files, http);
    WriteSettings(
        SettingsText().replace(QStringLiteral("popup=\"true\""), QStringLiteral("popup=\"false\"")));
    const QByteArray settings = ReadSettings();
    Program program(interfaces);
    program.Start();
    for (const char* const script : {"prayerCall.pl", "getAd.pl"}) {
        ASSERT_TRUE(service.Misbehave(script, GetParam().how));
    }
    platform.clock.SetTime(12, 30, 0);
    const auto alarms = [&](int times) {
        for (int i = 0; i < times; ++i) {
            platform.timers.Ticker()->Fire();
        }
    };
    alarms(replies / 10);
    service.Forget();
    const qint64 before = Memory::ForgetPeak();
    alarms(replies / 2);
    const qint64 after = Memory::Trimmed();
    std::printf("figure: memory over %d replies of the service, %s: %+.2f MiB, at most %.2f MiB meanwhile\n",
                replies, GetParam().how, static_cast<double>(after - before) / 1048576.0,
                static_cast<double>(Memory::Peak() - before) / 1048576.0);
    EXPECT_LT(after - before, kMostGrowthPerReply * replies);
    EXPECT_LT(Memory::Peak() - before, kHighestPeak);
    // With a short time limit a busy machine may not send the request in time.
    EXPECT_GE(service.Asked(replies), GetParam().isEndless ? replies * 9 / 10 : replies);
    EXPECT_EQ(ReadSettings(), settings);
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(Table, FaultMemory,
                         testing::Values(Fault{"ok"}, Fault{"refuse"}, Fault{"hang", 300, true},
                                         Fault{"drip", 300, true}, Fault{"flood"}, Fault{"error"},
                                         Fault{"html"}, Fault{"truncated"}, Fault{"cut"}, Fault{"empty"},
                                         Fault{"gzip"}, Fault{"loop"}, Fault{"entities"},
                                         Fault{"certificate", 60}, Fault{"utf16"}, Fault{"windows1252"}),
                         [](const auto& row) { return std::string(row.param.how); });

} // namespace
