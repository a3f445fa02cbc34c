// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Memory.h"

#include "app/Appearance.h"
#include "soak/ProgramWorld.h"

#include <QAction>
#include <QBuffer>
#include <QImage>
#include <QMenu>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

// Fonts, glyphs and styles come with the first opening of each window and stay: two and a half MiB for the
// dialogs.
constexpr int kWarmUp = 8;
constexpr double kMostMebibytes = 2.0;

double ResidentMebibytes()
{
    return static_cast<double>(Memory::Resident()) / (1024.0 * 1024.0);
}

QByteArray Png(int number)
{
    QImage image(40 + number % 60, 30, QImage::Format_RGB32);
    image.fill(static_cast<unsigned int>(number * 7919));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

/// A service whose every ad is another one, with a picture of its own.
class AdService final : public Http
{
public:
    [[nodiscard]] bool Reach(const QString& /*url*/) override { return true; }
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& /*limits*/) override
    {
        if (url.contains(u"getAd.pl")) {
            ++ads;
            const QByteArray html = "<a href=\"http://service/" + QByteArray::number(ads) +
                                    "\"><img src=\"http://service/ad.png?" + QByteArray::number(ads) +
                                    "\"></a> <b>Ad " + QByteArray::number(ads) + "</b>";
            return "<root ad_url=\"" + html.toBase64() + "\" wait_time=\"1\"/>";
        }
        if (url.contains(u"getStates.pl")) {
            return QByteArray(R"(<root><a state="Illinois" state_id="17"/></root>)");
        }
        return QByteArray("<root/>");
    }
    void Notify(const QString& url, const HttpLimits& limits) override
    {
        static_cast<void>(Fetch(url, limits));
    }
    void FetchInBackground(const QString& /*url*/, const HttpLimits& /*limits*/, QObject* /*context*/,
                           std::function<void(Reply)> done) override
    {
        ++pictures;
        done(Png(pictures));
    }

    int ads = 0;
    int pictures = 0;
};

class MemoryAfter : public testing::Test
{
protected:
    static void SetUpTestSuite() { SetAppearance(); }
    MemoryAfter() { m_world.Start(); }

    /// Repeats the action, first to warm up, and then to see what it leaves behind.
    template <typename Action>
    void Repeat(const char* name, int times, Action action)
    {
        const double atTheStart = ResidentMebibytes();
        for (int i = 0; i < kWarmUp; ++i) {
            action(i);
        }
        const double before = ResidentMebibytes();
        for (int i = 0; i < times; ++i) {
            action(i);
        }
        const double after = ResidentMebibytes();
        std::printf(
            "figure: memory, %d %s: at the start %.2f MiB, behind the first %d %.2f MiB, after %.2f MiB\n",
            times, name, atTheStart, kWarmUp, before, after);
        EXPECT_LE(after, before + kMostMebibytes);
        EXPECT_TRUE(m_world.platform.boxes.boxes.empty());
    }
    void TickAt(const QTime& time)
    {
        m_world.platform.clock.now.setTime(time);
        m_world.platform.timers.Ticker()->Fire();
    }

    AdService service;
    SystemFileStore m_files;
    ProgramWorld m_world{
        m_files, &service,
        SettingsText().replace(QStringLiteral(R"(play="false")"), QStringLiteral(R"(play="true")"))};
};

TEST_F(MemoryAfter, tenThousandAlerts_leaveNothingBehind)
{
    const QStringList times = {QStringLiteral("LblFarjTime"), QStringLiteral("LblDuhrTime"),
                               QStringLiteral("LblAsrTime"), QStringLiteral("LblMaghribTime"),
                               QStringLiteral("LblIshaTime")};
    int popups = 0;
    Repeat("alerts", 10'000, [&](int i) {
        if (i % 5 == 0) {
            m_world.platform.clock.now = m_world.platform.clock.now.addDays(1);
            TickAt(QTime(0, 0));
        }
        TickAt(
            QTime::fromString(m_world.Text(times.at(i % 5).toLatin1().constData()), QStringLiteral("h:mm")));
        popups += m_world.IsUp(FrmPopup::kName) ? 1 : 0;
        // Every tenth stays to its end.
        for (int second = i % 10 == 0 ? 600 : 3; second > 0 && m_world.PopupTimer() != nullptr; --second) {
            m_world.PopupTimer()->Fire();
        }
        if (m_world.IsUp(FrmPopup::kName)) {
            m_world.Click(FrmPopup::kName, "Command1");
        }
        m_world.platform.player.Report(1);
        m_world.platform.player.log.clear();
        Desk::Settle();
    });
    EXPECT_EQ(popups, 10'000 + kWarmUp);
}

TEST_F(MemoryAfter, tenThousandAds_leaveNothingBehind)
{
    Repeat("ad refreshes", 10'000, [this](int) {
        const int before = service.ads;
        for (int second = 1; second <= 600 && service.ads == before; ++second) {
            TickAt(QTime(12, 0, 30));
        }
        QCoreApplication::processEvents();
    });
    EXPECT_GE(service.ads, 10'000 + kWarmUp);
    EXPECT_GE(service.pictures, 10'000 + kWarmUp);
}

TEST_F(MemoryAfter, tenThousandDialogs_leaveNothingBehind)
{
    static const char* const kLinks[] = {"LblAlertsLink", "LblFarjLink", "LblLocLink", "LblIshaLink"};
    Repeat("dialog openings", 10'000, [this](int i) {
        const char* const link = kLinks[i % 4];
        m_world.Click(FrmMain::kName, link);
        const QString window = i % 4 == 2 ? FrmLocation::kName : FrmAlerts::kName;
        ASSERT_TRUE(m_world.IsUp(window));
        m_world.Loaded(window)->close();
        Desk::Settle();
        ASSERT_EQ(m_world.Loaded(window), nullptr);
        m_world.platform.player.log.clear();
    });
}

TEST_F(MemoryAfter, aThousandSearchWindows_leaveNothingBehind)
{
    m_world.Click(FrmMain::kName, "LblLocLink");
    Repeat("search windows", 1000, [this](int) {
        m_world.Click(FrmLocation::kName, "LblNewLocLink");
        ASSERT_TRUE(m_world.IsUp(FrmNewLoc::kName));
        m_world.Loaded(FrmNewLoc::kName)->close();
        Desk::Settle();
        ASSERT_EQ(m_world.Loaded(FrmNewLoc::kName), nullptr);
    });
}

TEST_F(MemoryAfter, aThousandTimesIntoTheTrayAndBack_leaveNothingBehind)
{
    FrmMain& main = m_world.Main();
    auto* const mnuOpen = m_world.platform.tray.lastMenu->findChild<QAction*>(QStringLiteral("mnuOpen"));
    ASSERT_NE(mnuOpen, nullptr);
    Repeat("times into the tray and back", 1000, [&](int) {
        main.showMinimized();
        Desk::Settle();
        ASSERT_FALSE(main.isVisible());
        mnuOpen->trigger();
        Desk::Settle();
        ASSERT_TRUE(main.isVisible());
    });
}

} // namespace
