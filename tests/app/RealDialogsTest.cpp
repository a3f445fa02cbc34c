// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindowFixture.h"
#include "fakes/DialogWindows.h"
#include "forms/LinkLabel.h"

namespace {

/// The main window and one of the program's own dialogs, opened as a user opens it.
class RealDialogsTest : public MainWindowFixture, public testing::WithParamInterface<const char*>
{
protected:
    RealDialogsTest()
    {
        RegisterDialogWindows(forms, signup);
        main = &Start();
        platform.http.reachable = true;
        platform.http.replies[QStringLiteral("getStates.pl")] =
            "<root><a state='Illinois' state_id='17'/></root>";
        Open();
    }
    ~RealDialogsTest() override
    {
        EXPECT_TRUE(platform.boxes.boxes.empty());
        EXPECT_EQ(platform.process.ended, 0) << "no forced end";
    }

    [[nodiscard]] static QString Name() { return QLatin1String(GetParam()); }
    /// All other dialogs disable the main window.
    [[nodiscard]] static bool IsMainUsable() { return Name() == FrmAlerts::kName; }
    static void ClickLink(Form& window, const char* name)
    {
        Desk::Click(*window.findChild<LinkLabel*>(QLatin1String(name)));
    }
    void Open()
    {
        const QString name = Name();
        if (name == FrmAlerts::kName) {
            ClickLink(*main, "LblAlertsLink");
        } else if (name == FrmPopup::kName) {
            forms.Touch<FrmPopup>().ShowPopup(QStringLiteral("Time for Asr"), 600);
        } else {
            ClickLink(*main, "LblLocLink");
            if (name == FrmNewLoc::kName) {
                ClickLink(*forms.Loaded(FrmLocation::kName), "LblNewLocLink");
            }
        }
        Desk::Settle();
        ASSERT_TRUE(Dialog() != nullptr && Dialog()->isVisible());
        ASSERT_EQ(main->Variables().ActiveForm, name);
        ASSERT_EQ(main->isEnabled(), IsMainUsable());
    }
    [[nodiscard]] Form* Dialog() const { return forms.Loaded(Name()); }
    void Minimise()
    {
        MainWindowFixture::Minimise(*main);
        ASSERT_FALSE(main->isVisible());
        ASSERT_TRUE(Dialog() == nullptr || Dialog()->isVisible()) << "the dialog stays";
    }
    /// If there is a window below, the main window stays disabled until that closes as well.
    void CloseDialog()
    {
        Close(*Dialog());
        ASSERT_EQ(Dialog(), nullptr);
        if (Name() == FrmNewLoc::kName) {
            Form* const below = forms.Loaded(FrmLocation::kName);
            ASSERT_NE(below, nullptr);
            EXPECT_TRUE(below->isEnabled());
            Close(*below);
        }
    }
    void ExpectDialogInFront()
    {
        EXPECT_TRUE(main->isVisible());
        EXPECT_FALSE(main->isMinimized());
        EXPECT_EQ(main->isEnabled(), IsMainUsable());
        EXPECT_EQ(main->Variables().ActiveForm, Name());
        EXPECT_EQ(QApplication::activeWindow(), Dialog());
    }
    void ExpectMainInCharge()
    {
        EXPECT_TRUE(main->isEnabled());
        EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmMain"))
            << "or every alert would be dropped";
        EXPECT_EQ(ended, 0) << "the main window is loaded, hidden or not";
    }
    FrmMain* main = nullptr;
    MobileSignup signup{forms};
};

TEST_P(RealDialogsTest, openWhileUpOrHidden_leavesTheDialogInFront_closingEndsWithTheMainWindow)
{
    ClickMenu("mnuOpen");
    ExpectDialogInFront();
    Minimise();
    ClickMenu("mnuOpen");
    ExpectDialogInFront();
    ClickMenu("mnuOpen");
    ExpectDialogInFront();
    CloseDialog();
    ExpectMainInCharge();
    EXPECT_TRUE(main->isVisible());
    Close(*main);
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(platform.tray.shown);
}

TEST_P(RealDialogsTest, minimiseCloseOpen_leavesTheMainWindowHiddenMeanwhile)
{
    Minimise();
    CloseDialog();
    ExpectMainInCharge();
    EXPECT_FALSE(main->isVisible()) << "it was not opened";
    ClickMenu("mnuOpen");
    EXPECT_TRUE(main->isVisible());
    EXPECT_EQ(QApplication::activeWindow(), main);
    ClickMenu("mnuExit");
    EXPECT_EQ(ended, 1);
}

TEST_P(RealDialogsTest, exit_upOrHidden_endsWithTheDialog)
{
    for (const bool isHidden : {false, true}) {
        if (isHidden) {
            main = &Start();
            Open();
            Minimise();
            ended = 0;
        }
        ClickMenu("mnuExit");
        EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
        EXPECT_FALSE(platform.tray.shown);
        EXPECT_EQ(ended, 0) << "the dialog is still there";
        ClickMenu("mnuOpen");
        EXPECT_FALSE(main->isVisible());
        CloseDialog();
        EXPECT_EQ(ended, 1);
        EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr) << "nothing brought it back";
        EXPECT_FALSE(IsRunning());
    }
}

