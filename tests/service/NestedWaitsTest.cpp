// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/ProgramWorld.h"
#include "store/SimpleXML.h"

#include <gtest/gtest.h>

namespace {

QString Confirmable()
{
    return SettingsText()
        .replace(QStringLiteral("popup=\"true\""), QStringLiteral("popup=\"false\""))
        .replace(QStringLiteral(R"(mobileEnabled="false" mobileDID="" mobilePC="")"),
                 QStringLiteral(R"(mobileEnabled="true" mobileDID="D-1" mobilePC="4711")"));
}

// Twenty nested steps, each started while a request of the step before is loading: an ad, an alarm, a search
// in windows of its own, a sign-up in another window, an ad inside that. There is one sign-up at a time, and
// no tick refreshes the ad during the request of an alarm, so that only the first of these sends requests.
class NestedWaitsTest : public testing::Test
{
protected:
    NestedWaitsTest()
    {
        auto& replies = m_http.replies;
        replies[QStringLiteral("getAd.pl")] = "<root ad_url='PGI+YWQ8L2I+' wait_time='1'/>";
        replies[QStringLiteral("getStates.pl")] = "<root><s1 state='Illinois' state_id='1'/></root>";
        replies[QStringLiteral("getUsCanCity.pl")] = "<root><c0 city='Chicago' atlas_id='US-1'/></root>";
        replies[QStringLiteral("confirmSignup.pl")] = "<root result='1' message='Welcome'/>";
        world.Start();
        m_before = ReadSettings();
        const QStringList duhr = world.Text("LblDuhrTime").split(u':');
        m_duhr = QTime(duhr.value(0).toInt(), duhr.value(1).toInt());
        m_http.requests.clear();
    }

    /// Begins with an ad; @p deepest runs after the twentieth step, during its request.
    void Go(const std::function<void()>& deepest)
    {
        m_deepest = deepest;
        GoDeeper();
    }
    [[nodiscard]] QStringList Scripts() const
    {
        QStringList scripts;
        for (const QString& request : m_http.requests) {
            scripts << request.section(u'/', -1).section(u'?', 0, 0);
        }
        // Requested in between, without a nested step.
        scripts.removeAll(QStringLiteral("getStates.pl"));
        return scripts;
    }
    [[nodiscard]] static QStringList ExpectedScripts()
    {
        QStringList scripts{QStringLiteral("getAd.pl")};
        for (int round = 0; round < 4; ++round) {
            scripts << QStringLiteral("prayerCall.pl") << QStringLiteral("getUsCanCity.pl");
            if (round == 0) {
                scripts << QStringLiteral("confirmSignup.pl");
            }
        }
        return scripts;
    }
    /// The sign-up is reported and stored, and only its confirmation has changed in the file.
    void ExpectSignedUp()
    {
        ASSERT_EQ(world.platform.boxes.boxes.size(), 1U);
        EXPECT_EQ(world.platform.boxes.boxes.front().text, QStringLiteral("Welcome"));
        SimpleXML expected(world.platform.interfaces);
        const QByteArray after = ReadSettings();
        WriteSettings(QString::fromUtf8(m_before));
        ASSERT_TRUE(expected.Load(kSettingsFile));
        expected.AddAttributeByName(QStringLiteral("mobileConfirm"), QStringLiteral("1"),
                                    QStringLiteral("//root//alerts"));
        ASSERT_TRUE(expected.Save(kSettingsFile));
        EXPECT_EQ(after, ReadSettings());
    }

    void Close(const QString& window) const
    {
        if (Form* const form = world.Loaded(window); form != nullptr) {
            form->close();
            Desk::Settle();
        }
        EXPECT_EQ(world.Loaded(window), nullptr);
    }

    SystemFileStore files;
    ProgramWorld world{files, nullptr, Confirmable()};

private:
    void GoDeeper()
    {
        if (m_depth == 20) {
            m_deepest();
            return;
        }
        switch (m_depth++ % 5) {
        case 1:
            Close(FrmAlerts::kName);
            world.platform.clock.now.setTime(m_duhr);
            m_http.whileWaiting = [this] { GoDeeper(); };
            Tick();
            break;
        case 2:
            world.Click(FrmMain::kName, "LblLocLink");
            world.Click(FrmLocation::kName, "LblNewLocLink");
            QTest::keyClicks(&world.Find(FrmNewLoc::kName, "TxtZipCode"), QStringLiteral("60601"));
            m_http.whileWaiting = [this] { GoDeeper(); };
            world.Click(FrmNewLoc::kName, "LblGetLink");
            break;
        case 3:
            Close(FrmNewLoc::kName);
            Close(FrmLocation::kName);
            world.Click(FrmMain::kName, "LblAlertsLink");
            world.Click(FrmAlerts::kName, "LblMobilAlert");
            m_http.whileWaiting = [this] { GoDeeper(); };
            world.Click(FrmAlerts::kName, "CmdMobilReg");
            PassOver();
            break;
        default:
            world.platform.clock.SetTime(3, 0, 15);
            world.Main().Variables().AdTimer = static_cast<float>(m_ticks + 1);
            m_http.whileWaiting = [this] { GoDeeper(); };
            Tick();
            PassOver();
            break;
        }
    }
    /// Continue if the last step sent no request.
    void PassOver()
    {
        if (std::exchange(m_http.whileWaiting, nullptr)) {
            GoDeeper();
        }
    }
    void Tick()
    {
        ++m_ticks;
        world.platform.timers.Ticker()->Fire();
    }

    FakeHttp& m_http = world.platform.http;
    QByteArray m_before;
    QTime m_duhr;
    int m_depth = 0;
    int m_ticks = 0;
    std::function<void()> m_deepest;
};

TEST_F(NestedWaitsTest, twentyOfAllKinds_unwind)
{
    bool isDeep = false;
    Go([&] {
        isDeep = true;
        EXPECT_EQ(Scripts(), ExpectedScripts());
        EXPECT_TRUE(world.IsUp(FrmAlerts::kName));
        Close(FrmAlerts::kName);
    });
    Desk::Settle();
    EXPECT_TRUE(isDeep);
    // Each alarm ends with an ad of its own after its reply.
    EXPECT_EQ(Scripts().size(), ExpectedScripts().size() + 4);
    for (const QLatin1String window : {FrmAlerts::kName, FrmLocation::kName, FrmNewLoc::kName}) {
        EXPECT_EQ(world.Loaded(window), nullptr) << window.data();
    }
    EXPECT_TRUE(world.Main().isEnabled());
    EXPECT_EQ(world.Main().Variables().ActiveForm, QStringLiteral("FrmMain"));
    ExpectSignedUp();
    EXPECT_EQ(world.platform.process.ended, 0);
    world.Click(FrmMain::kName, "LblLocLink");
    EXPECT_TRUE(world.IsUp(FrmLocation::kName));
}

TEST_F(NestedWaitsTest, mainWindowClosedInTheTwentieth_unwinds)
{
    bool isDeep = false;
    Go([&] {
        isDeep = true;
        world.Main().close();
        Desk::Settle();
    });
    Desk::Settle();
    EXPECT_TRUE(isDeep);
    EXPECT_EQ(Scripts(), ExpectedScripts()) << "no request after the end";
    EXPECT_EQ(world.Loaded(FrmMain::kName), nullptr);
    // The last dialog is still open, so that the reply is shown.
    EXPECT_TRUE(world.IsUp(FrmAlerts::kName));
    ExpectSignedUp();
}

} // namespace
