// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SoundControls.h"

#include "alerts/FrmPopup.h"
#include "fakes/FakeCalculation.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "fakes/StartWindows.h"
#include "forms/Bars.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"
#include "store/SimpleXML.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

/// The whole main window on fakes, loaded and shown.
class SoundControlsTest : public testing::Test
{
protected:
    SoundControlsTest()
    {
        QString text = SettingsText();
        text.replace(
            QStringLiteral(
                R"(<maghrib enabled="true" popup="true" mobil="false" play="false" audioFile=""/>)"),
            QStringLiteral(
                R"(<maghrib enabled="true" popup="false" mobil="true" play="true" audioFile="a.mp3"/>)"));
        text.replace(QStringLiteral("mobileConfirm=\"0\""), QStringLiteral("mobileConfirm=\"1\""));
        WriteSettings(text);
        platform.player.volume = 37;
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
        RegisterStartWindows(forms, calculation);
        main = &forms.Touch<FrmMain>();
        main->Show();
        platform.player.log.clear();
        platform.http.requests.clear();
    }

    template <typename Control>
    [[nodiscard]] Control* Find(const char* name) const
    {
        return main->findChild<Control*>(QString::fromLatin1(name));
    }
    [[nodiscard]] LinkLabel* StopLink() const { return Find<LinkLabel>("LblStopLink"); }
    [[nodiscard]] LevelBar* Volume() const { return Find<LevelBar>("VolControl"); }
    void TickAt(int hour, int minute)
    {
        platform.clock.SetTime(hour, minute);
        platform.timers.Ticker()->Fire();
    }

    FakePlatform platform;
    FakeCalculation calculation;
    Forms forms{platform.doors};
    FrmMain* main = nullptr;
};

TEST_F(SoundControlsTest, controls_standWhereTheyWereDesigned)
{
    EXPECT_EQ(Find<QLabel>("LblVolume")->pos(), QPoint(8, 216));
    EXPECT_EQ(Find<QLabel>("LblVolume")->text(), QStringLiteral("Volume Control:"));
    EXPECT_EQ(Volume()->geometry(), QRect(8, 232, 121, 17));
    EXPECT_EQ(Volume()->minimum(), 0);
    EXPECT_EQ(Volume()->maximum(), 100);
    // As wide as designed, or as the text needs.
    EXPECT_EQ(StopLink()->pos(), QPoint(32, 256));
    EXPECT_EQ(StopLink()->width(), 65);
    EXPECT_EQ(StopLink()->text(), QStringLiteral("Stop Playing"));
    EXPECT_FALSE(StopLink()->isEnabled());
    EXPECT_TRUE(StopLink()->isVisible());
}

TEST_F(SoundControlsTest, start_bringsTheBarToThePlayersVolume)
{
    EXPECT_EQ(Volume()->Value(), 37);
    EXPECT_EQ(platform.player.volume, 37);
}

TEST_F(SoundControlsTest, updateEverything_bringsTheBarBackToThePlayersVolume)
{
    platform.player.volume = 12;
    EXPECT_EQ(main->UpdateEverything(), 1);
    EXPECT_EQ(Volume()->Value(), 12);
}

TEST_F(SoundControlsTest, updateEverything_withoutAConfiguration_leavesTheBar)
{
    platform.player.volume = 12;
    WriteSettings(QStringLiteral("<root/>"));
    EXPECT_EQ(main->UpdateEverything(), 0);
    EXPECT_EQ(Volume()->Value(), 37);
}

TEST_F(SoundControlsTest, updateEverything_volumeOutOfRange_isFatal_nothingIsShown)
{
    const auto block = [this] {
        QStringList texts;
        for (const char* label :
             {"LblLocation", "LblTimeZ", "LblCaclMeth", "LblAsrMeth", "LblDLSavings", "LblAdvWarning"}) {
            texts << Find<QLabel>(label)->text();
        }
        return texts;
    };
    const QStringList before = block();
    WriteSettings(
        SettingsText()
            .replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"Makkah\""))
            .replace(QStringLiteral("method=\"ISNA\""), QStringLiteral("method=\"Makkah\""))
            .replace(QStringLiteral("\"shafi\""), QStringLiteral("\"hanafi\""))
            .replace(QStringLiteral("useDLS=\"false\""), QStringLiteral("useDLS=\"true\""))
            .replace(QStringLiteral("useAdvWarn=\"false\""), QStringLiteral("useAdvWarn=\"true\"")));
    platform.player.volume = 101;
    EXPECT_EQ(main->UpdateEverything(), 0);
    EXPECT_EQ(platform.boxes.boxes,
              std::vector{(FakeMessageBoxes::Box{
                  QStringLiteral("An error has occured, The application will be terminated."),
                  QStringLiteral("Error - 6"), QStringLiteral("OK")})});
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_EQ(block(), before) << "the volume comes before the labels";
    EXPECT_EQ(Volume()->Value(), 37);
}

TEST_F(SoundControlsTest, volumeStep_setsThePlayerAtOnce)
{
    Volume()->setFocus();
    QTest::keyClick(Volume(), Qt::Key_Right);
    EXPECT_EQ(platform.player.log, QStringList{QStringLiteral("volume 38")});
}

