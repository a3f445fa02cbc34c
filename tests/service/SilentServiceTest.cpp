// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"
#include "fakes/RebasedHttp.h"
#include "fakes/SettingsFile.h"
#include "service/StartUpProgram.h"

#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// The limit of the handlers, with a margin for a busy machine.
constexpr qint64 kWait = 3000;
constexpr qint64 kSpare = 700;

// The whole program with a service that never answers two of its scripts.
class SilentService : public testing::Test
{
protected:
    SilentService()
    {
        WriteSettings(SettingsText().replace(
            QStringLiteral(R"(<duhr enabled="true" popup="true" mobil="false" play="false" audioFile=""/>)"),
            QStringLiteral(R"(<duhr enabled="true" play="true" audioFile="a.mp3"/>)")));
    }
    [[nodiscard]] std::size_t Asked(const char* script) const
    {
        const auto lines = server.RequestLines();
        return static_cast<std::size_t>(std::count_if(
            lines.begin(), lines.end(), [&](const QByteArray& line) { return line.contains(script); }));
    }

    std::atomic<bool> isSilent = true;
    std::atomic<int> underWay = 0;
    const LoopbackServer server{[this](LoopbackServer::Connection& connection) {
        const QByteArray target = connection.Target();
        if (isSilent && (target.contains("startup.pl") || target.contains("prayerCall.pl"))) {
            ++underWay;
            LoopbackServer::Hang()(connection);
            --underWay;
        } else {
            connection.Keep("<root/>");
        }
    }};
    FakePlatform platform;
    RebasedHttp http{QStringLiteral(DUSKBEACON_SERVICE_URL), server.Url(), HttpLimits{}};
    const Platform interfaces = platform.With(platform.files, http);
    Program program{interfaces};
};

TEST_F(SilentService, start_goesOnAfterThreeSeconds)
{
    QElapsedTimer time;
    time.start();
    program.Start();
    EXPECT_GE(time.elapsed(), kWait - 100) << "the service had its time to answer";
    EXPECT_LT(time.elapsed(), kWait + kSpare);
    EXPECT_EQ(program.forms.Loaded(DlgStart::kName), nullptr);
    EXPECT_EQ(Asked("startup.pl"), 1U);
    EXPECT_EQ(Asked("getAd.pl"), 1U);
    EXPECT_EQ(underWay, 1) << "the request goes on";
}

TEST_F(SilentService, soundOfAPrayer_startsAfterThreeSeconds)
{
    isSilent = false;
    program.Start();
    isSilent = true;
    platform.clock.SetTime(12, 30, 0);
    QElapsedTimer time;
    time.start();
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(20);
    platform.timers.Ticker()->Fire();
    std::printf("figure: the sound of a prayer under a service that hangs: after %lld ms\n",
                static_cast<long long>(time.elapsed()));
    EXPECT_LT(time.elapsed(), kWait + kSpare);
    EXPECT_GT(ticks, 20) << "events were served";
    EXPECT_EQ(platform.player.url, QStringLiteral("a.mp3"));
    EXPECT_EQ(Asked("prayerCall.pl"), 1U);
    EXPECT_EQ(Asked("getAd.pl"), 2U) << "the ad comes after the sound";
    EXPECT_EQ(underWay, 1) << "a text message may depend on it";
}

} // namespace
