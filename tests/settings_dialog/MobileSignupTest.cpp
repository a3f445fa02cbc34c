// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/PlainWindow.h"
#include "settings_dialog/MobilePageFixture.h"

#include <QFile>

namespace {

constexpr const char* kConfirmation = "<root result='1' message='Welcome'/>";
constexpr const char* kRefusal = "<root result='0' message='Wrong code'/>";
const QString kWelcome = QStringLiteral("Welcome");

/// "Register" is pressed for the device 15551234 with the code 55 21&, and the user continues before the
/// reply arrives. A main window keeps the program running.
class MobileSignupTest : public MobilePageFixture
{
protected:
    MobileSignupTest()
    {
        const QString name = QStringLiteral("FrmMain");
        PlainWindow::Register(forms, name);
        PlainWindow::Touch(forms, name).Show();
    }

    void Press(const char* reply, std::function<void()> inTheWait)
    {
        Reply(reply);
        platform.http.whileWaiting = std::move(inTheWait);
        Click("CmdMobilReg");
    }
    void CloseDialog() const { dialog->close(); }
    void Reopen(std::int16_t tab = 2)
    {
        CloseDialog();
        Open(tab);
    }
    void TypeOther() const
    {
        Paste("TxtMDID", QStringLiteral("other"));
        Paste("TxtPC", QStringLiteral("0000"));
    }
    void AnswerReset(bool answer)
    {
        platform.boxes.answers = {answer};
        Click("LblReset");
        platform.boxes.boxes.clear();
    }
};

} // namespace

TEST_F(MobileSignupTest, dialogClosed_storesTheDevice_keepsOtherChanges_andShowsTheReply)
{
    const struct
    {
        const char* name;
        const char* reply;
        const char* confirm;
        QString shown;
        std::size_t saves;
    } rows[] = {
        {"confirmed", kConfirmation, "1", kWelcome, 1},
        {"refused", kRefusal, "0", QStringLiteral("Wrong code"), 1},
        {"nothing said", "<root/>", "", QStringLiteral("Could not verify Mobil Alert Settings."), 1},
        {"no reply", "", "0", kOffline, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        WriteSettings();
        platform.boxes.boxes.clear();
        main.calls.clear();
        OpenFilled();
        platform.boxes.whileOpen = [&row] { ExpectStored("15551234", "55 21&", row.confirm); };
        Press(row.reply, [this] {
            CloseDialog();
            ChangePlaceInTheFile();
        });
        ExpectBox(row.shown);
        EXPECT_EQ(Saves(), row.saves);
        ExpectChangedPlace();
        EXPECT_FALSE(IsOpen());
        EXPECT_EQ(main.calls.join(u'|'), kHandOver) << "once, for the closing";
    }
}

TEST_F(MobileSignupTest, dialogClosed_fileThatCannotBeLoadedOrSaved_isLeftAloneAndTheReplyShown)
{
    for (const bool isThere : {false, true}) {
        WriteSettings();
        platform.boxes.boxes.clear();
        OpenFilled();
        Press(kConfirmation, [this, isThere] {
            CloseDialog();
            ASSERT_TRUE(isThere || QFile::remove(kSettingsFile));
            files.refuses = isThere;
        });
        ExpectBox(kWelcome);
        EXPECT_EQ(QFile::exists(kSettingsFile), isThere);
        EXPECT_EQ(Stored("mobileConfirm"), isThere ? QStringLiteral("0") : QStringLiteral("(absent)"));
    }
}

TEST_F(MobileSignupTest, otherValuesTypedMeanwhile_giveWayToThoseOfThePress)
{
    const struct
    {
        const char* name;
        bool isReopened;
        std::int16_t tabAtTheReply;
    } rows[] = {
        {"the dialog stays open", false, 2},
        {"it shows another page", false, 3},
        {"it is opened again", true, 2},
        {"it is opened again and shows another page", true, 1},
    };
    for (const auto& row : rows) {
        for (const bool isConfirmed : {true, false}) {
            SCOPED_TRACE(testing::Message() << row.name << (isConfirmed ? ", confirmed" : ", refused"));
            WriteMobile("true", "0");
            platform.boxes.boxes.clear();
            OpenFilled();
            Press(isConfirmed ? kConfirmation : kRefusal, [this, &row] {
                if (row.isReopened) {
                    Reopen();
                }
                TypeOther();
                dialog->SelectTab(row.tabAtTheReply);
                Forget();
            });
            ExpectBox(isConfirmed ? kWelcome : QStringLiteral("Wrong code"));
            EXPECT_EQ(Saves(), 1U) << "the boxes are set without a write of their own";
            ExpectStored("15551234", "55 21&", isConfirmed ? "1" : "0");
            // The page reads the document of the dialog, without a load of its own.
            dialog->SelectTab(2);
            ExpectShown("15551234", "55 21&");
            ExpectLive(true, !isConfirmed);
            dialog->SelectTab(3);
            EXPECT_EQ(IsLive("ChkIndMobAlert"), isConfirmed);
            dialog->Unload();
        }
    }
}

TEST_F(MobileSignupTest, replyOnAPrayerPage_correctsTheReasonOfTheGreyMobileAlert)
{
    const QString notConfirmed =
        QStringLiteral("Register your mobile device on the Mobile Alert page first.");
    const QString openAgain = QStringLiteral("Your mobile device is registered. Open this page again.");
    const struct
    {
        const char* enabled;
        const char* reply;
        bool isAlertOff;
        QString reason;
    } rows[] = {
        {"true", kConfirmation, false, openAgain},
        {"true", kRefusal, false, notConfirmed},
        {"false", kConfirmation, false,
         QStringLiteral("Tick \"Enable Mobile Alerts\" on the Mobile Alert page first.")},
        {"true", kConfirmation, true, QStringLiteral("Tick \"Alert on\" first.")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reason.toStdString());
        WriteMobile(row.enabled, "0");
        OpenFilled();
        Press(row.reply, [this, &row] {
            dialog->SelectTab(3);
            if (row.isAlertOff) {
                Click("ChkAlertMain");
            }
        });
        EXPECT_FALSE(IsLive("ChkIndMobAlert")) << "until the page is loaded again";
        EXPECT_EQ(Widget("ChkIndMobAlert").toolTip(), row.reason);
        EXPECT_EQ(Widget("ChkIndMobAlert").accessibleDescription(), row.reason);
        dialog->Unload();
    }
}

TEST_F(MobileSignupTest, otherValuesStoredBeforeTheDialogWasClosedAgain_giveWayToThoseOfThePress)
{
    for (const bool isConfirmed : {true, false}) {
        WriteSettings();
        OpenFilled();
        Press(isConfirmed ? kConfirmation : kRefusal, [this] {
            Reopen();
            TypeOther();
            CloseDialog();
        });
        ExpectStored("15551234", "55 21&", isConfirmed ? "1" : "0");
    }
}

// The service does not know of the reset: it stores the device, and its message confirms that.
TEST_F(MobileSignupTest, resetMeanwhile_isKeptAndTheReplyShown)
{
    for (const bool isReopened : {false, true}) {
        SCOPED_TRACE(isReopened ? "opened again" : "the same dialog");
        WriteMobile("true", "0");
        platform.boxes.boxes.clear();
        OpenFilled();
        Press(kConfirmation, [this, isReopened] {
            if (isReopened) {
                Reopen();
            }
            AnswerReset(true);
            Forget();
        });
        ExpectBox(kWelcome);
        EXPECT_EQ(Saves(), 0U);
        ExpectStored("", "", "0");
        ExpectShown("", "");
        ExpectLive(true, true);
        dialog->Unload();
    }
}

TEST_F(MobileSignupTest, resetMeanwhileThatIsAnsweredNo_changesNothing)
{
    OpenFilled();
    Press(kConfirmation, [this] { AnswerReset(false); });
    ExpectBox(kWelcome);
    ExpectStored("15551234", "55 21&", "1");
    ExpectLive(true, false);
}

TEST_F(MobileSignupTest, pressedAgainMeanwhile_isOneRequest)
{
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"in the same dialog", [] {}},
        {"in one opened since", [this] { Reopen(); }},
        {"for another device", [this] { TypeOther(); }},
    };
    for (const auto& [name, before] : rows) {
        SCOPED_TRACE(name);
        WriteSettings();
        platform.http.requests.clear();
        platform.boxes.boxes.clear();
        OpenFilled();
        Press(kConfirmation, [this, &before = before] {
            before();
            Click("CmdMobilReg");
        });
        EXPECT_EQ(platform.http.requests.size(), 1);
        ExpectBox(kWelcome);
        EXPECT_TRUE(IsOpen());
        dialog->Unload();
    }
}