TEST_F(SoundControlsTest, volumeDragged_setsThePlayerAtTheRelease)
{
    Volume()->setSliderDown(true);
    Volume()->setSliderPosition(60);
    Volume()->setSliderPosition(80);
    EXPECT_EQ(platform.player.log, QStringList()) << "nothing while the thumb is held";
    Volume()->setSliderDown(false);
    EXPECT_EQ(platform.player.log, QStringList{QStringLiteral("volume 80")});
}

TEST_F(SoundControlsTest, alarm_enablesTheLinkAndAsksTheServiceByTheSettings)
{
    TickAt(18, 42);
    EXPECT_TRUE(StopLink()->isEnabled());
    EXPECT_EQ(platform.player.log, QStringList{QStringLiteral("url a.mp3")});
    ASSERT_FALSE(platform.http.requests.isEmpty());
    EXPECT_TRUE(platform.http.requests.front().endsWith(
        QStringLiteral("/cgi-bin/dbeacon/prayerCall.pl?prod_string=P-77&aid=US-1&pno=5&alert_type=Normal&ma=1"
                       "&dist_string=dbeacon&time=18:42&aid=US-1")))
        << platform.http.requests.front().toStdString();
}

TEST_F(SoundControlsTest, alarmWithPopup_disablesTheWindowUntilItGoes)
{
    TickAt(20, 15);
    EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmPopup"));
    EXPECT_FALSE(main->isEnabled());
    EXPECT_FALSE(StopLink()->isEnabledTo(main)) << "no sound is wanted";
    forms.Unload(FrmPopup::kName);
    EXPECT_TRUE(main->isEnabled());
    EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmMain"));
}

TEST_F(SoundControlsTest, alarmWithPopupAndSound_leavesTheLinkAndTheBarEnabledInTheDisabledWindow)
{
    SimpleXML settings(platform.doors);
    ASSERT_TRUE(settings.Load(QStringLiteral("settings.xml")));
    settings.AddAttributeByName(QStringLiteral("popup"), QStringLiteral("true"),
                                QStringLiteral("//root//alerts//maghrib"));
    ASSERT_TRUE(settings.Save(QStringLiteral("settings.xml")));
    TickAt(18, 42);
    EXPECT_FALSE(main->isEnabled());
    EXPECT_TRUE(StopLink()->isEnabledTo(main));
    EXPECT_TRUE(main->findChild<QWidget*>(QStringLiteral("VolControl"))->isEnabledTo(main));
}

TEST_F(SoundControlsTest, stopLink_clicked_greysBeforeThePlayerHasReported)
{
    TickAt(18, 42);
    platform.player.log.clear();
    QTest::mouseClick(StopLink(), Qt::LeftButton);
    EXPECT_FALSE(StopLink()->isEnabled());
    EXPECT_EQ(platform.player.log, QStringList{QStringLiteral("stop")});
    QTest::mouseClick(StopLink(), Qt::LeftButton);
    EXPECT_EQ(platform.player.log.size(), 1) << "a greyed link takes no click";
}

TEST_F(SoundControlsTest, stoppedState_clearsThePlaylistAndGreysTheLink)
{
    TickAt(18, 42);
    platform.player.log.clear();
    platform.player.Report(MediaPlayer::kStopped);
    EXPECT_FALSE(StopLink()->isEnabled());
    EXPECT_EQ(platform.player.log, QStringList{QStringLiteral("clear")});
}

TEST_F(SoundControlsTest, otherStates_areIgnored)
{
    TickAt(18, 42);
    platform.player.log.clear();
    for (const int state : {0, 2, 3, 6, 8, 9, 10, -1}) {
        platform.player.Report(state);
    }
    EXPECT_TRUE(StopLink()->isEnabled());
    EXPECT_EQ(platform.player.log, QStringList());
}

TEST_F(SoundControlsTest, popupClosed_soundGoesOn)
{
    TickAt(18, 42);
    platform.player.log.clear();
    TickAt(20, 15);
    forms.Unload(FrmPopup::kName);
    EXPECT_EQ(platform.player.log, QStringList());
    EXPECT_TRUE(StopLink()->isEnabled());
}

TEST_F(SoundControlsTest, volumeAtZero_leavesTheLinkWorking)
{
    Volume()->SetValue(0);
    TickAt(18, 42);
    EXPECT_TRUE(StopLink()->isEnabled());
    QTest::mouseClick(StopLink(), Qt::LeftButton);
    EXPECT_TRUE(platform.player.log.contains(QStringLiteral("stop")));
}

TEST_F(SoundControlsTest, mouseOverTheLink_makesTheHand)
{
    TickAt(18, 42);
    ASSERT_NE(main->cursor().shape(), Qt::PointingHandCursor);
    QTest::mouseMove(StopLink(), QPoint(5, 5));
    EXPECT_TRUE(QTest::qWaitFor([this] { return main->cursor().shape() == Qt::PointingHandCursor; }));
}

TEST(SoundControls, windowGone_playerReportsToNobody)
{
    FakePlatform platform;
    FakeCalculation calculation;
    WriteSettings();
    {
        Forms forms(platform.doors);
        RegisterStartWindows(forms, calculation);
        forms.Touch<FrmMain>();
    }
    platform.player.log.clear();
    platform.player.Report(MediaPlayer::kStopped);
    EXPECT_EQ(platform.player.log, QStringList());
}

} // namespace
