// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainLinks.h"

#include "app/MainControls.h"
#include "fakes/Desk.h"
#include "fakes/FakePlatform.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"
#include "forms/MainForm.h"
#include "service/ServiceRequests.h"
#include "support/RuntimeError.h"

#include <QGroupBox>
#include <QLabel>

#include <gtest/gtest.h>

namespace {

class StandInMain final : public Form, public MainForm
{
public:
    explicit StandInMain(Forms& forms)
        : Form(forms, QStringLiteral("FrmMain"), Qt::Window)
        , controls(*this)
    {
        setFixedSize(602, 423);
        ActiveForm = Name();
    }
    int UpdateEverything() override { return 1; }
    void PopLocation() override {}
    void PopPrayerFrame() override {}
    void Enable(bool enabled) override { setEnabled(enabled); }
    void TakeFocus() override {}

    MainControls controls;
};

class MainLinksTest : public testing::Test
{
protected:
    MainLinksTest()
    {
        window.Settings.PID = QStringLiteral("P-77");
        window.show();
        // Away from where the last test left the mouse: a move to the same place is none.
        Desk::MoveTo(window, {600, 420});
    }

    [[nodiscard]] LinkLabel& Link(const char* name)
    {
        auto* const link = window.findChild<LinkLabel*>(QLatin1String(name));
        EXPECT_NE(link, nullptr) << name;
        return *link;
    }
    [[nodiscard]] Qt::CursorShape Pointer() const { return window.cursor().shape(); }

    MainLinks::Dialogs Recorded()
    {
        const auto record = [this](const QString& what, const QString& failure) {
            log << what;
            traces << window.TraceLoc;
            wasWindowEnabled = window.isEnabled();
            disabledMeanwhile.clear();
            for (const auto* link : window.findChildren<LinkLabel*>()) {
                if (!link->isEnabledTo(&window)) {
                    disabledMeanwhile << link->objectName();
                }
            }
            if (failure == what) {
                throw RuntimeError(ErrorNumber::kObjectNotSet, QStringLiteral("nothing there"));
            }
        };
        return {[=, this] { record(QStringLiteral("ShowAlerts"), failsAt); },
                [=, this](std::int16_t tab) {
                    record(QStringLiteral("SelectTab %1").arg(tab), failsAt);
                    return !closesItself;
                },
                [=, this] { record(QStringLiteral("ShowLocation"), failsAt); }};
    }

    [[nodiscard]] static FakeMessageBoxes::Box FatalBox(int number)
    {
        return {QStringLiteral("An error has occured, The application will be terminated."),
                QStringLiteral("Error - %1").arg(number), QStringLiteral("OK")};
    }

