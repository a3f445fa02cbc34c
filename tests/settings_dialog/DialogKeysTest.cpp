// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Desk.h"
#include "settings_dialog/DialogTest.h"

namespace {

/// The settings dialog as the active window, so that keys go where the desktop sends them.
class DialogKeys : public DialogTest
{
protected:
    void OpenActive(std::int16_t tab = 1)
    {
        Open(tab);
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
    }
    void PressKey(Qt::Key key) const
    {
        QTest::keyClick(dialog->windowHandle(), key);
        Desk::Settle();
    }
    void Focus(const char* name) const
    {
        Widget(name).setFocus();
        ASSERT_TRUE(Widget(name).hasFocus()) << name;
    }
};

} // namespace

TEST_F(DialogKeys, escapeOnTheGeneralPage_closesAsCloseDoes)
{
    WriteUserDefined("-18", "-15");
    for (const char* const control :
         {"LblGeneral", "OptSetByUser", "TxtSetFarjAngle", "VScroll2", "ChkDLS", "CmdClose"}) {
        OpenActive();
        main.calls.clear();
        Focus(control);
        PressKey(Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !IsOpen(); })) << control;
        ExpectHandedOver();
    }
}

TEST_F(DialogKeys, escapeOnAnotherPage_leavesTheDialogOpen)
{
    for (const std::int16_t tab : {std::int16_t{2}, std::int16_t{3}}) {
        OpenActive(tab);
        PressKey(Qt::Key_Escape);
        QTest::qWait(200);
        EXPECT_TRUE(IsOpen()) << tab;
    }
}
