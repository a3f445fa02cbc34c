// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/MobilePageFixture.h"

#include <QApplication>

namespace {

class HelpInPlaceTest : public MobilePageFixture
{
protected:
    /// The reason why "Mobile Alert" is grey, for the eye and for a screen reader.
    void ExpectReason(const QString& reason) const
    {
        const QWidget& box = Widget("ChkIndMobAlert");
        EXPECT_EQ(box.toolTip(), reason);
        EXPECT_EQ(box.accessibleDescription(), reason);
        EXPECT_EQ(box.isEnabled(), reason.isEmpty());
    }
    static bool IsWaitShown()
    {
        return QApplication::overrideCursor() != nullptr &&
               QApplication::overrideCursor()->shape() == Qt::WaitCursor;
    }
};

const QString kAlertOff = QStringLiteral("Tick \"Alert on\" first.");
const QString kNotEnabled = QStringLiteral("Tick \"Enable Mobile Alerts\" on the Mobile Alert page first.");
const QString kNotConfirmed = QStringLiteral("Register your mobile device on the Mobile Alert page first.");

TEST_F(HelpInPlaceTest, mobileAlert_eachReasonForItsGrey_isSaid)
{
    const struct
    {
        const char* enabled;
        const char* confirm;
        QString reason;
    } rows[] = {
        {"false", "0", kNotEnabled},
        {"false", "1", kNotEnabled},
        {"true", "0", kNotConfirmed},
        {"true", "1", QString()},
    };
    for (const auto& [enabled, confirm, reason] : rows) {
        SCOPED_TRACE(testing::Message() << enabled << ' ' << confirm);
        WriteMobile(enabled, confirm);
        Open(3);
        ExpectReason(reason);
        Click("ChkAlertMain");
        ExpectReason(kAlertOff);
        Click("ChkAlertMain");
        ExpectReason(reason);
        Click("ChkAlertMain");
        // The page load does not look at "Alert on".
        dialog->SelectTab(3);
        ExpectReason(reason);
        dialog->Unload();
    }
}

TEST_F(HelpInPlaceTest, register_showsTheWaitPointerWhileItAsks_andGivesItBackBeforeTheMessage)
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

TEST_F(HelpInPlaceTest, registerWithAnEmptyBox_showsNoWaitPointer)
{
    Open(2);
    platform.boxes.whileOpen = [] { EXPECT_EQ(QApplication::overrideCursor(), nullptr); };
    Click("CmdMobilReg");
    EXPECT_EQ(platform.boxes.boxes.size(), 1U);
}

// The other windows stay usable while the request is pending.
TEST_F(HelpInPlaceTest, dialogClosedWhileItAsks_givesThePointerBackAtOnce)
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

TEST_F(HelpInPlaceTest, registerThatThrows_givesThePointerBack)
{
    OpenFilled();
    platform.http.whileWaiting = [] { throw std::runtime_error("no memory"); };
    Click("CmdMobilReg");
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(HelpInPlaceTest, reset_defaultAnswerIsNo)
{
    OpenConfirmed();
    Click("LblReset");
    EXPECT_EQ(platform.boxes.lastDefault, MessageBoxes::DefaultAnswer::No);
}

} // namespace
