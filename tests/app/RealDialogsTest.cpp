// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"
#include "app/MainWindowFixture.h"
#include "forms/LinkLabel.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"
#include "locations/FrmWait.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"

namespace {

struct DialogRow
{
    const char* name;
    /// The window that its closing leaves to be closed; none where it leaves the main window.
    const char* below;
    /// Whether it leaves the main window usable.
    bool isMainUsable;
};

void PrintTo(const DialogRow& row, std::ostream* stream)
{
    *stream << row.name;
}

/// The main window and one of the program's own dialogs, opened as a user opens it.
class RealDialogsTest : public MainWindowFixture, public testing::WithParamInterface<DialogRow>
{
protected:
    RealDialogsTest()
    {
        forms.Register(FrmAlerts::kName, [this] { return std::make_unique<FrmAlerts>(forms, signup); });
        forms.Register(FrmLocation::kName, [this] { return std::make_unique<FrmLocation>(forms); });
        forms.Register(FrmNewLoc::kName, [this] { return std::make_unique<FrmNewLoc>(forms); });
        forms.Register(FrmWait::kName, [this] { return std::make_unique<FrmWait>(forms); });
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
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

    static void ClickLink(Form& window, const char* name)
    {
        Desk::Click(*window.findChild<LinkLabel*>(QLatin1String(name)));
    }
    void Open()
    {
        const QLatin1String name(GetParam().name);
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
        ASSERT_EQ(main->isEnabled(), GetParam().isMainUsable);
    }
    [[nodiscard]] Form* Dialog() const { return forms.Loaded(QLatin1String(GetParam().name)); }
    void Minimise()
    {
        main->showMinimized();
        Desk::Settle();
        ASSERT_FALSE(main->isVisible());
        ASSERT_TRUE(Dialog() == nullptr || Dialog()->isVisible()) << "the dialog stays";
    }
    /// With the window below, if there is one, the main window is out of reach until that goes as well.
    void CloseDialog()
    {
        Dialog()->close();
        Desk::Settle();
        ASSERT_EQ(Dialog(), nullptr);
        if (GetParam().below != nullptr) {
            Form* const below = forms.Loaded(QLatin1String(GetParam().below));
            ASSERT_NE(below, nullptr);
            EXPECT_TRUE(below->isEnabled());
            below->close();
            Desk::Settle();
        }
    }
    void ExpectDialogInFront()
    {
        EXPECT_TRUE(main->isVisible());
        EXPECT_FALSE(main->isMinimized());
        EXPECT_EQ(main->isEnabled(), GetParam().isMainUsable);
        EXPECT_EQ(main->Variables().ActiveForm, QLatin1String(GetParam().name));
        EXPECT_EQ(QApplication::activeWindow(), Dialog());
    }
    void ExpectMainInCharge()
    {
        EXPECT_TRUE(main->isEnabled());
        EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmMain"))
            << "or every alert would be dropped";
        EXPECT_EQ(ended, 0) << "the main window is loaded, hidden or not";
    }
    void CloseMain()
    {
        main->close();
        Desk::Settle();
    }

    FrmMain* main = nullptr;
    MobileSignup signup{forms};
};

TEST_P(RealDialogsTest, minimiseOpenClose_endsWithTheMainWindow)
{
    Minimise();
    ClickMenu("mnuOpen");
    ExpectDialogInFront();
    CloseDialog();
    ExpectMainInCharge();
    EXPECT_TRUE(main->isVisible());
    CloseMain();
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(platform.tray.shown);
}

TEST_P(RealDialogsTest, minimiseCloseOpen_leavesTheMainWindowHiddenMeanwhile)
{
    Minimise();
    CloseDialog();
    ExpectMainInCharge();
    EXPECT_FALSE(main->isVisible()) << "nobody asked for it";
    ClickMenu("mnuOpen");
    EXPECT_TRUE(main->isVisible());
    EXPECT_EQ(QApplication::activeWindow(), main);
    ClickMenu("mnuExit");
    EXPECT_EQ(ended, 1);
}

TEST_P(RealDialogsTest, openWhileUp_leavesTheDialogInFront)
{
    ClickMenu("mnuOpen");
    ExpectDialogInFront();
    Minimise();
    ClickMenu("mnuOpen");
    ClickMenu("mnuOpen");
    ExpectDialogInFront();
    CloseDialog();
    ExpectMainInCharge();
}

TEST_P(RealDialogsTest, minimiseOpenExit_endsWithTheDialog)
{
    Minimise();
    ClickMenu("mnuOpen");
    ClickMenu("mnuExit");
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
    EXPECT_FALSE(platform.tray.shown);
    EXPECT_EQ(ended, 0) << "the dialog is still there";
    CloseDialog();
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr) << "nothing brought it back";
}

TEST_P(RealDialogsTest, exitWhileHidden_endsWithTheDialog)
{
    Minimise();
    ClickMenu("mnuExit");
    EXPECT_FALSE(platform.tray.shown);
    EXPECT_EQ(ended, 0);
    ClickMenu("mnuOpen");
    EXPECT_FALSE(main->isVisible());
    CloseDialog();
    EXPECT_EQ(ended, 1);
}

TEST_P(RealDialogsTest, closeButton_isRefusedWhileDisabled)
{
    CloseMain();
    if (GetParam().isMainUsable) {
        EXPECT_EQ(forms.Loaded(FrmMain::kName), nullptr);
        EXPECT_EQ(ended, 0);
        CloseDialog();
    } else {
        ASSERT_EQ(forms.Loaded(FrmMain::kName), main);
        EXPECT_TRUE(main->isVisible());
        CloseDialog();
        ExpectMainInCharge();
        CloseMain();
    }
    EXPECT_EQ(ended, 1);
}

TEST_P(RealDialogsTest, bothMinimised_openBringsTheMainWindowAlone)
{
    Dialog()->showMinimized();
    Desk::Settle();
    main->showMinimized();
    Desk::Settle();
    ASSERT_FALSE(main->isVisible());
    ClickMenu("mnuOpen");
    EXPECT_TRUE(main->isVisible());
    EXPECT_TRUE(Dialog()->isMinimized()) << "it keeps its place on the taskbar";
    Dialog()->showNormal();
    CloseDialog();
    ExpectMainInCharge();
}

INSTANTIATE_TEST_SUITE_P(Each, RealDialogsTest,
                         testing::Values(DialogRow{"FrmAlerts", nullptr, true},
                                         DialogRow{"FrmLocation", nullptr, false},
                                         DialogRow{"FrmNewLoc", "FrmLocation", false},
                                         DialogRow{"FrmPopup", nullptr, false}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
