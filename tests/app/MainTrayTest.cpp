// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainTray.h"

#include "app/MainWindowFixture.h"

namespace {

class MainTrayTest : public MainWindowFixture
{
};

TEST_F(MainTrayTest, load_addsTheIconWithTheCaptionAsTip)
{
    const FrmMain& main = Start();
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_EQ(platform.tray.lastTip, QStringLiteral("Dusk Beacon v1.0.5"));
    EXPECT_TRUE(main.isVisible()) << "the program starts visible, the icon is there as well";
}

TEST_F(MainTrayTest, load_addsTheWindowsOwnIcon)
{
    QPixmap picture(22, 22);
    picture.fill(Qt::darkBlue);
    const QIcon icon(picture);
    QApplication::setWindowIcon(icon);
    const FrmMain& main = Start();
    QApplication::setWindowIcon(QIcon());
    EXPECT_EQ(platform.tray.lastIcon.cacheKey(), icon.cacheKey());
    EXPECT_TRUE(main.isVisible());
}

TEST_F(MainTrayTest, load_withoutAUsablePlace_addsTheIcon)
{
    WriteSettings(
        SettingsText().replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"\"")));
    Start();
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(MainTrayTest, tip_isNotUpdatedWithTheCaption)
{
    FrmMain& main = Start();
    main.setWindowTitle(QStringLiteral("Another"));
    Desk::Settle();
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_EQ(platform.tray.lastTip, QStringLiteral("Dusk Beacon v1.0.5"));
}

TEST_F(MainTrayTest, menu_hasTwoEntries)
{
    Start();
    const QMenu& menu = *platform.tray.lastMenu;
    EXPECT_EQ(menu.objectName(), QStringLiteral("mnuTrayIcon"));
    ASSERT_EQ(menu.actions().size(), 2);
    EXPECT_EQ(menu.actions().at(0)->text(), QStringLiteral("&Open"));
    EXPECT_EQ(menu.actions().at(0)->objectName(), QStringLiteral("mnuOpen"));
    EXPECT_EQ(menu.actions().at(1)->text(), QStringLiteral("E&xit"));
    EXPECT_EQ(menu.actions().at(1)->objectName(), QStringLiteral("mnuExit"));
}

TEST_F(MainTrayTest, exit_asksForTheRemovalTwiceAndUnloads)
{
    Start();
    ClickMenu("mnuExit");
    EXPECT_EQ(platform.tray.removed, 2);
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(MainTrayTest, open_ofAWindowBehindAnother_bringsItToTheFront)
{
    FrmMain& main = Start();
    QWidget other;
    for (const bool isHidden : {false, true}) {
        SCOPED_TRACE(isHidden);
        if (isHidden) {
            main.showMinimized();
        }
        other.show();
        other.activateWindow();
        Desk::Settle();
        ASSERT_EQ(QApplication::activeWindow(), &other);
        ASSERT_EQ(main.isVisible(), !isHidden);
        ClickMenu("mnuOpen");
        EXPECT_TRUE(main.isVisible());
        EXPECT_EQ(QApplication::activeWindow(), &main);
    }
}

TEST_F(MainTrayTest, open_ofADisabledWindow_bringsItBackDisabled_underItsDialog)
{
    FrmMain& main = Start();
    main.Enable(false);
    const PlainWindow& dialog = OpenDialog("FrmLocation");
    main.showMinimized();
    Desk::Settle();
    ASSERT_FALSE(main.isVisible());
    for (const char* state : {"hidden", "up"}) {
        SCOPED_TRACE(state);
        ClickMenu("mnuOpen");
        EXPECT_TRUE(main.isVisible());
        EXPECT_FALSE(main.isMinimized());
        EXPECT_FALSE(main.isEnabled()) << "the dialog alone enables it again";
        EXPECT_EQ(main.Variables().ActiveForm, QStringLiteral("FrmLocation"));
        EXPECT_EQ(QApplication::activeWindow(), &dialog);
    }
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(MainTrayTest, exit_worksWhileTheWindowIsDisabledAndHidden)
{
    FrmMain& main = Start();
    main.Enable(false);
    main.showMinimized();
    Desk::Settle();
    ASSERT_FALSE(main.isVisible());
    ClickMenu("mnuExit");
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    EXPECT_EQ(ended, 1);
}

TEST_F(MainTrayTest, close_removesTheIconOnce)
{
    Start().close();
    Desk::Settle();
    EXPECT_EQ(platform.tray.removed, 1);
    EXPECT_EQ(ended, 1);
}

TEST_F(MainTrayTest, debugMode_unloadLeavesTheIconAlone)
{
    FrmMain& main = Start();
    main.Variables().DebugMode = true;
    main.close();
    Desk::Settle();
    EXPECT_EQ(platform.tray.removed, 0);
    EXPECT_EQ(ended, 1);
}

TEST_F(MainTrayTest, menuEntries_afterTheWindowIsGone_bringNothingBack)
{
    FrmMain& main = Start();
    OpenDialog("FrmAlerts");
    main.close();
    Desk::Settle();
    ClickMenu("mnuOpen");
    EXPECT_FALSE(main.isVisible());
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    ClickMenu("mnuExit");
    EXPECT_EQ(ended, 0) << "the dialog is still open";
}

TEST_F(MainTrayTest, failedAddition_leavesARunningProgram)
{
    platform.tray.available = false;
    const FrmMain& main = Start();
    EXPECT_TRUE(main.isVisible());
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
}

TEST_F(MainTrayTest, nothingIsWrittenAtTheEnd)
{
    Start();
    const QByteArray before = ReadSettings();
    const QStringList files = QDir().entryList(QDir::Files);
    ClickMenu("mnuExit");
    EXPECT_EQ(ReadSettings(), before);
    EXPECT_EQ(QDir().entryList(QDir::Files), files);
}

} // namespace