    FakePlatform platform;
    Forms forms{platform.doors};
    StandInMain window{forms};
    MainLinks links{window, window, window.controls, Recorded()};
    QString failsAt;
    /// As the dialog does over settings that it can't show.
    bool closesItself = false;
    QStringList log;
    QStringList traces;
    QStringList disabledMeanwhile;
    bool wasWindowEnabled = false;
};

struct PrayerLink
{
    const char* name;
    const char* caption;
    int tab;
};

class PrayerLinkTest : public MainLinksTest, public testing::WithParamInterface<PrayerLink>
{
};

TEST_P(PrayerLinkTest, click_opensTheDialogAtItsTab)
{
    LinkLabel& link = Link(GetParam().name);
    EXPECT_EQ(link.text(), QLatin1String(GetParam().caption));
    Desk::Click(link);
    EXPECT_EQ(log, (QStringList{QStringLiteral("ShowAlerts"), QStringLiteral("SelectTab 1"),
                                QStringLiteral("SelectTab %1").arg(GetParam().tab)}));
    EXPECT_TRUE(disabledMeanwhile.contains(QLatin1String(GetParam().name)));
    EXPECT_TRUE(link.isEnabled());
    EXPECT_TRUE(Link("LblAlertsLink").isEnabled());
    EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmAlerts"));
    EXPECT_EQ(window.TraceLoc, QStringLiteral("FrmMain - LblAlertsLink_Click 5"));
    EXPECT_TRUE(window.isEnabled()) << "the settings dialog leaves the main window usable";
}

TEST_P(PrayerLinkTest, dialogThatFailsToOpen_endsAndSelectsNoTab)
{
    failsAt = QStringLiteral("ShowAlerts");
    Desk::Click(Link(GetParam().name));
    EXPECT_EQ(log, QStringList{QStringLiteral("ShowAlerts")});
    EXPECT_EQ(platform.boxes.boxes, std::vector{FatalBox(4)});
    EXPECT_EQ(platform.process.ended, 1);
}

INSTANTIATE_TEST_SUITE_P(
    All, PrayerLinkTest,
    testing::Values(PrayerLink{"LblFarjLink", "Fajr:", 3}, PrayerLink{"LblShuruqLink", "Shuruq:", 4},
                    PrayerLink{"LblDuhrLink", "Duhr:", 5}, PrayerLink{"LblAsrLink", "Asr:", 6},
                    PrayerLink{"LblMaghribLink", "Maghrib:", 7}, PrayerLink{"LblIshaLink", "Isha:", 8}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(MainLinksTest, prayerLink_tabThatFails_isNoFailureOfTheOpening)
{
    failsAt = QStringLiteral("SelectTab 6");
    Desk::Click(Link("LblAsrLink"));
    ASSERT_EQ(platform.boxes.boxes.size(), 1U);
    EXPECT_EQ(platform.boxes.boxes.front(),
              (FakeMessageBoxes::Box{QStringLiteral("Run-time error '91':\r\n\r\nnothing there"),
                                     QStringLiteral("Dusk Beacon"), QStringLiteral("OK")}));
    EXPECT_EQ(platform.process.ended, 1);
}

TEST_F(MainLinksTest, alertsLink_tracesEachStep)
{
    Desk::Click(Link("LblAlertsLink"));
    EXPECT_EQ(log, (QStringList{QStringLiteral("ShowAlerts"), QStringLiteral("SelectTab 1")}));
    EXPECT_EQ(traces, (QStringList{QStringLiteral("FrmMain - LblAlertsLink_Click 2"),
                                   QStringLiteral("FrmMain - LblAlertsLink_Click 3")}));
    EXPECT_EQ(window.TraceLoc, QStringLiteral("FrmMain - LblAlertsLink_Click 5"));
    EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmAlerts"));
    EXPECT_EQ(disabledMeanwhile,
              (QStringList{QStringLiteral("LblAlertsLink"), QStringLiteral("LblStopLink")}));
    EXPECT_TRUE(Link("LblAlertsLink").isEnabled());
}

TEST_F(MainLinksTest, alertsLink_isDisabledInItsFirstStep_enabledInItsLast)
{
    class EnabledWatch final : public QObject
    {
    public:
        explicit EnabledWatch(const MainForm& main)
            : m_main(main)
        {
        }
        bool eventFilter(QObject* /*watched*/, QEvent* event) override
        {
            if (event->type() == QEvent::EnabledChange) {
                traces << m_main.TraceLoc;
            }
            return false;
        }
        QStringList traces;

    private:
        const MainForm& m_main;
    } watch(window);
    Link("LblAlertsLink").installEventFilter(&watch);
    Desk::Click(Link("LblAlertsLink"));
    EXPECT_EQ(watch.traces, (QStringList{QStringLiteral("FrmMain - LblAlertsLink_Click 0"),
                                         QStringLiteral("FrmMain - LblAlertsLink_Click 5")}));
}

TEST_F(MainLinksTest, alertsLink_failures_leaveTheLastStepAndEnd)
{
    const struct
    {
        const char* failsAt;
        const char* trace;
    } rows[] = {{"ShowAlerts", "FrmMain - LblAlertsLink_Click 2"},
                {"SelectTab 1", "FrmMain - LblAlertsLink_Click 3"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.failsAt);
        failsAt = QLatin1String(row.failsAt);
        platform.boxes.boxes.clear();
        platform.process.ended = 0;
        EXPECT_FALSE(links.ClickLblAlertsLink());
        EXPECT_EQ(window.TraceLoc, QLatin1String(row.trace));
        EXPECT_EQ(platform.boxes.boxes, std::vector{FatalBox(4)});
        EXPECT_EQ(platform.process.ended, 1);
        EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmMain"));
    }
}

TEST_F(MainLinksTest, prayerLink_dialogThatClosesItself_leavesTheAttentionToTheMainWindow)
{
    closesItself = true;
    Desk::Click(Link("LblAsrLink"));
    EXPECT_EQ(log, (QStringList{QStringLiteral("ShowAlerts"), QStringLiteral("SelectTab 1")}))
        << "the closed dialog must not be brought back for its tab";
    EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmMain")) << "or every alert would be dropped";
    EXPECT_TRUE(Link("LblAsrLink").isEnabled());
    EXPECT_TRUE(Link("LblAlertsLink").isEnabled());
}

TEST_F(MainLinksTest, locationLink_disablesTheWindowAndOpensTheList)
{
    Desk::Click(Link("LblLocLink"));
    EXPECT_EQ(log, QStringList{QStringLiteral("ShowLocation")});
    EXPECT_TRUE(disabledMeanwhile.contains(QStringLiteral("LblLocLink")));
    EXPECT_FALSE(wasWindowEnabled) << "out of reach before the list opens";
    EXPECT_FALSE(window.isEnabled());
    EXPECT_TRUE(Link("LblLocLink").isEnabledTo(&window));
    EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmLocation"));
    EXPECT_TRUE(window.TraceLoc.isEmpty()) << "only one link traces itself";
}

TEST_F(MainLinksTest, locationLink_calledAsARoutine_doesTheSame)
{
    links.ClickLblLocLink();
    EXPECT_EQ(log, QStringList{QStringLiteral("ShowLocation")});
    EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmLocation"));
}

TEST_F(MainLinksTest, locationLink_failure_ends)
{
    failsAt = QStringLiteral("ShowLocation");
    Desk::Click(Link("LblLocLink"));
    EXPECT_EQ(platform.boxes.boxes, std::vector{FatalBox(3)});
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmMain"));
}

TEST_F(MainLinksTest, webLinks_openTheirPages)
{
    Desk::Click(Link("LblGetMoreLink"));
    EXPECT_TRUE(platform.browser.opened.value(0).endsWith(QStringLiteral("sound/sound.pl?prod_string=P-77")))
        << platform.browser.opened.value(0).toStdString();
    EXPECT_TRUE(Link("LblGetMoreLink").isEnabled());
    Desk::Click(Link("LblHelp"));
    EXPECT_EQ(platform.browser.opened.value(1), ServiceRequests::HelpPage(window.Settings));
    EXPECT_TRUE(platform.browser.opened.value(1).endsWith(QStringLiteral("/dbeacon/help.html")));
    EXPECT_TRUE(Link("LblHelp").isEnabled());
    Desk::Click(*window.controls.Picture2);
    EXPECT_EQ(platform.browser.opened.value(2), ServiceRequests::HomePage(window.Settings));
    EXPECT_TRUE(window.controls.Picture2->isEnabled());
    EXPECT_EQ(platform.browser.opened.size(), 3);
    EXPECT_EQ(window.ActiveForm, QStringLiteral("FrmMain"));
}

TEST_F(MainLinksTest, webLinks_serviceOfTheSettings_opensItsPages)
{
    window.Settings.ServiceText = QStringLiteral("https://times.example.org/beacon/");
    Desk::Click(Link("LblGetMoreLink"));
    Desk::Click(Link("LblHelp"));
    Desk::Click(*window.controls.Picture2);
    const QString base = QStringLiteral("https://times.example.org/beacon");
    EXPECT_EQ(platform.browser.opened,
              (QStringList{base + QStringLiteral("/cgi-bin/dbeacon/sound/sound.pl?prod_string=P-77"),
                           base + QStringLiteral("/dbeacon/help.html"), base}));
}

TEST_F(MainLinksTest, webLinks_takeNoClickWhileTheyOpen_theBannerDoes)
{
    QStringList disabled;
    platform.browser.whileOpening = [&] {
        disabled.clear();
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->testAttribute(Qt::WA_ForceDisabled) && widget != window.controls.LblStopLink) {
                disabled << widget->objectName();
            }
        }
    };
    for (const char* name : {"LblGetMoreLink", "LblHelp"}) {
        Desk::Click(Link(name));
        EXPECT_EQ(disabled, QStringList{QLatin1String(name)});
        EXPECT_TRUE(Link(name).isEnabled());
    }
    Desk::Click(*window.controls.Picture2);
    EXPECT_EQ(platform.browser.opened.size(), 3);
    EXPECT_EQ(disabled, QStringList());
}

TEST_F(MainLinksTest, doubleClick_opensOnePage)
{
    for (const char* const name : {"LblGetMoreLink", "LblHelp", "Picture2"}) {
        platform.browser.opened.clear();
        Desk::DoubleClick(*window.findChild<QWidget*>(QLatin1String(name)));
        EXPECT_EQ(platform.browser.opened.size(), 1) << name;
    }
}

TEST_F(MainLinksTest, soundFiles_withoutIdentifier_openAllTheSame)
{
    window.Settings.PID.clear();
    Desk::Click(Link("LblGetMoreLink"));
    EXPECT_TRUE(platform.browser.opened.value(0).endsWith(QStringLiteral("sound/sound.pl?prod_string=")));
}

TEST_F(MainLinksTest, banner_otherButtonOrReleaseElsewhere_opensNothing)
{
    Desk::Click(*window.controls.Picture2, Qt::RightButton);
    QWindow* const handle = window.windowHandle();
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, QPoint(300, 40));
    Desk::Settle();
    EXPECT_TRUE(platform.browser.opened.isEmpty());
}

