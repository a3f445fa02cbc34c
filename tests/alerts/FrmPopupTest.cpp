// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"

#include "AlertsFixture.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QTest>

namespace {

class FrmPopupTest : public AlertsFixture
{
protected:
    void ShowPopup(std::int16_t seconds = 600)
    {
        forms.Touch<FrmPopup>().ShowPopup(QStringLiteral("Prayer Time:\r\nMaghrib: 18:42"), seconds);
    }
    [[nodiscard]] QPushButton* Ok() const
    {
        return Popup()->findChild<QPushButton*>(QStringLiteral("Command1"));
    }
    [[nodiscard]] QRect PlaceOf(const char* control) const
    {
        return Popup()->findChild<QWidget*>(QString::fromLatin1(control))->geometry();
    }
    void ExpectMainIsFree() const
    {
        EXPECT_TRUE(main->isEnabled());
        EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmMain"));
    }
};

TEST_F(FrmPopupTest, window_isLaidOutAsDesigned)
{
    ShowPopup();
    EXPECT_EQ(Popup()->windowTitle(), QStringLiteral("Dusk Beacon Alert"));
    EXPECT_EQ(Popup()->size(), QSize(207, 96));
    EXPECT_EQ(Popup()->minimumSize(), Popup()->maximumSize()) << "fixed";
    const Qt::WindowFlags flags = Popup()->windowFlags();
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_EQ(PlaceOf("Label1"), QRect(8, 8, 185, 33));
    EXPECT_EQ(PlaceOf("Command1"), QRect(80, 72, 49, 17));
    EXPECT_EQ(PlaceOf("LblCurrTime"), QRect(72, 48, 65, 17));
    EXPECT_EQ(Ok()->text(), QStringLiteral("OK"));
    EXPECT_FALSE(Ok()->isDefault());
    for (const char* const label : {"Label1", "LblCurrTime"}) {
        EXPECT_TRUE(
            Popup()->findChild<QLabel*>(QString::fromLatin1(label))->alignment().testFlag(Qt::AlignHCenter));
    }
}

TEST_F(FrmPopupTest, enter_pressesOkOnlyWhereItHasTheFocus)
{
    ShowPopup();
    QTest::keyClick(Popup(), Qt::Key_Return);
    EXPECT_TRUE(Popup()->isVisible()) << "the window has no default button";
    Ok()->setFocus();
    QTest::keyClick(Ok(), Qt::Key_Return);
    EXPECT_EQ(Popup(), nullptr);
    ExpectMainIsFree();
}

TEST_F(FrmPopupTest, label_holdsTwoLines)
{
    ShowPopup();
    const auto* const label = Popup()->findChild<QLabel*>(QStringLiteral("Label1"));
    EXPECT_LE(label->sizeHint().height(), label->height());
    EXPECT_LE(label->sizeHint().width(), label->width());
    EXPECT_GE(label->sizeHint().height(), 2 * label->fontMetrics().height()) << "two lines, not one";
    EXPECT_LT(label->sizeHint().height(), 3 * label->fontMetrics().height()) << "two lines, not three";
}

TEST_F(FrmPopupTest, clock_holdsTheWidestTime)
{
    ShowPopup();
    const auto* const label = Popup()->findChild<QLabel*>(QStringLiteral("LblCurrTime"));
    // All digits are equally wide, and so is the whole of each time with five of them or six.
    for (const char* const time : {"12:59:59 AM", "10:44:44 AM", "11:11:11 PM"}) {
        EXPECT_LE(label->fontMetrics().horizontalAdvance(QLatin1String(time)), label->width()) << time;
    }
    EXPECT_LE(label->fontMetrics().height(), label->height());
}

TEST_F(FrmPopupTest, load_leavesItHiddenWithItsTimerOff)
{
    forms.Touch<FrmPopup>();
    EXPECT_FALSE(Popup()->isVisible());
    EXPECT_EQ(PopupTimer(), nullptr);
    EXPECT_EQ(platform.timers.all.back()->intervalMilliseconds, 1000);
    EXPECT_EQ(TextOf("Label1"), QString());
    ExpectMainIsFree();
}

TEST_F(FrmPopupTest, showPopup_takesOver)
{
    ShowPopup();
    EXPECT_TRUE(Popup()->isVisible());
    EXPECT_TRUE(Popup()->isEnabled());
    EXPECT_FALSE(Popup()->isModal());
    EXPECT_FALSE(main->isEnabled());
    EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmPopup"));
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Prayer Time:\r\nMaghrib: 18:42"));
    EXPECT_EQ(TextOf("LblCurrTime"), QString()) << "filled by the first tick";
    ASSERT_NE(PopupTimer(), nullptr);
    EXPECT_EQ(PopupTimer()->intervalMilliseconds, 1000);
}

TEST_F(FrmPopupTest, showPopup_onADisabledOneThatHasCounted_startsAnew)
{
    forms.Touch<FrmPopup>().setEnabled(false);
    ShowPopup(3);
    EXPECT_TRUE(Popup()->isEnabled());
    ASSERT_TRUE(PassSeconds(2));
    ShowPopup(3);
    ASSERT_TRUE(PassSeconds(2));
    EXPECT_TRUE(PopupIsUp()) << "counted from the start";
    ASSERT_TRUE(PassSeconds(1));
    EXPECT_FALSE(PopupIsUp());
}

TEST_F(FrmPopupTest, showPopup_staysOnTopAndLeavesTheKeyboardAlone)
{
    ShowPopup();
    EXPECT_TRUE(Popup()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(Popup()->testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(FrmPopupTest, showPopup_comesUpInTheMiddleOfTheMainWindowsScreen)
{
    for (const bool isHidden : {false, true}) {
        main->move(3, 5);
        main->setVisible(!isHidden);
        ShowPopup();
        const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
        EXPECT_LE((Popup()->frameGeometry().center() - middle).manhattanLength(), 40);
        forms.Unload(FrmPopup::kName);
    }
}

struct ClockRow
{
    const char* title;
    QTime time;
    const char* text;
};

class FrmPopupClock : public FrmPopupTest, public testing::WithParamInterface<ClockRow>
{
};

TEST_P(FrmPopupClock, tick_showsTheTime)
{
    main->Variables().Settings.HourMode = QStringLiteral("24");
    ShowPopup();
    platform.clock.now.setTime(GetParam().time);
    ASSERT_TRUE(PassSeconds(1));
    EXPECT_EQ(TextOf("LblCurrTime"), QString::fromLatin1(GetParam().text));
}

const ClockRow kClockRows[] = {
    {"midnight", QTime(0, 0, 0), "12:0:0 AM"},
    {"firstHour", QTime(0, 59, 59), "12:59:59 AM"},
    {"one", QTime(1, 0, 0), "1:0:0 AM"},
    {"unpadded", QTime(9, 5, 3), "9:5:3 AM"},
    {"beforeNoon", QTime(11, 59, 59), "11:59:59 AM"},
    {"noonSlips", QTime(12, 0, 0), "12:0:0 AM"},
    {"noonsHourSlips", QTime(12, 59, 59), "12:59:59 AM"},
    {"afterNoonsHour", QTime(13, 0, 0), "1:0:0 PM"},
    {"evening", QTime(18, 42, 7), "6:42:7 PM"},
    {"lastSecond", QTime(23, 59, 59), "11:59:59 PM"},
};
INSTANTIATE_TEST_SUITE_P(Times, FrmPopupClock, testing::ValuesIn(kClockRows),
                         [](const auto& row) { return std::string(row.param.title); });

TEST_F(FrmPopupTest, lifeSpanOfOneOrLess_goesAtTheFirstTick)
{
    for (const int seconds : {1, 0, -59, -32768}) {
        ShowPopup(static_cast<std::int16_t>(seconds));
        EXPECT_TRUE(Popup()->isVisible()) << "not before";
        ASSERT_TRUE(PassSeconds(1));
        EXPECT_FALSE(PopupIsUp()) << seconds;
        ExpectMainIsFree();
    }
}

TEST_F(FrmPopupTest, lifeSpanOfSixHundred_goesAtTheSixHundredthTick)
{
    ShowPopup(600);
    ASSERT_TRUE(PassSeconds(599));
    EXPECT_TRUE(PopupIsUp());
    EXPECT_FALSE(main->isEnabled());
    ASSERT_TRUE(PassSeconds(1));
    EXPECT_FALSE(PopupIsUp());
    ExpectMainIsFree();
}

TEST_F(FrmPopupTest, tickThatUnloads_bringsTheWindowBackLoadedAndHidden)
{
    platform.clock.SetTime(9, 5, 3);
    ShowPopup(1);
    ASSERT_TRUE(PassSeconds(1));
    ASSERT_NE(Popup(), nullptr);
    EXPECT_FALSE(Popup()->isVisible());
    EXPECT_EQ(TextOf("LblCurrTime"), QStringLiteral("9:5:3 AM"));
    EXPECT_EQ(PopupTimer(), nullptr) << "no timer runs on";
    ExpectMainIsFree();
}

TEST_F(FrmPopupTest, nextAlert_findsItReadyAndResetsIt)
{
    ShowPopup(3);
    ASSERT_TRUE(PassSeconds(3));
    const FrmPopup* const waiting = Popup();
    ShowPopup(3);
    EXPECT_EQ(Popup(), waiting) << "loading is a no-op";
    ASSERT_TRUE(PassSeconds(2)) << "counted from the start";
    EXPECT_TRUE(PopupIsUp());
    ASSERT_TRUE(PassSeconds(1));
    EXPECT_FALSE(PopupIsUp());
    QCoreApplication::processEvents();
    ShowPopup(2);
    EXPECT_TRUE(PopupIsUp()) << "also after the old window is gone from memory";
}

TEST_F(FrmPopupTest, ok_stopsTheTimerAndUnloads)
{
    ShowPopup();
    FakeTimer* const timer1 = PopupTimer();
    QTest::mouseClick(Ok(), Qt::LeftButton);
    EXPECT_EQ(Popup(), nullptr) << "nothing brings it back";
    EXPECT_FALSE(timer1->IsEnabled());
    ExpectMainIsFree();
}

TEST_F(FrmPopupTest, ok_worksByKeyboard)
{
    ShowPopup();
    EXPECT_NE(Ok()->focusPolicy() & Qt::TabFocus, 0);
    QTest::keyClick(Ok(), Qt::Key_Space);
    EXPECT_EQ(Popup(), nullptr);
    ExpectMainIsFree();
}

TEST_F(FrmPopupTest, closeBox_unloads)
{
    ShowPopup();
    Popup()->close();
    EXPECT_EQ(Popup(), nullptr);
    ExpectMainIsFree();
    EXPECT_EQ(PopupTimer(), nullptr);
}

TEST_F(FrmPopupTest, unload_doesNothingToTheMainWindowBeyondFreeingIt)
{
    ASSERT_FALSE(main->isVisible());
    ShowPopup();
    forms.Unload(FrmPopup::kName);
    EXPECT_FALSE(main->isVisible());
    EXPECT_EQ(main->focusTaken, 0);
    EXPECT_EQ(platform.player.log, QStringList()) << "the sound goes on";
}

TEST_F(FrmPopupTest, mainWindowGone_popupsEndIsTheLastOne)
{
    int ends = 0;
    forms.SetLastUnloadedHandler([&] { ++ends; });
    main->show();
    ShowPopup(1);
    forms.Unload(QStringLiteral("FrmMain"));
    EXPECT_EQ(ends, 0) << "the popup is still up";
    ASSERT_TRUE(PassSeconds(1));
    EXPECT_GE(ends, 1) << "the hidden window that comes back holds nothing up";
    EXPECT_EQ(forms.Loaded(QStringLiteral("FrmMain")), nullptr);
}

TEST_F(FrmPopupTest, screenReader_meetsAnAlertNamedByItsText)
{
    InstallPopupAccessibility();
    ShowPopup();
    const QAccessibleInterface* const window = QAccessible::queryAccessibleInterface(Popup());
    EXPECT_EQ(window->role(), QAccessible::AlertMessage);
    EXPECT_EQ(window->text(QAccessible::Name), QStringLiteral("Prayer Time: Maghrib: 18:42"));
}

} // namespace
