// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/MobilePageFixture.h"

#include <QApplication>

namespace {

/// The wait pointer of the dialog during a sign-up. The other windows keep their pointer: they take input.
class WaitPointer : public MobilePageFixture
{
protected:
    [[nodiscard]] bool IsWaitShown() const
    {
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        return dialog->cursor().shape() == Qt::WaitCursor;
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
        EXPECT_FALSE(IsWaitShown());
        dialog->Unload();
    }
}

TEST_F(WaitPointer, registerWithAnEmptyBox_doesNotShowIt)
{
    Open(2);
    platform.boxes.whileOpen = [this] { EXPECT_FALSE(IsWaitShown()); };
    Click("CmdMobilReg");
    EXPECT_EQ(platform.boxes.boxes.size(), 1U);
}

TEST_F(WaitPointer, mouseMovedDuringTheRequest_keepsIt)
{
    OpenFilled();
    Reply("<root/>");
    platform.http.whileWaiting = [this] {
        for (const char* const place : {"LblReset", "FrmMobilSub", "LblFajr"}) {
            QTest::mouseMove(&Widget(place), {3, 3});
            QTest::mouseMove(&Widget(place), {4, 4});
            QCoreApplication::processEvents();
            EXPECT_TRUE(IsWaitShown()) << place;
        }
    };
    Click("CmdMobilReg");
    EXPECT_FALSE(IsWaitShown());
}

TEST_F(WaitPointer, dialogOpenedAgainDuringTheRequest_doesNotShowIt)
{
    OpenFilled();
    platform.http.whileWaiting = [this] {
        ASSERT_TRUE(IsWaitShown());
        dialog->close();
        Open(2);
        EXPECT_FALSE(IsWaitShown());
    };
    Click("CmdMobilReg");
    EXPECT_FALSE(IsWaitShown());
}

TEST_F(WaitPointer, registerThatThrows_endsIt)
{
    OpenFilled();
    platform.http.whileWaiting = [] { throw std::runtime_error("no memory"); };
    Click("CmdMobilReg");
    EXPECT_FALSE(IsOpen());
    EXPECT_FALSE(IsWaitShown()) << "the window is destroyed later, by the event loop";
}

} // namespace
