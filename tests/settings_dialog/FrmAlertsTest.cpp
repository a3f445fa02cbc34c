// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/PaintCount.h"
#include "settings_dialog/DialogTest.h"

#include <QGroupBox>
#include <QLabel>

namespace {

struct Tab
{
    std::int16_t number;
    const char* label;
    const char* caption;
    const char* frame;
};

constexpr Tab kTabs[] = {
    {1, "LblGeneral", "General", "FrmGeneral"}, {2, "LblMobilAlert", "Mobile Alert", "FrmMobilAlert"},
    {3, "LblFajr", "Fajr", "FrmPrayer"},        {4, "LblShuruq", "Shuruq", "FrmPrayer"},
    {5, "LblDuhr", "Duhr", "FrmPrayer"},        {6, "LblAsr", "Asr", "FrmPrayer"},
    {7, "Maghrib", "Maghrib", "FrmPrayer"},     {8, "LblIsha", "Isha", "FrmPrayer"},
};

using FrmAlertsFrame = DialogTest;

} // namespace

TEST_F(FrmAlertsFrame, built_hasItsSizeCaptionAndGeneralFrame)
{
    FrmAlerts& built = forms.Touch<FrmAlerts>();
    dialog = &built;
    EXPECT_EQ(built.size(), QSize(510, 300));
    EXPECT_EQ(built.minimumSize(), QSize(510, 300));
    EXPECT_GT(built.maximumWidth(), 510);
    EXPECT_EQ(built.windowTitle(), u"Alerts");
    EXPECT_FALSE(built.isModal());
    built.Show();
    ExpectOnlyFrame("FrmGeneral");
    EXPECT_EQ(Find<QLabel>("Label9").text(), u"Prayers:");
    EXPECT_EQ(files.loads, 0);
    EXPECT_EQ(Widget("FrmGeneral").geometry(), Widget("FrmMobilAlert").geometry());
    EXPECT_EQ(Widget("FrmGeneral").geometry(), Widget("FrmPrayer").geometry());
}

TEST_F(FrmAlertsFrame, resized_controlsKeepTheirPlaces)
{
    Open();
    const QList<QWidget*> controls = dialog->findChildren<QWidget*>();
    std::vector<QRect> before;
    for (const QWidget* const control : controls) {
        before.push_back(control->geometry());
    }
    ASSERT_TRUE(Widget("FrmGeneral").isVisible() && Widget("CmdClose").isVisible());
    for (const QSize& size : {QSize(900, 700), QSize(510, 300)}) {
        dialog->resize(size);
        QCoreApplication::processEvents();
        ASSERT_EQ(dialog->size(), size);
        for (qsizetype i = 0; i < controls.size(); ++i) {
            EXPECT_TRUE(controls[i]->geometry() == before[static_cast<std::size_t>(i)])
                << controls[i]->objectName().toStdString();
        }
    }
}

TEST_F(FrmAlertsFrame, tabRow_readsFromLeftToRight)
{
    Open();
    int right = 0;
    for (const char* const name : {"LblGeneral", "LblMobilAlert", "Label9", "LblFajr", "LblShuruq", "LblDuhr",
                                   "LblAsr", "Maghrib", "LblIsha"}) {
        EXPECT_GT(Widget(name).x(), right) << name;
        right = Widget(name).geometry().right();
    }
}

