// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "fakes/PlainWindow.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

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

TEST_F(FocusTest, disabledWindow_givesTheKeyboardBackToTheControlThatHadIt_orToTheNextThatTakesIt)
{
    const struct
    {
        const char* name;
        std::function<void()> meanwhile;
        const QWidget* inFocus;
    } rows[] = {
        {"nothing happens", [] {}, &middle},
        {"the window is disabled again", [this] { window.Enable(false); }, &middle},
        {"its control is disabled", [this] { middle.setEnabled(false); }, &last},
        // The tab order begins again after its last control.
        {"the next one is hidden too", [this] { last.hide(); }, &first},
        {"no control takes it", [this] { first.setFocusPolicy(Qt::ClickFocus); }, nullptr},
    };
    for (const auto& [name, meanwhile, inFocus] : rows) {
        middle.setEnabled(true);
        middle.setFocus();
        window.Enable(false);
        EXPECT_FALSE(window.isEnabled()) << name;
        EXPECT_FALSE(middle.hasFocus()) << name;
        middle.setEnabled(inFocus == &middle);
        meanwhile();
        window.Enable(true);
        EXPECT_TRUE(window.isEnabled()) << name;
        EXPECT_EQ(QApplication::focusWidget(), inFocus) << name;
    }
}

TEST_F(FocusTest, controlDisabledWhileTheWindowIsHidden_leavesTheKeyboardToTheNext)
{
    window.Enable(false);
    window.hide();
    middle.setEnabled(false);
    window.Enable(true);
    EXPECT_EQ(window.focusWidget(), &last);
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

TEST_F(FocusTest, disabledControl_hasTheKeyboardBack_once)
{
    DisabledControl busy(window, middle);
    EXPECT_FALSE(middle.isEnabled());
    EXPECT_TRUE(last.hasFocus()) << "Qt passes it on";
    busy.Enable();
    EXPECT_TRUE(middle.isEnabled());
    EXPECT_TRUE(middle.hasFocus());
    last.setFocus();
    busy.Enable();
    EXPECT_TRUE(last.hasFocus());
}

TEST_F(FocusTest, disabledControl_keyboardGoneElsewhereMeanwhile_staysThere)
{
    DisabledControl busy(window, middle);
    first.setFocus();
    busy.Enable();
    EXPECT_TRUE(first.hasFocus());
    DisabledControl withoutTheKeyboard(window, last);
    withoutTheKeyboard.Enable();
    EXPECT_TRUE(first.hasFocus());
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
