// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindowFixture.h"
#include "fakes/Memory.h"
#include "fakes/PaintCount.h"

#include <QGroupBox>
#include <QLabel>

namespace {

using MainWindowTest = MainWindowFixture;

TEST_F(MainWindowTest, minimise_withoutAnIcon_staysOnTheTaskbar)
{
    platform.tray.available = false;
    FrmMain& main = Start();
    EXPECT_TRUE(main.isVisible());
    Minimise(main);
    EXPECT_TRUE(main.isVisible());
    EXPECT_TRUE(main.isMinimized());
    main.showNormal();
    Desk::Settle();
    EXPECT_FALSE(main.isMinimized());
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
}

TEST_F(MainWindowTest, minimise_inDebugMode_doesNothing)
{
    FrmMain& main = Start();
    main.Variables().DebugMode = true;
    Minimise(main);
    EXPECT_TRUE(main.isVisible());
    main.showMaximized();
    Desk::Settle();
    EXPECT_TRUE(main.isMaximized());
}

TEST_F(MainWindowTest, maximised_upOrHidden_isShownNormal)
{
    FrmMain& main = Start();
    for (const bool isHidden : {false, true}) {
        if (isHidden) {
            Minimise(main);
            ASSERT_FALSE(main.isVisible());
        }
        main.setWindowState(Qt::WindowMaximized);
        Desk::Settle();
        EXPECT_TRUE(main.isVisible());
        EXPECT_EQ(main.windowState() & (Qt::WindowMinimized | Qt::WindowMaximized), Qt::WindowNoState);
        EXPECT_EQ(main.size(), QSize(602, 423));
    }
}

TEST_F(MainWindowTest, resize_thatFails_endsWithItsBox)
{
    FrmMain& main = Start();
    platform.tray.fails = true;
    Minimise(main);
    ExpectFatal(2);
}

class DialogInFrontTest : public MainWindowFixture, public testing::WithParamInterface<const char*>
{
};

TEST_P(DialogInFrontTest, paintOfTheMainWindow_givesTheDialogTheFocus)
{
    FrmMain& main = Start();
    PlainWindow& dialog = OpenDialog(GetParam());
    dialog.paints = 0;
    Activate(main);
    EXPECT_GE(dialog.focusRequests, 1);
    EXPECT_GE(dialog.paints, 1);
    EXPECT_EQ(QApplication::activeWindow(), &dialog);

    const int requests = dialog.focusRequests;
    const int paints = dialog.paints;
    main.Refresh();
    Desk::Settle();
    EXPECT_EQ(dialog.focusRequests, requests) << "a window without the focus has none to hand on";
    EXPECT_EQ(dialog.paints, paints) << "the two must not keep each other painting";
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_P(DialogInFrontTest, focusInAnotherProgram_isLeftThere)
{
    FrmMain& main = Start();
    const PlainWindow& dialog = OpenDialog(GetParam());
    QApplication::setActiveWindow(nullptr);
    main.Refresh();
    Desk::Settle();
    EXPECT_EQ(dialog.focusRequests, 0);
    EXPECT_EQ(QApplication::activeWindow(), nullptr);
}

TEST_P(DialogInFrontTest, dialogThatCannotTakeTheFocus_isLeftAlone)
{
    FrmMain& main = Start();
    const struct
    {
        const char* name;
        void (*prepare)(PlainWindow& dialog);
    } rows[] = {{"hidden", [](PlainWindow& dialog) { dialog.hide(); }},
                {"disabled", [](PlainWindow& dialog) { dialog.setEnabled(false); }}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        PlainWindow& dialog = OpenDialog(GetParam());
        row.prepare(dialog);
        dialog.focusRequests = 0;
        Activate(main);
        EXPECT_GE(dialog.focusRequests, 1);
        EXPECT_TRUE(platform.boxes.boxes.empty());
        EXPECT_EQ(platform.process.ended, 0);
        dialog.Unload();
        main.Variables().ActiveForm = FrmMain::kName;
        Desk::Settle();
    }
}

TEST_P(DialogInFrontTest, otherFailure_endsWithItsBox)
{
    FrmMain& main = Start();
    OpenDialog(GetParam()).focusError = ErrorNumber::kObjectNotSet;
    Activate(main);
    ASSERT_FALSE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.boxes.boxes.front(), FakeMessageBoxes::Fatal(1));
    EXPECT_GE(platform.process.ended, 1);
}

TEST_P(DialogInFrontTest, closedDialog_isNotBroughtBack)
{
    FrmMain& main = Start();
    main.Variables().ActiveForm = QLatin1String(GetParam());
    Activate(main);
    main.Refresh();
    Desk::Settle();
    EXPECT_EQ(forms.Loaded(QLatin1String(GetParam())), nullptr);
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(Each, DialogInFrontTest,
                         testing::Values("FrmAlerts", "FrmLocation", "FrmNewLoc", "FrmPopup"),
                         [](const auto& row) { return std::string(row.param); });

// The list of places waits, disabled, under the search that it has opened.
TEST_F(MainWindowTest, disabledDialogThatTheUserRaises_givesTheOpenOneTheFocus)
{
    FrmMain& main = Start();
    main.Enable(false);
    PlainWindow& list = OpenDialog("FrmLocation");
    list.setEnabled(false);
    PlainWindow& search = OpenDialog("FrmNewLoc");
    search.activateWindow();
    Desk::Settle();
    ASSERT_EQ(QApplication::activeWindow(), &search);
    for (int time = 0; time < 2; ++time) {
        search.focusRequests = 0;
        list.raise();
        list.activateWindow();
        Desk::Settle();
        EXPECT_GE(search.focusRequests, 1);
        EXPECT_EQ(QApplication::activeWindow(), &search);
    }
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(MainWindowTest, usableDialogThatTheUserRaises_keepsTheFocus)
{
    Start();
    PlainWindow& settings = OpenDialog("FrmAlerts");
    const PlainWindow& list = OpenDialog("FrmLocation");
    settings.activateWindow();
    Desk::Settle();
    EXPECT_EQ(list.focusRequests, 0);
    EXPECT_EQ(QApplication::activeWindow(), &settings);
}

TEST_F(MainWindowTest, locationLink_opensAListThatTakesInput)
{
    FrmMain& main = Start();
    PlainWindow& list = OpenDialog("FrmLocation");
    // The open search has disabled it.
    list.setEnabled(false);
    main.Variables().ActiveForm = FrmMain::kName;
    Activate(main);
    Desk::Click(*main.findChild<QWidget*>(QStringLiteral("LblLocLink")));
    EXPECT_TRUE(list.isEnabled());
    EXPECT_TRUE(list.isVisible());
    EXPECT_FALSE(main.isEnabled());
    EXPECT_EQ(main.Variables().ActiveForm, QStringLiteral("FrmLocation"));
}

TEST_F(MainWindowTest, paint_whileAnyOtherNameHasTheAttention_doesNothing)
{
    FrmMain& main = Start();
    const PlainWindow& wait = OpenDialog("FrmWait");
    Activate(main);
    EXPECT_EQ(wait.focusRequests, 0);
    EXPECT_EQ(QApplication::activeWindow(), &main);
}

TEST_F(MainWindowTest, paint_ofAMinimisedDialog_leavesItOnTheTaskbar)
{
    FrmMain& main = Start();
    PlainWindow& dialog = OpenDialog("FrmAlerts");
    Minimise(dialog);
    Activate(main);
    EXPECT_TRUE(dialog.isMinimized());
    EXPECT_EQ(QApplication::activeWindow(), &main);
}

TEST_F(MainWindowTest, gotFocus_repaints)
{
    FrmMain& main = Start();
    QApplication::setActiveWindow(nullptr);
    Desk::Settle();
    const PaintCount count(FrmMain::kName);
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&main, &activated);
    EXPECT_EQ(count.paints, 1) << "at once, inside the event";
}

TEST_F(MainWindowTest, closeButton_endsWithoutAQuestion_withAWindowThatWasNeverShown)
{
    FrmMain& main = Start();
    Dialog("FrmPopup");
    Close(main);
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0) << "no forced end";
}

TEST_F(MainWindowTest, unload_takesSchedulerAndPlayerAlong)
{
    FrmMain& main = Start();
    OpenDialog("FrmAlerts");
    ASSERT_TRUE(IsRunning());
    Close(main);
    EXPECT_FALSE(IsRunning());
    EXPECT_TRUE(platform.player.log.contains(QStringLiteral("stop")));
}

TEST_F(MainWindowTest, unloaded_callsOfADialog_doNothing)
{
    FrmMain& main = Start();
    OpenDialog("FrmAlerts");
    Close(main);
    ASSERT_FALSE(main.IsLoaded());
    MainForm& gone = forms.Main();
    const auto texts = [&] {
        QStringList all;
        for (const QLabel* label : main.findChildren<QLabel*>()) {
            all << label->text();
        }
        return all << main.findChild<QGroupBox*>(QStringLiteral("PrayerFrame"))->title();
    };
    const QStringList before = texts();
    forms.Variables().Settings.CityName = QStringLiteral("Cicero");
    forms.Variables().Settings.HourMode = QStringLiteral("12");
    platform.clock.Set(QDate(2027, 1, 1), QTime(0, 0));
    gone.PopLocation();
    gone.PopPrayerFrame();
    EXPECT_EQ(texts(), before);
    gone.Enable(false);
    EXPECT_TRUE(main.isEnabled());
    gone.TakeFocus();
    EXPECT_EQ(gone.UpdateEverything(), 0);
    EXPECT_FALSE(main.isVisible());
    EXPECT_EQ(texts(), before);
}

TEST_F(MainWindowTest, thousandTimesMinimiseAndOpen_losesAndGrowsNothing)
{
    FrmMain& main = Start();
    const auto cycle = [&](int times) {
        for (int i = 0; i < times; ++i) {
            Minimise(main);
            ASSERT_FALSE(main.isVisible()) << "round " << i;
            ClickMenu("mnuOpen");
            ASSERT_TRUE(main.isVisible() && !main.isMinimized()) << "round " << i;
        }
    };
    cycle(200);
    const auto objects = main.findChildren<QObject*>().size();
    const qint64 before = Memory::Resident();
    cycle(1000);
    EXPECT_EQ(main.findChildren<QObject*>().size(), objects);
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_TRUE(platform.tray.shown);
    const qint64 grown = Memory::Resident() - before;
    RecordProperty("grown_bytes", static_cast<int>(grown));
    if (Memory::kIsTrue) {
        EXPECT_LT(grown, 1024 * 1024) << "in a thousand rounds";
    }
}

} // namespace
