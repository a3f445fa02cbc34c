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

using FrmPopupTest = AlertsFixture;

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
    EXPECT_EQ(Ok().geometry(), QRect(80, 72, 49, 17));
    EXPECT_EQ(Ok().text(), u"OK");
    EXPECT_FALSE(Ok().isDefault());
    for (const auto& [name, place] :
         {std::pair{"Label1", QRect(8, 8, 185, 33)}, std::pair{"LblCurrTime", QRect(72, 48, 65, 17)}}) {
        const auto* const label = Popup()->findChild<QLabel*>(QLatin1String(name));
        EXPECT_EQ(label->geometry(), place);
        EXPECT_TRUE(label->alignment().testFlag(Qt::AlignHCenter));
    }
}

TEST_F(FrmPopupTest, labels_holdTwoLinesAndTheWidestTime)
{
    ShowPopup();
    const auto* const text = Popup()->findChild<QLabel*>(QStringLiteral("Label1"));
    EXPECT_LE(text->sizeHint().height(), text->height());
    EXPECT_LE(text->sizeHint().width(), text->width());
    EXPECT_GE(text->sizeHint().height(), 2 * text->fontMetrics().height()) << "two lines, not one";
    EXPECT_LT(text->sizeHint().height(), 3 * text->fontMetrics().height()) << "two lines, not three";
    const auto* const clock = Popup()->findChild<QLabel*>(QStringLiteral("LblCurrTime"));
    // All digits are equally wide, so all times with the same number of digits are equally wide.
    for (const char* const time : {"12:59:59 AM", "10:44:44 AM", "11:11:11 PM"}) {
        EXPECT_LE(clock->fontMetrics().horizontalAdvance(QLatin1String(time)), clock->width()) << time;
    }
    EXPECT_LE(clock->fontMetrics().height(), clock->height());
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

TEST_F(FrmPopupTest, showPopup_takesOver_butLeavesTheKeyboardAlone)
{
    ShowPopup();
    EXPECT_TRUE(Popup()->isVisible());
    EXPECT_TRUE(Popup()->isEnabled());
    EXPECT_FALSE(Popup()->isModal());
    EXPECT_FALSE(main->isEnabled());
    EXPECT_EQ(main->Variables().ActiveForm, u"FrmPopup");
    EXPECT_EQ(TextOf("Label1"), u"Prayer Time:\r\nMaghrib: 18:42");
    EXPECT_EQ(TextOf("LblCurrTime"), QString()) << "filled by the first tick";
    ASSERT_NE(PopupTimer(), nullptr);
    EXPECT_EQ(PopupTimer()->intervalMilliseconds, 1000);
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

TEST_F(FrmPopupTest, tick_showsTheTime_inTheHoursOfTheLabel)
{
    const std::pair<QTime, const char16_t*> rows[] = {
        {QTime(0, 0, 0), u"12:0:0 AM"},      {QTime(0, 59, 59), u"12:59:59 AM"},
        {QTime(1, 0, 0), u"1:0:0 AM"},       {QTime(9, 5, 3), u"9:5:3 AM"},
        {QTime(11, 59, 59), u"11:59:59 AM"}, {QTime(12, 0, 0), u"12:0:0 AM"},
        {QTime(12, 59, 59), u"12:59:59 AM"}, {QTime(13, 0, 0), u"1:0:0 PM"},
        {QTime(18, 42, 7), u"6:42:7 PM"},    {QTime(23, 59, 59), u"11:59:59 PM"},
    };
    ShowPopup();
    for (const auto& [time, text] : rows) {
        platform.clock.now.setTime(time);
        ASSERT_TRUE(PassSeconds(1));
        EXPECT_EQ(TextOf("LblCurrTime"), text) << qPrintable(time.toString());
    }
}

TEST_F(FrmPopupTest, lifeSpan_endsAtItsTick_andTheNextPopupCountsAnew)
{
    const struct
    {
        std::int16_t seconds;
        int ticks;
    } rows[] = {{1, 1}, {0, 1}, {-59, 1}, {-32768, 1}, {600, 600}, {3, 3}};
    platform.clock.SetTime(9, 5, 3);
    for (const auto& [seconds, ticks] : rows) {
        SCOPED_TRACE(seconds);
        ShowPopup(seconds);
        ASSERT_TRUE(PassSeconds(ticks - 1));
        EXPECT_TRUE(PopupIsUp());
        EXPECT_FALSE(main->isEnabled());
        ASSERT_TRUE(PassSeconds(1));
        EXPECT_FALSE(PopupIsUp());
        ASSERT_NE(Popup(), nullptr) << "the tick that unloads brings it back, loaded and hidden";
        EXPECT_EQ(TextOf("LblCurrTime"), u"9:5:3 AM");
        EXPECT_EQ(PopupTimer(), nullptr) << "no timer runs on";
        ExpectMainIsFree();
    }
    const FrmPopup* const waiting = Popup();
    ShowPopup(2);
    EXPECT_EQ(Popup(), waiting) << "loading is a no-op";
    ASSERT_TRUE(PassSeconds(2));
    QCoreApplication::processEvents();
    ShowPopup(2);
    EXPECT_TRUE(PopupIsUp()) << "also after the old window is gone from memory";
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

TEST_F(FrmPopupTest, okOrClose_stopsTheTimerAndUnloads_nothingElseIsDone)
{
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"mouse", [this] { QTest::mouseClick(&Ok(), Qt::LeftButton); }},
        {"space", [this] { QTest::keyClick(&Ok(), Qt::Key_Space); }},
        {"enter",
         [this] {
             Ok().setFocus();
             QTest::keyClick(&Ok(), Qt::Key_Return);
         }},
        {"close box", [this] { Popup()->close(); }},
        {"unload", [this] { forms.Unload(FrmPopup::kName); }},
    };
    ASSERT_FALSE(main->isVisible());
    for (const auto& [name, act] : rows) {
        SCOPED_TRACE(name);
        ShowPopup();
        const FakeTimer* const timer1 = PopupTimer();
        EXPECT_NE(Ok().focusPolicy() & Qt::TabFocus, 0);
        QTest::keyClick(Popup(), Qt::Key_Return);
        ASSERT_TRUE(PopupIsUp()) << "the window has no default button";
        act();
        EXPECT_EQ(Popup(), nullptr) << "nothing brings it back";
        EXPECT_FALSE(timer1->IsEnabled());
        ExpectMainIsFree();
        EXPECT_FALSE(main->isVisible());
        EXPECT_EQ(main->focusTaken, 0);
        EXPECT_EQ(platform.player.log, QStringList()) << "the sound goes on";
    }
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
