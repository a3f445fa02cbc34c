// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Boxes.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

/// Three options, one below the other, between two check boxes.
class OptionGroupKeys : public testing::Test
{
protected:
    OptionGroupKeys()
    {
        int top = 0;
        for (QWidget* const control :
             {static_cast<QWidget*>(&before), static_cast<QWidget*>(&first), static_cast<QWidget*>(&second),
              static_cast<QWidget*>(&third), static_cast<QWidget*>(&after)}) {
            control->setGeometry(0, top, 100, 20);
            top += 30;
        }
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    /// The control that a key reaches from another one.
    [[nodiscard]] QWidget* ReachedFrom(QWidget& control, Qt::Key key)
    {
        control.setFocus();
        QTest::keyClick(window.windowHandle(), key);
        return window.focusWidget();
    }
    void ExpectOneTabStop(QWidget& option)
    {
        EXPECT_EQ(ReachedFrom(before, Qt::Key_Tab), &option);
        EXPECT_EQ(ReachedFrom(option, Qt::Key_Tab), &after);
        EXPECT_EQ(ReachedFrom(after, Qt::Key_Backtab), &option);
        EXPECT_EQ(ReachedFrom(option, Qt::Key_Backtab), &before);
    }

    QWidget window;
    CheckBox before{&window};
    OptionButton first{&window};
    OptionButton second{&window};
    OptionButton third{&window};
    CheckBox after{&window};
};

TEST_F(OptionGroupKeys, tab_reachesTheSelectedOptionOnly_fromBothSides)
{
    for (OptionButton* const option : {&third, &first, &second}) {
        option->Select();
        ExpectOneTabStop(*option);
    }
}

TEST_F(OptionGroupKeys, nothingSelected_tabReachesTheGroup)
{
    EXPECT_EQ(ReachedFrom(before, Qt::Key_Tab), &first);
}

TEST_F(OptionGroupKeys, arrows_moveTheSelectionWithinTheGroup)
{
    second.Select();
    const std::pair<Qt::Key, OptionButton*> rows[] = {{Qt::Key_Down, &third},
                                                      {Qt::Key_Down, &third},
                                                      {Qt::Key_Up, &second},
                                                      {Qt::Key_Up, &first},
                                                      {Qt::Key_Up, &first}};
    second.setFocus();
    for (const auto& [key, option] : rows) {
        QTest::keyClick(window.windowHandle(), key);
        EXPECT_TRUE(option->Value());
        EXPECT_TRUE(option->hasFocus());
    }
    ExpectOneTabStop(first);
}

TEST_F(OptionGroupKeys, pressedButNotReleasedOverIt_theSelectedOptionIsStillReached)
{
    second.Select();
    const QPoint place = third.mapTo(&window, QPoint(8, 10));
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(8, 115));
    EXPECT_TRUE(second.Value());
    ExpectOneTabStop(second);
}

} // namespace
