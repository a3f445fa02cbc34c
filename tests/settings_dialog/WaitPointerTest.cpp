// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/MobilePageFixture.h"

#include <QApplication>

namespace {

/// The wait pointer during a sign-up.
class WaitPointer : public MobilePageFixture
{
protected:
    static bool IsWaitShown()
    {
        return QApplication::overrideCursor() != nullptr &&
               QApplication::overrideCursor()->shape() == Qt::WaitCursor;
    }
};

TEST_F(WaitPointer, register_showsItDuringTheRequest_notUnderTheMessage)
{
    for (const char* const outcome :
         {"offline", "", "no document", "<root/>", "<root result='0' message='No'/>", "<root result='1'/>"}) {
        SCOPED_TRACE(outcome);
        WriteSettings();
        OpenFilled();
        Reply(outcome);
        platform.http.reachable = qstrcmp(outcome, "offline") != 0;
        bool isShownInTheProbe = false;
        bool isShownInTheRequest = false;
        bool isShownUnderTheMessage = false;
        platform.http.whileProbing = [&] { isShownInTheProbe = IsWaitShown(); };
        platform.http.whileWaiting = [&] { isShownInTheRequest = IsWaitShown(); };
        platform.boxes.whileOpen = [&] { isShownUnderTheMessage = IsWaitShown(); };
        Click("CmdMobilReg");
        EXPECT_TRUE(isShownInTheProbe);
        EXPECT_EQ(isShownInTheRequest, platform.http.reachable);
        EXPECT_FALSE(isShownUnderTheMessage);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        dialog->Unload();
    }
}

TEST_F(WaitPointer, registerWithAnEmptyBox_doesNotShowIt)
{
    Open(2);
    platform.boxes.whileOpen = [] { EXPECT_EQ(QApplication::overrideCursor(), nullptr); };
    Click("CmdMobilReg");
    EXPECT_EQ(platform.boxes.boxes.size(), 1U);
}

// The other windows stay usable while the request is pending.
TEST_F(WaitPointer, dialogClosedDuringTheRequest_endsItAtOnce)
{
    for (const bool isOpenedAgain : {false, true}) {
        OpenFilled();
        platform.http.whileWaiting = [&] {
            ASSERT_TRUE(IsWaitShown());
            dialog->close();
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
            if (isOpenedAgain) {
                Open(2);
            }
        };
        Click("CmdMobilReg");
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
}

TEST_F(WaitPointer, registerThatThrows_endsIt)
{
    OpenFilled();
    platform.http.whileWaiting = [] { throw std::runtime_error("no memory"); };
    Click("CmdMobilReg");
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

} // namespace