TEST_P(RealDialogsTest, closeButton_isRefusedWhileDisabled)
{
    Close(*main);
    if (IsMainUsable()) {
        EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
        EXPECT_EQ(ended, 0);
        CloseDialog();
    } else {
        ASSERT_EQ(forms.Loaded(FrmMain::kName), main);
        EXPECT_TRUE(main->isVisible());
        CloseDialog();
        ExpectMainInCharge();
        Close(*main);
    }
    EXPECT_EQ(ended, 1);
}

TEST_P(RealDialogsTest, bothMinimised_openBringsTheMainWindowAlone)
{
    MainWindowFixture::Minimise(*Dialog());
    MainWindowFixture::Minimise(*main);
    ASSERT_FALSE(main->isVisible());
    ClickMenu("mnuOpen");
    EXPECT_TRUE(main->isVisible());
    EXPECT_TRUE(Dialog()->isMinimized()) << "it keeps its place on the taskbar";
    Dialog()->showNormal();
    CloseDialog();
    ExpectMainInCharge();
}

INSTANTIATE_TEST_SUITE_P(Each, RealDialogsTest,
                         testing::Values("FrmAlerts", "FrmLocation", "FrmNewLoc", "FrmPopup"),
                         [](const auto& row) { return std::string(row.param); });

/// The main window with the two dialogs that its links open.
class LinkedDialogsTest : public MainWindowFixture
{
protected:
    LinkedDialogsTest() { RegisterDialogWindows(forms, signup); }

    Form& OpenList()
    {
        Desk::Click(Find<LinkLabel>("LblLocLink"));
        return *forms.Loaded(FrmLocation::kName);
    }

    MobileSignup signup{forms};
};

TEST_F(LinkedDialogsTest, opened_standOverTheMiddleOfTheMainWindow)
{
    FrmMain& main = Start();
    main.move(60, 70);
    Desk::Settle();
    for (const auto& [link, name] :
         {std::pair{"LblAlertsLink", FrmAlerts::kName}, std::pair{"LblLocLink", FrmLocation::kName}}) {
        Desk::Click(Find<LinkLabel>(link));
        ASSERT_NE(forms.Loaded(name), nullptr);
        const QPoint middle = main.frameGeometry().center();
        EXPECT_LT((forms.Loaded(name)->frameGeometry().center() - middle).manhattanLength(), 8) << link;
    }
}

// Unlike the settings dialog, which only closes again, a list that can't be opened is fatal.
TEST_F(LinkedDialogsTest, damagedFile_listSaysSoThenEndsTheProgram)
{
    Start();
    WriteSettings(QStringLiteral("<root><locations"));
    Desk::Click(Find<LinkLabel>("LblLocLink"));
    EXPECT_EQ(platform.boxes.boxes, (std::vector{FakeMessageBoxes::Message(QStringLiteral(
                                                     "There was a problem retrieving list of locations.")),
                                                 FakeMessageBoxes::Fatal(3)}));
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_EQ(forms.Loaded(FrmLocation::kName), nullptr);
}

TEST_F(LinkedDialogsTest, closedWithoutAChoice_noPlaceYet_showsWhatTheClockHoldsBeforeItsFirstDay)
{
    WriteWithoutAPlace();
    // The module's answers before a date is set.
    calculation.hijriDay = 0;
    calculation.hijriMonth = 0;
    calculation.hijriYear = 0;
    Start();
    ASSERT_EQ(Text("LblFarjTime"), QString());
    Close(OpenList());
    EXPECT_EQ(Text("LblLocation"), u", ");
    EXPECT_EQ(Text("LblTimeZ"), u"Time Zone: 0");
    EXPECT_EQ(Text("LblHajri"), u"0 , 0");
    EXPECT_EQ(Times(), u"12:00 AM|12:00 AM|12:00 AM|12:00 AM|12:00 AM|12:00 AM");
    EXPECT_TRUE(calculation.calls.isEmpty()) << "no day has been computed";
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(LinkedDialogsTest, closed_givesTheFocusBackToTheControlThatHadIt)
{
    const FrmMain& main = Start();
    auto& help = Find<LinkLabel>("LblHelp");
    help.setFocus();
    Form& list = OpenList();
    EXPECT_EQ(Find<LinkLabel>("LblLocLink").foregroundRole(), QPalette::Link)
        << "grey is only what is disabled itself";
    EXPECT_EQ(main.focusWidget(), nullptr);
    Close(list);
    EXPECT_TRUE(main.isEnabled());
    EXPECT_EQ(main.focusWidget(), &help);
}

} // namespace
