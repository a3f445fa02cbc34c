// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"
#include "app/FirstTouchFixture.h"
#include "app/MainLinks.h"
#include "fakes/Desk.h"
#include "forms/Bars.h"
#include "forms/LinkLabel.h"

namespace {

constexpr const char* kMaghrib =
    R"(<maghrib enabled="true" popup="true" mobil="false" play="false" audioFile=""/>)";

/// The whole main window on fakes, loaded and shown; Maghrib sounds without a popup.
class SoundControlsTest : public FirstTouchFixture
{
protected:
    SoundControlsTest()
    {
        WriteMaghrib("false");
        platform.player.volume = 37;
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
        main = &Window();
        main->Show();
        platform.player.log.clear();
        platform.http.requests.clear();
    }
    static void WriteMaghrib(const char* popup)
    {
        WriteSettings(
            Changed(kMaghrib,
                    R"(<maghrib enabled="true" popup="%1" mobil="true" play="true" audioFile="a.mp3"/>)")
                .arg(QLatin1String(popup))
                .replace(QStringLiteral("mobileConfirm=\"0\""), QStringLiteral("mobileConfirm=\"1\"")));
    }
    LinkLabel& StopLink() { return Find<LinkLabel>("LblStopLink"); }
    LevelBar& Volume() { return Find<LevelBar>("VolControl"); }
    /// The alarm of Maghrib, which plays.
    void Sound()
    {
        TickAt(18, 42);
        EXPECT_EQ(std::exchange(platform.player.log, {}), QStringList{QStringLiteral("url a.mp3")});
        EXPECT_TRUE(StopLink().isEnabledTo(main));
    }

    FrmMain* main = nullptr;
};

TEST_F(SoundControlsTest, start_bringsTheBarToThePlayersVolume_linkIsDisabled)
{
    EXPECT_EQ(Volume().Value(), 37);
    EXPECT_EQ(platform.player.volume, 37);
    EXPECT_EQ(Volume().minimum(), 0);
    EXPECT_EQ(Volume().maximum(), 100);
    EXPECT_FALSE(StopLink().isEnabled());
    EXPECT_TRUE(StopLink().isVisible());
}

TEST_F(SoundControlsTest, updateEverything_withoutAConfiguration_leavesTheBar)
{
    platform.player.volume = 12;
    WriteSettings(QStringLiteral("<root/>"));
    EXPECT_EQ(main->UpdateEverything(), 0);
    EXPECT_EQ(Volume().Value(), 37);
    WriteSettings();
    EXPECT_EQ(main->UpdateEverything(), 1);
    EXPECT_EQ(Volume().Value(), 12) << "at the volume of the player again";
}

TEST_F(SoundControlsTest, updateEverything_volumeOutOfRange_isFatal_nothingIsShown)
{
    const QString before = SettingsBlock();
    WriteSettings(SettingsWith({{"Current", "Makkah"},
                                {"method", "Makkah"},
                                {"asrMethode", "hanafi"},
                                {"useDLS", "true"},
                                {"useAdvWarn", "true"}}));
    platform.player.volume = 101;
    EXPECT_EQ(main->UpdateEverything(), 0);
    ExpectFatal(6);
    EXPECT_EQ(SettingsBlock(), before) << "the volume comes before the labels";
    EXPECT_EQ(Volume().Value(), 37);
}

TEST_F(SoundControlsTest, volume_stepSetsThePlayerAtOnce_dragAtTheRelease)
{
    Volume().setFocus();
    QTest::keyClick(&Volume(), Qt::Key_Right);
    EXPECT_EQ(platform.player.log.join(u'|'), u"volume 38");
    Volume().setSliderDown(true);
    Volume().setSliderPosition(60);
    Volume().setSliderPosition(80);
    EXPECT_EQ(platform.player.log.size(), 1) << "nothing while the thumb is held";
    Volume().setSliderDown(false);
    EXPECT_EQ(platform.player.log.join(u'|'), u"volume 38|volume 80");
}

TEST_F(SoundControlsTest, alarmWithPopup_disablesTheWindowUntilItGoes_soundGoesOn)
{
    TickAt(20, 15);
    EXPECT_EQ(main->Variables().ActiveForm, u"FrmPopup");
    EXPECT_FALSE(main->isEnabled());
    EXPECT_FALSE(StopLink().isEnabledTo(main)) << "no sound is wanted";
    forms.Unload(FrmPopup::kName);
    EXPECT_TRUE(main->isEnabled());
    EXPECT_EQ(main->Variables().ActiveForm, u"FrmMain");

    WriteMaghrib("true");
    Sound();
    EXPECT_FALSE(main->isEnabled());
    EXPECT_TRUE(Volume().isEnabledTo(main));
    forms.Unload(FrmPopup::kName);
    EXPECT_EQ(platform.player.log, QStringList());
    EXPECT_TRUE(StopLink().isEnabled());
}

TEST_F(SoundControlsTest, stopLink_clicked_greysBeforeThePlayerHasReported)
{
    Volume().SetValue(0); // silent, but playing
    platform.player.log.clear();
    Sound();
    QTest::mouseClick(&StopLink(), Qt::LeftButton);
    EXPECT_FALSE(StopLink().isEnabled());
    EXPECT_EQ(platform.player.log.join(u'|'), u"stop");
    QTest::mouseClick(&StopLink(), Qt::LeftButton);
    EXPECT_EQ(platform.player.log.size(), 1) << "a greyed link takes no click";
}

TEST_F(SoundControlsTest, stoppedState_clearsThePlaylistAndGreysTheLink_othersAreIgnored)
{
    Sound();
    for (const int state : {0, 2, 3, 6, 8, 9, 10, -1}) {
        platform.player.Report(state);
    }
    EXPECT_TRUE(StopLink().isEnabled());
    EXPECT_EQ(platform.player.log, QStringList());
    platform.player.Report(MediaPlayer::kStopped);
    EXPECT_FALSE(StopLink().isEnabled());
    EXPECT_EQ(platform.player.log.join(u'|'), u"clear");
}

TEST(SoundControls, windowGone_playerSendsNoReport)
{
    FakePlatform platform;
    FakeCalculation calculation;
    WriteSettings();
    {
        Forms forms(platform.interfaces);
        RegisterStartWindows(forms, calculation);
        forms.Touch<FrmMain>();
    }
    platform.player.log.clear();
    platform.player.Report(MediaPlayer::kStopped);
    EXPECT_EQ(platform.player.log, QStringList());
}

} // namespace
