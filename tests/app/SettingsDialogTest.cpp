// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindowFixture.h"
#include "forms/LinkLabel.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"

#include <QLabel>

namespace {

/// The main window with the settings dialog itself.
class SettingsDialogTest : public MainWindowFixture
{
protected:
    SettingsDialogTest()
    {
        forms.Register(FrmAlerts::kName, [this] { return std::make_unique<FrmAlerts>(forms, signup); });
    }

    [[nodiscard]] static LinkLabel& Link(const FrmMain& main, const char* name)
    {
        return *main.findChild<LinkLabel*>(QLatin1String(name));
    }
    [[nodiscard]] Form* OpenedDialog() const { return forms.Loaded(FrmAlerts::kName); }
    static void Close(Form& window)
    {
        window.close();
        Desk::Settle();
    }

private:
    MobileSignup signup{forms};
};

TEST_F(SettingsDialogTest, settingsThatCannotBeShown_closeTheDialogAndAreShownOnceRepaired)
{
    FrmMain& main = Start();
    WriteSettings(SettingsText().replace(QStringLiteral(R"(useAdvWarn="false" advWarn="10")"),
                                         QStringLiteral(R"(useAdvWarn="true")")));
    LinkLabel& link = Link(main, "LblAsrLink");
    Desk::Click(link);
    EXPECT_EQ(OpenedDialog(), nullptr);
    EXPECT_EQ(main.Variables().ActiveForm, QStringLiteral("FrmMain"));
    EXPECT_TRUE(link.isEnabled());
    EXPECT_TRUE(Link(main, "LblAlertsLink").isEnabled());

    WriteSettings();
    Desk::Click(link);
    ASSERT_NE(OpenedDialog(), nullptr);
    EXPECT_TRUE(OpenedDialog()->isVisible());
    const auto* const prayer = OpenedDialog()->findChild<QLabel*>(QStringLiteral("LblPrayerName"));
    ASSERT_NE(prayer, nullptr);
    EXPECT_TRUE(prayer->isVisible());
    EXPECT_EQ(prayer->text(), QStringLiteral("Asr"));
    EXPECT_EQ(main.Variables().ActiveForm, QStringLiteral("FrmAlerts"));
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(SettingsDialogTest, opened_standsOverTheMiddleOfTheMainWindow)
{
    FrmMain& main = Start();
    main.move(60, 70);
    Desk::Settle();
    Desk::Click(Link(main, "LblAlertsLink"));
    ASSERT_NE(OpenedDialog(), nullptr);
    const QPoint middle = main.frameGeometry().center();
    EXPECT_LT((OpenedDialog()->frameGeometry().center() - middle).manhattanLength(), 8);
}

TEST_F(SettingsDialogTest, closedOverAMainWindowInTheTray_leavesItThere)
{
    FrmMain& main = Start();
    Desk::Click(Link(main, "LblAlertsLink"));
    ASSERT_NE(OpenedDialog(), nullptr);
    main.showMinimized();
    Desk::Settle();
    ASSERT_FALSE(main.isVisible());
    Close(*OpenedDialog());
    EXPECT_EQ(OpenedDialog(), nullptr);
    EXPECT_EQ(main.Variables().ActiveForm, QStringLiteral("FrmMain")) << "or every alert would be dropped";
    EXPECT_FALSE(main.isVisible());
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(ended, 0);
}

TEST_F(SettingsDialogTest, closedAfterTheMainWindow_endsAndBringsNothingBack)
{
    FrmMain& main = Start();
    Desk::Click(Link(main, "LblAlertsLink"));
    ASSERT_NE(OpenedDialog(), nullptr);
    Close(main);
    ASSERT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    EXPECT_EQ(ended, 0);
    Close(*OpenedDialog());
    EXPECT_EQ(OpenedDialog(), nullptr);
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    EXPECT_FALSE(platform.timers.Ticker()->IsEnabled());
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
}

} // namespace
