// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Boxes.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

class ListBoxTest : public testing::Test
{
protected:
    ListBoxTest()
    {
        list.addItems({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
        list.resize(120, 120);
        list.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&list));
        list.setFocus();
    }
    void ClickRow(int row, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, keys,
                          list.visualItemRect(list.item(row)).center());
    }

    ListBox list{nullptr};
};

TEST_F(ListBoxTest, control_doesNotTakeTheSelectionAway)
{
    ClickRow(1);
    ASSERT_EQ(list.ListIndex(), 1);
    ClickRow(1, Qt::ControlModifier);
    EXPECT_EQ(list.ListIndex(), 1) << "by the mouse";
    QTest::keyClick(&list, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(list.ListIndex(), 1) << "by the space bar";
}

TEST_F(ListBoxTest, control_stillSelectsAnotherLine)
{
    ClickRow(1);
    ClickRow(2, Qt::ControlModifier);
    EXPECT_EQ(list.ListIndex(), 2);
    EXPECT_EQ(list.selectedItems().size(), 1);
}

TEST_F(ListBoxTest, nothingSelectedAtFirst_spaceSelectsTheCurrentLine)
{
    EXPECT_EQ(list.ListIndex(), -1);
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_EQ(list.ListIndex(), 0);
}

TEST_F(ListBoxTest, arrows_moveTheSelection)
{
    ClickRow(0);
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.ListIndex(), 1);
    QTest::keyClick(&list, Qt::Key_End);
    EXPECT_EQ(list.ListIndex(), 2);
}

TEST_F(ListBoxTest, clickBelowTheLines_keepsTheSelection)
{
    ClickRow(0);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.viewport()->rect().bottomRight() - QPoint(5, 5));
    EXPECT_EQ(list.ListIndex(), 0);
}

TEST_F(ListBoxTest, doubleClick_countsByTheLeftButtonOnly)
{
    int doubleClicks = 0;
    list.OnDoubleClick([&] { ++doubleClicks; });
    const QPoint onALine = list.visualItemRect(list.item(1)).center();
    const QPoint below = list.viewport()->rect().bottomRight() - QPoint(5, 5);
    for (const QPoint& place : {onALine, below}) {
        doubleClicks = 0;
        QTest::mouseDClick(list.viewport(), Qt::RightButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::MiddleButton, {}, place);
        EXPECT_EQ(doubleClicks, 0);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
        EXPECT_EQ(doubleClicks, 1);
    }
}

TEST_F(ListBoxTest, code_canTakeTheSelectionAway)
{
    list.SetListIndex(2);
    EXPECT_EQ(list.ListIndex(), 2);
    list.SetListIndex(-1);
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(list.List(-1), QString());
}

} // namespace
