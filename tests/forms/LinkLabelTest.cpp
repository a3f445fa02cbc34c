// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/LinkLabel.h"

#include "fakes/Desk.h"
#include "forms/Areas.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QKeyEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

class LinkLabelTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { InstallLinkAccessibility(); }

    LinkLabelTest()
    {
        window.resize(200, 100);
        link.setText(QStringLiteral("Help"));
        link.setGeometry(20, 20, 80, 20);
        link.OnClick([this] { ++clicks; });
        link.OnMouseMove([this] { ++moves; });
        window.show();
        // Away from where the last test left the mouse: a move to the same place is none.
        Desk::MoveTo(window, {199, 99});
        moves = 0;
    }

    QWidget window;
    LinkLabel link{&window};
    int clicks = 0;
    int moves = 0;
};

TEST_F(LinkLabelTest, click_byTheLeftButtonOnly)
{
    Desk::Click(link);
    EXPECT_EQ(clicks, 1);
    Desk::Click(link, Qt::RightButton);
    Desk::Click(link, Qt::MiddleButton);
    EXPECT_EQ(clicks, 1);
}

TEST_F(LinkLabelTest, doubleClick_isOneClick)
{
    Desk::DoubleClick(link);
    EXPECT_EQ(clicks, 1);
    Desk::Click(link);
    EXPECT_EQ(clicks, 2);
}

TEST_F(LinkLabelTest, releaseElsewhere_isNoClick)
{
    QWindow* const handle = window.windowHandle();
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, QPoint(30, 30));
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, QPoint(180, 90));
    EXPECT_EQ(clicks, 0);
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, QPoint(180, 90));
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, QPoint(30, 30));
    EXPECT_EQ(clicks, 0) << "nor is a press elsewhere";
}

TEST_F(LinkLabelTest, colour_isGreyInADisabledFrame_blueInADisabledWindow)
{
    QWidget frame(&window);
    LinkLabel inside(&frame);
    const auto shown = [&] { return inside.palette().color(inside.foregroundRole()); };
    const QColor blue = shown();
    window.setEnabled(false);
    EXPECT_EQ(shown(), blue);
    window.setEnabled(true);
    frame.setEnabled(false);
    EXPECT_NE(shown(), blue);
    frame.setEnabled(true);
    inside.setEnabled(false);
    EXPECT_NE(shown(), blue);
}

TEST_F(LinkLabelTest, disabled_takesNoClickOfAnyKind)
{
    link.setEnabled(false);
    Desk::Click(link);
    link.Click();
    QTest::keyClick(&link, Qt::Key_Return);
    EXPECT_EQ(clicks, 0);
}

TEST_F(LinkLabelTest, disabledBetweenPressAndRelease_isNoClick)
{
    QWindow* const handle = window.windowHandle();
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, QPoint(30, 30));
    link.setEnabled(false);
    link.setEnabled(true);
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, QPoint(30, 30));
    EXPECT_EQ(clicks, 0);
}

TEST_F(LinkLabelTest, key_pressesItOnce_alsoHeldDown)
{
    EXPECT_EQ(link.focusPolicy(), Qt::TabFocus);
    const std::pair<Qt::Key, int> rows[] = {
        {Qt::Key_Return, 1}, {Qt::Key_Enter, 1}, {Qt::Key_Space, 1}, {Qt::Key_A, 0}};
    for (const auto& [key, expected] : rows) {
        clicks = 0;
        for (const bool isRepeated : {false, true, true}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(), isRepeated);
            QCoreApplication::sendEvent(&link, &press);
        }
        EXPECT_EQ(clicks, expected) << key;
    }
}

TEST_F(LinkLabelTest, mouseMove_isToldWithoutAButton)
{
    Desk::MoveTo(link);
    EXPECT_EQ(moves, 1);
    Desk::MoveTo(window, {150, 80});
    EXPECT_EQ(moves, 1);
}

TEST_F(LinkLabelTest, hoverArea_hearsItselfAndDisabledLinks_notEnabledOnes)
{
    int hovers = 0;
    new HoverArea(&window, [&] { ++hovers; });
    Desk::MoveTo(window, {150, 80});
    EXPECT_EQ(hovers, 1);
    Desk::MoveTo(link);
    EXPECT_EQ(hovers, 1);
    link.setEnabled(false);
    Desk::MoveTo(link, {8, 8});
    EXPECT_EQ(hovers, 2);
    EXPECT_EQ(moves, 1);
    window.setEnabled(false);
    Desk::MoveTo(window, {150, 70});
    EXPECT_EQ(hovers, 2) << "a disabled window takes no move";
}

TEST_F(LinkLabelTest, screenReader_findsALinkToPress)
{
    QAccessibleInterface* const reader = QAccessible::queryAccessibleInterface(&link);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->role(), QAccessible::Link);
    EXPECT_EQ(reader->text(QAccessible::Name), QStringLiteral("Help"));
    ASSERT_NE(reader->actionInterface(), nullptr);
    reader->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
}

TEST_F(LinkLabelTest, text_isPlain)
{
    EXPECT_EQ(link.textFormat(), Qt::PlainText);
}

} // namespace
