// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Boxes.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

class CheckBoxTest : public testing::Test
{
protected:
    CheckBoxTest()
    {
        box.OnClick([this] { clicks.push_back(box.Value()); });
        box.show();
    }
    void ClickByMouse() { QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2)); }

    CheckBox box{nullptr};
    std::vector<int> clicks;
};

TEST_F(CheckBoxTest, setValue_raisesClickInsideTheSetterOnlyOnAChange)
{
    box.SetValue(0);
    EXPECT_TRUE(clicks.empty());
    box.SetValue(1);
    box.SetValue(1);
    EXPECT_EQ(clicks, std::vector<int>({1}));
    box.SetValue(0);
    EXPECT_EQ(clicks, std::vector<int>({1, 0}));
}

TEST_F(CheckBoxTest, mouseAndSpaceBar_raiseClickWithTheNewValue)
{
    ClickByMouse();
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(clicks, std::vector<int>({1, 0}));
}

TEST_F(CheckBoxTest, disabled_takesNoClickByHandButOneByCode)
{
    box.setEnabled(false);
    ClickByMouse();
    EXPECT_TRUE(clicks.empty());
    box.SetValue(1);
    EXPECT_EQ(clicks, std::vector<int>({1}));
}

class OptionGroup : public testing::Test
{
protected:
    OptionGroup()
    {
        first.setGeometry(0, 0, 100, 20);
        second.setGeometry(0, 30, 100, 20);
        first.OnClick([this] { Note(1); });
        second.OnClick([this] { Note(2); });
        group.resize(100, 60);
        group.show();
    }
    void Note(int number)
    {
        clicks.push_back(number);
        // When a button's Click runs, the other button is already clear.
        EXPECT_EQ(first.Value(), number == 1);
        EXPECT_EQ(second.Value(), number == 2);
    }

    QWidget group;
    OptionButton first{&group};
    OptionButton second{&group};
    std::vector<int> clicks;
};

TEST_F(OptionGroup, select_raisesClickOfTheOneThatBecomesSelected)
{
    EXPECT_FALSE(first.Value());
    EXPECT_FALSE(second.Value());
    first.Select();
    EXPECT_EQ(clicks, std::vector<int>({1}));
    first.Select();
    EXPECT_EQ(clicks.size(), 1U);
    second.Select();
    EXPECT_EQ(clicks, std::vector<int>({1, 2}));
}

TEST_F(OptionGroup, mouse_raisesClickOnlyOnAChange)
{
    QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(8, 10));
    QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(8, 10));
    EXPECT_EQ(clicks, std::vector<int>({2}));
}

TEST_F(OptionGroup, arrowKeys_select)
{
    group.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&group));
    first.Select();
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Down);
    EXPECT_EQ(clicks, std::vector<int>({1, 2}));
}

TEST_F(OptionGroup, optionsOfAnotherContainer_areAnotherGroup)
{
    QWidget elsewhere;
    OptionButton third(&elsewhere);
    first.Select();
    third.Select();
    EXPECT_TRUE(first.Value());
    EXPECT_TRUE(third.Value());
}

} // namespace
