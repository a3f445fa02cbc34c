// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"
#include "fakes/Desk.h"
#include "fakes/FakeCalculation.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "fakes/StartWindows.h"
#include "forms/Forms.h"

#include <QPushButton>

#include <gtest/gtest.h>

namespace {

/// The user leaves the program while the alarm of 18:42 waits for the service's reply.
class ClosedDuringAlarm : public testing::TestWithParam<bool>
{
protected:
    ClosedDuringAlarm()
    {
        QString text = SettingsText();
        text.replace(
            QStringLiteral(
                R"(<maghrib enabled="true" popup="true" mobil="false" play="false" audioFile=""/>)"),
            QStringLiteral(
                R"(<maghrib enabled="true" popup="%1" mobil="false" play="true" audioFile="a.mp3"/>)")
                .arg(HasPopup() ? QStringLiteral("true") : QStringLiteral("false")));
        text.replace(QStringLiteral("useAdvWarn=\"false\""), QStringLiteral("useAdvWarn=\"true\""));
        WriteSettings(text);
        // The warning of Isha falls due in the same tick.
        calculation.slots_[9] = 1132;
        RegisterStartWindows(forms, calculation);
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
        forms.Register(FrmMain::kName, [this] {
            ++mainWindows;
            return std::make_unique<FrmMain>(forms, calculation);
        });
        forms.SetLastUnloadedHandler([this] { ++ended; });
        forms.Touch<FrmMain>().Show();
        Desk::Settle();
        platform.player.log.clear();
        platform.http.requests.clear();
    }

    [[nodiscard]] static bool HasPopup() { return GetParam(); }
    [[nodiscard]] QWidget* Popup() const { return forms.Loaded(FrmPopup::kName); }
    void TickOfTheAlarm()
    {
        platform.http.reachable = true;
        platform.http.whileWaiting = [this] {
            forms.Unload(FrmMain::kName);
            Desk::Settle();
            requestsBefore = platform.http.requests;
        };
        platform.clock.SetTime(18, 42);
        platform.timers.Ticker()->Fire();
        Desk::Settle();
    }

    FakePlatform platform;
    FakeCalculation calculation;
    Forms forms{platform.doors};
    QStringList requestsBefore;
    int mainWindows = 0;
    int ended = 0;
};

TEST_P(ClosedDuringAlarm, afterTheReply_nothingIsBegun)
{
    TickOfTheAlarm();
    ASSERT_EQ(requestsBefore.size(), 1);
    EXPECT_TRUE(requestsBefore.front().contains(QStringLiteral("prayerCall.pl")));
    EXPECT_EQ(platform.http.requests, requestsBefore) << "no ad any more";
    EXPECT_EQ(platform.player.url, QString());
    EXPECT_EQ(platform.player.log, QStringList{QStringLiteral("stop")});
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    EXPECT_EQ(mainWindows, 1) << "nothing brings it back";
    EXPECT_EQ(Popup() != nullptr, HasPopup()) << "the popup that was up stays, and no warning comes";
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_FALSE(platform.timers.Ticker() != nullptr && platform.timers.Ticker()->IsEnabled());
}

TEST_P(ClosedDuringAlarm, program_endsWhenThePopupIsGone)
{
    TickOfTheAlarm();
    if (HasPopup()) {
        ASSERT_NE(Popup(), nullptr);
        EXPECT_TRUE(Popup()->isVisible());
        EXPECT_EQ(ended, 0);
        for (FakeTimer* const timer : std::vector(platform.timers.all)) {
            timer->Fire();
        }
        Desk::Click(*Popup()->findChild<QPushButton*>(QStringLiteral("Command1")));
    }
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(Popup(), nullptr);
    EXPECT_EQ(mainWindows, 1);
    EXPECT_EQ(platform.process.ended, 0) << "it ends by itself";
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(Popup, ClosedDuringAlarm, testing::Values(false, true), [](const auto& row) {
    return std::string(row.param ? "withPopup" : "withoutPopup");
});

} // namespace