TEST_F(FrmAlertsFrame, tab_clickOrEnterShowsItsPage_onlyTheGeneralOneLoadsTheFile)
{
    for (const bool byKey : {false, true}) {
        for (const Tab& tab : kTabs) {
            SCOPED_TRACE(tab.label);
            Open();
            // From another page, so that there is something to switch.
            dialog->SelectTab(tab.number == 1 ? 2 : 1);
            Forget();
            EXPECT_EQ(Find<LinkLabel>(tab.label).text(), QLatin1String(tab.caption));
            byKey ? Press(tab.label, QStringLiteral("Return")) : Click(tab.label);
            ExpectOnlyFrame(tab.frame);
            if (tab.number > 2) {
                EXPECT_EQ(Find<QLabel>("LblPrayerName").text(), QLatin1String(tab.caption));
            }
            for (const Tab& other : kTabs) {
                EXPECT_TRUE(Widget(other.label).isVisible()) << other.label;
            }
            EXPECT_TRUE(Widget("Label9").isVisible());
            EXPECT_EQ(Widget("CmdClose").isVisible(), tab.number == 1);
            EXPECT_EQ(Saves(), 0U);
            EXPECT_TRUE(main.calls.isEmpty());
            // Every prayer of this file but Shuruq is on, and a tick that changes loads once.
            EXPECT_EQ(files.loads, tab.number == 2 || tab.number == 4 ? 0 : 1);
            dialog->Unload();
            main.calls.clear();
        }
    }
}

TEST_F(FrmAlertsFrame, selectTab_unknownNumbers_showTheGeneralPageAsNumberOne)
{
    for (const int number : {0, 9, -1, 32767, -32768}) {
        Open(5);
        dialog->SelectTab(static_cast<std::int16_t>(number));
        ExpectOnlyFrame("FrmGeneral");
        // The page is number 1, so a prayer's control set by code writes nothing.
        Forget();
        Find<CheckBox>("ChkSilAlert").SetValue(Find<CheckBox>("ChkSilAlert").Value() == 1 ? 0 : 1);
        EXPECT_EQ(Saves(), 0U) << number;
        dialog->Unload();
    }
}

TEST_F(FrmAlertsFrame, closing_handsOverToTheMainWindow_whichHearsOfNothingBefore)
{
    Open();
    Click("OptEGAS");
    Click("OptHanafi");
    Click("ChkDLS");
    EXPECT_TRUE(main.calls.isEmpty());
    Forget();
    Click("CmdClose");
    ExpectHandedOver();
    // The main window still belongs to the dialog while it rereads the file.
    EXPECT_EQ(main.activeFormAtUpdate, u"FrmAlerts");
    EXPECT_EQ(Saves(), 0U);
    main.calls.clear();
    Open(6);
    dialog->close();
    ExpectHandedOver();
}

TEST_F(FrmAlertsFrame, closing_stepThatFails_skipsTheLaterSteps)
{
    for (const bool isUpdate : {true, false}) {
        main.updateFails = isUpdate;
        main.focusFails = !isUpdate;
        main.calls.clear();
        Open();
        Click("CmdClose");
        EXPECT_FALSE(IsOpen());
        EXPECT_EQ(main.calls.join(u'|'), isUpdate ? u"Enable|UpdateEverything" : kHandOver);
        EXPECT_EQ(forms.Variables().ActiveForm, u"FrmAlerts");
        EXPECT_TRUE(platform.boxes.boxes.empty());
        EXPECT_EQ(platform.process.ended, 0);
    }
}

TEST_F(FrmAlertsFrame, openedWhileOpen_comesToTheFrontWithTheNamedPage)
{
    Open(3);
    const FrmAlerts* const first = dialog;
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    Open(8);
    EXPECT_EQ(dialog, first);
    EXPECT_EQ(Find<QLabel>("LblPrayerName").text(), u"Isha");
    EXPECT_TRUE(main.calls.isEmpty());
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
    dialog->showMinimized();
    Open(8);
    EXPECT_FALSE(dialog->isMinimized());
}

TEST_F(FrmAlertsFrame, gainedFocus_repaintsTheDialog)
{
    Open();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
    QCoreApplication::processEvents();
    const PaintCount count(FrmAlerts::kName);
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(dialog, &activation);
    EXPECT_GE(count.paints, 1);
}

TEST_F(FrmAlertsFrame, pageSelectedOnANewDialog_readsAnEmptyDocument)
{
    // Only the General page loads the document.
    dialog = &forms.Touch<FrmAlerts>();
    dialog->Show();
    dialog->SelectTab(3);
    EXPECT_TRUE(IsOpen());
    EXPECT_FALSE(IsTicked("ChkAlertMain"));
    EXPECT_EQ(files.loads, 0);
}
