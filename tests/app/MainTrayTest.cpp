// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindowFixture.h"
#include "app/WindowLife.h"

namespace {

using MainTrayTest = MainWindowFixture;

TEST_F(MainTrayTest, load_addsTheWindowsOwnIconWithTheCaptionOfThatTimeAsTip)
{
    QPixmap picture(22, 22);
    picture.fill(Qt::darkBlue);
    const QIcon icon(picture);
    QApplication::setWindowIcon(icon);
    FrmMain& main = Start();
    QApplication::setWindowIcon(QIcon());
    main.setWindowTitle(QStringLiteral("Another"));
    Desk::Settle();
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_EQ(platform.tray.lastTip, u"Dusk Beacon v1.0.5");
    EXPECT_EQ(platform.tray.lastIcon.cacheKey(), icon.cacheKey());
    EXPECT_TRUE(main.isVisible()) << "the program starts visible, the icon is there as well";
}

TEST_F(MainTrayTest, menu_hasTwoEntries)
{
    Start();
    const QMenu& menu = *platform.tray.lastMenu;
    EXPECT_EQ(menu.objectName(), u"mnuTrayIcon");
    ASSERT_EQ(menu.actions().size(), 2);
    EXPECT_EQ(menu.actions().at(0)->text(), u"&Open");
    EXPECT_EQ(menu.actions().at(0)->objectName(), u"mnuOpen");
    EXPECT_EQ(menu.actions().at(1)->text(), u"E&xit");
    EXPECT_EQ(menu.actions().at(1)->objectName(), u"mnuExit");
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

TEST_F(MainTrayTest, exit_asksForTheRemovalTwiceAndUnloads_writesNothing)
{
    for (const bool isDisabledAndHidden : {false, true}) {
        FrmMain& main = Start();
        platform.tray.removed = 0;
        ended = 0;
        if (isDisabledAndHidden) {
            main.Enable(false);
            Minimise(main);
            ASSERT_FALSE(main.isVisible());
        }
        const QByteArray before = ReadSettings();
        const QStringList files = QDir().entryList(QDir::Files);
        ClickMenu("mnuExit");
        EXPECT_EQ(platform.tray.removed, 2);
        EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
        EXPECT_EQ(ended, 1);
        EXPECT_TRUE(platform.boxes.boxes.empty());
        EXPECT_EQ(ReadSettings(), before);
        EXPECT_EQ(QDir().entryList(QDir::Files), files);
    }
}

TEST_F(MainTrayTest, close_removesTheIconOnce_inDebugModeNever)
{
    for (const bool debugMode : {false, true}) {
        FrmMain& main = Start();
        main.Variables().DebugMode = debugMode;
        platform.tray.removed = 0;
        ended = 0;
        main.close();
        EXPECT_EQ(platform.tray.removed, debugMode ? 0 : 1);
        EXPECT_EQ(ended, 1);
        Desk::Settle();
    }
}

TEST_F(MainTrayTest, menuEntries_afterTheWindowIsGone_bringNothingBack)
{
    FrmMain& main = Start();
    OpenDialog("FrmAlerts");
    Close(main);
    ClickMenu("mnuOpen");
    EXPECT_FALSE(main.isVisible());
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    ClickMenu("mnuExit");
    EXPECT_EQ(ended, 0) << "the dialog is still open";
}

} // namespace
