// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"
#include "app/FirstTouchFixture.h"
#include "fakes/Desk.h"

#include <QPushButton>

namespace {

/// The user leaves the program while the alarm of 18:42 waits for the service's reply.
class ClosedDuringAlarm : public FirstTouchFixture, public testing::WithParamInterface<bool>
{
protected:
    ClosedDuringAlarm()
    {
        WriteSettings(
            Changed(R"(<maghrib enabled="true" popup="true" mobil="false" play="false" audioFile=""/>)",
                    R"(<maghrib enabled="true" popup="%1" mobil="false" play="true" audioFile="a.mp3"/>)")
                .arg(HasPopup() ? QStringLiteral("true") : QStringLiteral("false"))
                .replace(QStringLiteral("useAdvWarn=\"false\""), QStringLiteral("useAdvWarn=\"true\"")));
        // The warning of Isha is due in the same tick.
        calculation.slots_[9] = 1132;
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
        forms.Register(FrmMain::kName, [this] {
            ++mainWindows;
            return std::make_unique<FrmMain>(forms, calculation);
        });
        forms.SetLastUnloadedHandler([this] { ++ended; });
        Window().Show();
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
        TickAt(18, 42);
        Desk::Settle();
    }

    QStringList requestsBefore;
    int mainWindows = 0;
    int ended = 0;
};

TEST_P(ClosedDuringAlarm, afterTheReply_nothingIsBegun_andTheProgramEndsWithThePopup)
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
    // The program ends once the popup is gone.
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