TEST_F(MainLinksTest, captions_areTheFixedOnes)
{
    const struct
    {
        const char* name;
        const char* caption;
    } rows[] = {{"LblAlertsLink", "Alerts"},
                {"LblLocLink", "Locations"},
                {"LblStopLink", "Stop Playing"},
                {"LblGetMoreLink", "More Sound Files"},
                {"LblHelp", "Help"}};
    for (const auto& row : rows) {
        EXPECT_EQ(Link(row.name).text(), QLatin1String(row.caption));
    }
}

TEST_F(MainLinksTest, pointer_isAHandOverEachLink)
{
    window.controls.LblStopLink->setEnabled(true);
    const QList<LinkLabel*> all = window.findChildren<LinkLabel*>();
    ASSERT_EQ(all.size(), 11);
    for (const LinkLabel* link : all) {
        window.SetDefaultPointer();
        Desk::MoveTo(*link);
        EXPECT_EQ(Pointer(), Qt::PointingHandCursor) << link->objectName().toStdString();
    }
}

TEST_F(MainLinksTest, pointer_comesBackOnlyWhereAHandlerIs)
{
    MainControls& c = window.controls;
    const struct
    {
        const char* name;
        QWidget* place;
        QPoint point;
        Qt::CursorShape after;
    } rows[] = {
        {"window", &window, {3, 300}, Qt::ArrowCursor},
        {"FrmOptions", c.FrmOptions, {120, 4}, Qt::ArrowCursor},
        {"PrayerFrame", c.PrayerFrame, {8, 60}, Qt::ArrowCursor},
        {"Frame2", c.Frame2, {300, 4}, Qt::PointingHandCursor},
        {"Frame6", c.Frame6, {8, 60}, Qt::PointingHandCursor},
        {"Frame3", c.Frame3, {8, 60}, Qt::PointingHandCursor},
        {"Picture2", c.Picture2, {20, 20}, Qt::PointingHandCursor},
        {"LblLocation", c.LblLocation, {4, 4}, Qt::PointingHandCursor},
        {"Label3", c.Label3, {4, 4}, Qt::PointingHandCursor},
        {"LblVolume", c.LblVolume, {4, 4}, Qt::PointingHandCursor},
        {"LblFarjTime", c.PrayerColumns.front().time, {4, 4}, Qt::PointingHandCursor},
        {"LblHajri", c.LblHajri, {4, 4}, Qt::PointingHandCursor},
    };
    for (const auto& row : rows) {
        Desk::MoveTo(*c.LblAlertsLink);
        ASSERT_EQ(Pointer(), Qt::PointingHandCursor);
        Desk::MoveTo(*row.place, row.point);
        EXPECT_EQ(Pointer(), row.after) << row.name;
    }
}

