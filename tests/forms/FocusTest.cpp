// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "fakes/PlainWindow.h"

#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// A window with three fields, the middle one with the keyboard.
class FocusTest : public testing::Test
{
protected:
    FocusTest()
    {
        int left = 0;
        for (QLineEdit* const field : {&first, &middle, &last}) {
            field->setGeometry(left, 0, 20, 20);
            left += 30;
        }
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        middle.setFocus();
    }

    FakePlatform platform;
    Forms forms{platform.interfaces};
    PlainWindow window{forms, QStringLiteral("Window")};
    QLineEdit first{&window};
    QLineEdit middle{&window};
    QLineEdit last{&window};
};

TEST_F(FocusTest, disabledWindow_givesTheKeyboardBackToTheControlThatHadIt)
{
    window.Enable(false);
    EXPECT_FALSE(window.isEnabled());
    EXPECT_FALSE(middle.hasFocus());
    window.Enable(true);
    EXPECT_TRUE(window.isEnabled());
    EXPECT_TRUE(middle.hasFocus());
}

TEST_F(FocusTest, controlDisabledMeanwhile_leavesTheKeyboardToTheNext)
{
    window.Enable(false);
    middle.setEnabled(false);
    window.Enable(true);
    EXPECT_TRUE(last.hasFocus());
}

TEST_F(FocusTest, controlDisabledWhileTheWindowIsHidden_leavesTheKeyboardToTheNext)
{
    window.Enable(false);
    window.hide();
    middle.setEnabled(false);
    window.Enable(true);
    EXPECT_EQ(window.focusWidget(), &last);
}

TEST_F(FocusTest, controlAndItsNextDisabledMeanwhile_leaveTheKeyboardToTheOneBehind)
{
    window.Enable(false);
    middle.setEnabled(false);
    last.hide();
    window.Enable(true);
    EXPECT_TRUE(first.hasFocus()) << "the order begins anew behind its end";
}

TEST_F(FocusTest, onlyControlDisabledMeanwhile_leavesTheKeyboardToNobody)
{
    first.setEnabled(false);
    last.setFocusPolicy(Qt::ClickFocus);
    window.Enable(false);
    middle.setEnabled(false);
    window.Enable(true);
    EXPECT_EQ(window.focusWidget(), nullptr);
}

TEST_F(FocusTest, windowDisabledTwice_stillKnowsTheControl)
{
    window.Enable(false);
    window.Enable(false);
    window.Enable(true);
    EXPECT_TRUE(middle.hasFocus());
}

TEST_F(FocusTest, windowEnabledTwice_leavesTheKeyboardWhereItHasGone)
{
    window.Enable(false);
    window.Enable(true);
    last.setFocus();
    window.Enable(true);
    EXPECT_TRUE(last.hasFocus());
}

TEST_F(FocusTest, controlDestroyedWhileTheWindowWasDisabled_isNoMatter)
{
    auto* const passing = new QLineEdit(&window);
    passing->show();
    passing->setFocus();
    window.Enable(false);
    delete passing;
    window.Enable(true);
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(FocusTest, disabledControl_hasTheKeyboardBack)
{
    DisabledControl busy(window, middle);
    EXPECT_FALSE(middle.isEnabled());
    EXPECT_TRUE(last.hasFocus()) << "the toolkit's own choice";
    busy.Enable();
    EXPECT_TRUE(middle.isEnabled());
    EXPECT_TRUE(middle.hasFocus());
}

TEST_F(FocusTest, disabledControl_keyboardGoneElsewhereMeanwhile_staysThere)
{
    DisabledControl busy(window, middle);
    first.setFocus();
    busy.Enable();
    EXPECT_TRUE(first.hasFocus());
}

TEST_F(FocusTest, disabledControl_withoutTheKeyboard_takesNone)
{
    DisabledControl busy(window, first);
    busy.Enable();
    EXPECT_TRUE(middle.hasFocus());
}

TEST_F(FocusTest, disabledControl_enabledOnceMore_leavesTheKeyboardAlone)
{
    DisabledControl busy(window, middle);
    busy.Enable();
    QTest::keyClick(&middle, Qt::Key_Tab);
    ASSERT_TRUE(last.hasFocus());
    busy.Enable();
    EXPECT_TRUE(last.hasFocus());
}

TEST_F(FocusTest, onlyControl_hasTheKeyboardBack)
{
    first.setEnabled(false);
    last.setEnabled(false);
    DisabledControl busy(window, middle);
    ASSERT_EQ(window.focusWidget(), nullptr);
    busy.Enable();
    EXPECT_TRUE(middle.hasFocus());
}

TEST_F(FocusTest, disabledControlOfADisabledWindow_hasTheKeyboardOnceTheWindowTakesInput)
{
    DisabledControl busy(window, middle);
    window.Enable(false);
    busy.Enable();
    EXPECT_FALSE(middle.hasFocus());
    window.Enable(true);
    EXPECT_TRUE(middle.hasFocus());
}

} // namespace