TEST_F(MobileSignupTest, pressedAfterAResetMeanwhile_isSentWhenTheReplyHasCome)
{
    const struct
    {
        const char* name;
        std::function<void()> behind;
        qsizetype requests;
        const char* stored[3];
    } rows[] = {
        {"once", [] {}, 2, {"other", "0000", "1"}},
        {"the dialog is closed", [this] { CloseDialog(); }, 2, {"other", "0000", "1"}},
        {"pressed twice",
         [this] {
             Paste("TxtPC", QStringLiteral("00001"));
             Click("CmdMobilReg");
         },
         2,
         {"other", "00001", "1"}},
        {"reset again", [this] { AnswerReset(true); }, 1, {"", "", "0"}},
        {"the program ends",
         [this] {
             CloseDialog();
             forms.Unload(QStringLiteral("FrmMain"));
         },
         1,
         {"other", "0000", "0"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        WriteSettings();
        platform.http.requests.clear();
        OpenFilled();
        Press(kConfirmation, [this, &row] {
            AnswerReset(true);
            TypeOther();
            Click("CmdMobilReg");
            row.behind();
            EXPECT_EQ(platform.http.requests.size(), 1) << "one at a time";
        });
        EXPECT_EQ(platform.http.requests.size(), row.requests);
        ExpectStored(row.stored[0], row.stored[1], row.stored[2]);
        forms.Unload(FrmAlerts::kName);
    }
}

TEST_F(MobileSignupTest, pressedAfterTheReply_isTheNextRequest)
{
    OpenFilled();
    Press("", [this] { Reopen(); });
    Press(kConfirmation, [] {});
    EXPECT_EQ(platform.http.requests.size(), 2);
    ExpectStored("15551234", "55 21&", "1");
}

// A failure closes the dialog that is open by then, if any.
TEST_F(MobileSignupTest, storingThatThrows_closesTheDialogAndTheReplyIsShown)
{
    for (const bool isReopened : {true, false}) {
        platform.boxes.boxes.clear();
        OpenFilled();
        Press(kConfirmation, [this, isReopened] {
            CloseDialog();
            if (isReopened) {
                Open(2);
            }
            files.throws = true;
        });
        files.throws = false;
        ExpectBox(kWelcome);
        EXPECT_FALSE(IsOpen());
        EXPECT_EQ(forms.Variables().ActiveForm, u"FrmMain");
    }
}

TEST_F(MobileSignupTest, lastWindowClosedMeanwhile_storesAndBringsNothingBack)
{
    OpenFilled();
    Press(kConfirmation, [this] {
        CloseDialog();
        forms.Unload(QStringLiteral("FrmMain"));
    });
    ExpectStored("15551234", "55 21&", "1");
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(forms.Loaded(QStringLiteral("FrmMain")), nullptr);
}