TEST_F(MainLinksTest, pointer_overADisabledLink_isThatOfThePlaceBehind)
{
    LinkLabel& help = Link("LblHelp");
    help.setEnabled(false);
    Desk::MoveTo(Link("LblAlertsLink"));
    Desk::MoveTo(help);
    EXPECT_EQ(Pointer(), Qt::ArrowCursor) << "the options frame lies behind";
    Desk::MoveTo(Link("LblAlertsLink"));
    Desk::MoveTo(Link("LblStopLink"));
    EXPECT_EQ(Pointer(), Qt::ArrowCursor) << "the window lies behind";
}

TEST_F(MainLinksTest, disabledWindow_takesNeitherMoveNorClick)
{
    Desk::MoveTo(Link("LblAlertsLink"));
    window.setEnabled(false);
    Desk::MoveTo(*window.controls.FrmOptions, {120, 4});
    EXPECT_EQ(Pointer(), Qt::PointingHandCursor);
    Desk::Click(Link("LblAlertsLink"));
    Desk::Click(*window.controls.Picture2);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_TRUE(platform.browser.opened.isEmpty());
}

TEST_F(MainLinksTest, keyboard_pressesALinkAndStaysOnIt)
{
    LinkLabel& help = Link("LblHelp");
    help.setFocus(Qt::TabFocusReason);
    ASSERT_EQ(window.focusWidget(), &help);
    QTest::keyClick(&help, Qt::Key_Return);
    EXPECT_EQ(platform.browser.opened, QStringList{ServiceRequests::HelpPage(window.Settings)});
    EXPECT_EQ(window.focusWidget(), &help);
}

} // namespace
