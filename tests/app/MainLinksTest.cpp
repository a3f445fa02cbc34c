// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainLinks.h"

#include "app/MainControls.h"
#include "engine/Prayers.h"
#include "fakes/Desk.h"
#include "fakes/FakeMain.h"
#include "fakes/FakePlatform.h"
#include "fakes/PlainWindow.h"
#include "fakes/SettingsFile.h"
#include "forms/Boxes.h"
#include "forms/LinkLabel.h"
#include "locations/FrmLocation.h"
#include "service/ServiceRequests.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"
#include "support/RuntimeError.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>

#include <gtest/gtest.h>

namespace {

/// A main window reduced to its controls.
class ControlsMain final : public FakeMain
{
public:
    explicit ControlsMain(Forms& forms)
        : FakeMain(forms)
        , controls(*this)
    {
    }

    MainControls controls;
};

class MainLinksTest : public testing::Test
{
protected:
    MainLinksTest()
    {
        WriteSettings();
        forms.Register(FrmAlerts::kName, [this] {
            Opens(FrmAlerts::kName);
            return std::make_unique<FrmAlerts>(forms, signup);
        });
        forms.Register(FrmLocation::kName, [this] {
            Opens(FrmLocation::kName);
            return std::make_unique<PlainWindow>(forms, FrmLocation::kName);
        });
        window.Variables().Settings.PID = QStringLiteral("P-77");
        window.show();
        // Move the mouse away from its last position: Qt ignores a move to the same position.
        Desk::MoveTo(window, {600, 420});
    }
    ~MainLinksTest() override { Desk::Settle(); }

    [[nodiscard]] LinkLabel& Link(const char* name)
    {
        auto* const link = window.findChild<LinkLabel*>(QLatin1String(name));
        EXPECT_NE(link, nullptr) << name;
        return *link;
    }
    [[nodiscard]] Qt::CursorShape Pointer() const { return window.cursor().shape(); }

    [[nodiscard]] FrmAlerts* Dialog() const
    {
        return static_cast<FrmAlerts*>(forms.Loaded(FrmAlerts::kName));
    }
    [[nodiscard]] QString DialogText(const char* label) const
    {
        const auto* const found = Dialog()->findChild<QLabel*>(QLatin1String(label));
        return found->isVisible() ? found->text() : QStringLiteral("(hidden)");
    }

    FakePlatform platform;
    Forms forms{platform.interfaces};
    MobileSignup signup{forms};
    ControlsMain window{forms};
    MainLinks links{window, window.controls};
    /// Neither dialog can be made.
    bool fails = false;
    QStringList opened;
    QStringList disabledMeanwhile;
    bool wasWindowEnabled = false;

private:
    void Opens(const QString& name)
    {
        opened << name;
        wasWindowEnabled = window.isEnabled();
        for (const auto* link : window.findChildren<LinkLabel*>()) {
            if (!link->isEnabledTo(&window)) {
                disabledMeanwhile << link->objectName();
            }
        }
        if (fails) {
            throw RuntimeError(ErrorNumber::kObjectNotSet, QStringLiteral("nothing there"));
        }
    }
};

TEST_F(MainLinksTest, prayerLink_opensTheDialogAtItsTab)
{
    for (const Prayer& prayer : kPrayers) {
        SCOPED_TRACE(prayer.name.data());
        disabledMeanwhile.clear();
        const LinkLabel& link = Link(prayer.link.data());
        EXPECT_EQ(link.text(), prayer.caption + u':');
        Desk::Click(link);
        ASSERT_NE(Dialog(), nullptr);
        EXPECT_TRUE(Dialog()->isVisible());
        EXPECT_EQ(DialogText("LblPrayerName"), prayer.caption);
        EXPECT_TRUE(Dialog()->findChild<CheckBox*>(QStringLiteral("ChkSilAlert"))->isChecked())
            << "the first page has loaded the settings";
        EXPECT_TRUE(disabledMeanwhile.contains(prayer.link));
        EXPECT_TRUE(link.isEnabled());
        EXPECT_TRUE(Link("LblAlertsLink").isEnabled());
        EXPECT_EQ(window.Variables().ActiveForm, u"FrmAlerts");
        EXPECT_EQ(window.Variables().TraceLoc, u"FrmMain - LblAlertsLink_Click 5");
        EXPECT_TRUE(window.isEnabled()) << "the settings dialog leaves the main window usable";
        forms.Unload(FrmAlerts::kName);
    }
}

TEST_F(MainLinksTest, alertsLink_opensTheFirstPage)
{
    Desk::Click(Link("LblAlertsLink"));
    ASSERT_NE(Dialog(), nullptr);
    EXPECT_TRUE(Dialog()->findChild<QWidget*>(QStringLiteral("FrmGeneral"))->isVisible());
    EXPECT_EQ(window.Variables().ActiveForm, QStringLiteral("FrmAlerts"));
    EXPECT_EQ(disabledMeanwhile.join(u' '), u"LblAlertsLink LblStopLink");
    EXPECT_TRUE(Link("LblAlertsLink").isEnabled());
}

TEST_F(MainLinksTest, alertsLink_tracesItsSteps)
{
    // The label is disabled and enabled again, the dialog shown, and its first page hidden to be filled.
    class Watch final : public QObject
    {
    public:
        explicit Watch(const MainVariables& variables)
            : m_variables(variables)
        {
            qApp->installEventFilter(this);
        }
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            const QString name = watched->objectName();
            if ((event->type() == QEvent::EnabledChange && name == u"LblAlertsLink") ||
                (event->type() == QEvent::Show && name == FrmAlerts::kName) ||
                (event->type() == QEvent::Hide && name == u"FrmGeneral")) {
                traces << m_variables.TraceLoc;
            }
            return false;
        }
        QStringList traces;

    private:
        const MainVariables& m_variables;
    } watch(window.Variables());
    Desk::Click(Link("LblAlertsLink"));
    QStringList expected;
    for (const int step : {0, 2, 3, 5}) {
        expected << QStringLiteral("FrmMain - LblAlertsLink_Click %1").arg(step);
    }
    EXPECT_EQ(watch.traces, expected);
}

TEST_F(MainLinksTest, link_dialogThatFailsToOpen_leavesItsStepAndEnds)
{
    fails = true;
    std::vector<std::pair<const char*, int>> rows{{"LblAlertsLink", 4}, {"LblLocLink", 3}};
    for (const Prayer& prayer : kPrayers) {
        rows.emplace_back(prayer.link.data(), 4);
    }
    for (const auto& [name, number] : rows) {
        SCOPED_TRACE(name);
        window.setEnabled(true);
        opened.clear();
        platform.boxes.boxes.clear();
        platform.process.ended = 0;
        Desk::Click(Link(name));
        EXPECT_EQ(opened.size(), 1) << "once, so that no tab is selected";
        EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Fatal(number)});
        EXPECT_EQ(platform.process.ended, 1);
        EXPECT_EQ(window.Variables().ActiveForm, u"FrmMain");
        EXPECT_EQ(window.Variables().TraceLoc, u"FrmMain - LblAlertsLink_Click 2")
            << "the list traces nothing";
    }
    EXPECT_FALSE(links.ClickLblAlertsLink());
}

TEST_F(MainLinksTest, prayerLink_dialogThatClosesItself_leavesTheAttentionToTheMainWindow)
{
    WriteSettings(SettingsText().replace(QStringLiteral(R"(useAdvWarn="false" advWarn="10")"),
                                         QStringLiteral(R"(useAdvWarn="true")")));
    Desk::Click(Link("LblAsrLink"));
    EXPECT_EQ(opened, QStringList{FrmAlerts::kName})
        << "the closed dialog must not be brought back for its tab";
    EXPECT_EQ(Dialog(), nullptr);
    EXPECT_EQ(window.Variables().ActiveForm, QStringLiteral("FrmMain")) << "or every alert would be dropped";
    EXPECT_TRUE(Link("LblAsrLink").isEnabled());
    EXPECT_TRUE(Link("LblAlertsLink").isEnabled());
}

TEST_F(MainLinksTest, locationLink_disablesTheWindowAndOpensTheList)
{
    Desk::Click(Link("LblLocLink"));
    EXPECT_TRUE(forms.Loaded(FrmLocation::kName)->isVisible());
    EXPECT_EQ(opened, QStringList{FrmLocation::kName});
    EXPECT_TRUE(disabledMeanwhile.contains(QStringLiteral("LblLocLink")));
    EXPECT_FALSE(wasWindowEnabled) << "out of reach before the list opens";
    EXPECT_FALSE(window.isEnabled());
    EXPECT_TRUE(Link("LblLocLink").isEnabledTo(&window));
    EXPECT_EQ(window.Variables().ActiveForm, QStringLiteral("FrmLocation"));
    EXPECT_TRUE(window.Variables().TraceLoc.isEmpty()) << "only one link traces itself";
    forms.Unload(FrmLocation::kName);
    links.ClickLblLocLink();
    EXPECT_EQ(opened.size(), 2) << "called as a routine it does the same";
}

TEST_F(MainLinksTest, webLinks_openTheirPagesAtTheServiceOfTheSettings_takingNoOtherClick)
{
    Configuration& settings = window.Variables().Settings;
    QStringList disabled;
    platform.browser.whileOpening = [&] {
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->testAttribute(Qt::WA_ForceDisabled) && widget != window.controls.LblStopLink) {
                disabled << widget->objectName();
            }
        }
    };
    for (const auto& [service, identifier] :
         {std::pair{"", "P-77"}, std::pair{"https://times.example.org/beacon/", ""}}) {
        platform.browser.opened.clear();
        disabled.clear();
        settings.ServiceText = QLatin1String(service);
        settings.PID = QLatin1String(identifier);
        Desk::Click(Link("LblGetMoreLink"));
        Desk::Click(Link("LblHelp"));
        Desk::Click(*window.controls.Picture2);
        EXPECT_EQ(disabled.join(u' '), u"LblGetMoreLink LblHelp") << "not the banner";
        EXPECT_TRUE(Link("LblGetMoreLink").isEnabled() && Link("LblHelp").isEnabled());
        ASSERT_EQ(platform.browser.opened.size(), 3);
        const QString base = ServiceRequests::HomePage(settings);
        EXPECT_EQ(platform.browser.opened.at(0),
                  base + QStringLiteral("/cgi-bin/dbeacon/sound/sound.pl?prod_string=") + settings.PID);
        EXPECT_EQ(platform.browser.opened.at(1), base + QStringLiteral("/dbeacon/help.html"));
        EXPECT_EQ(platform.browser.opened.at(2), base);
        EXPECT_TRUE(base.startsWith(settings.ServiceText.chopped(*service == 0 ? 0 : 1)));
        EXPECT_EQ(window.Variables().ActiveForm, u"FrmMain");
    }
}

TEST_F(MainLinksTest, doubleClick_opensOnePage)
{
    for (const char* const name : {"LblGetMoreLink", "LblHelp", "Picture2"}) {
        platform.browser.opened.clear();
        Desk::DoubleClick(*window.findChild<QWidget*>(QLatin1String(name)));
        EXPECT_EQ(platform.browser.opened.size(), 1) << name;
    }
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

TEST_F(MainLinksTest, disabledWindow_takesNeitherMoveNorClick)
{
    Desk::MoveTo(Link("LblAlertsLink"));
    window.setEnabled(false);
    Desk::MoveTo(*window.controls.FrmOptions, {120, 4});
    EXPECT_EQ(Pointer(), Qt::PointingHandCursor);
    Desk::Click(Link("LblAlertsLink"));
    Desk::Click(*window.controls.Picture2);
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_TRUE(platform.browser.opened.isEmpty());
}

TEST_F(MainLinksTest, keyboard_pressesALinkAndStaysOnIt)
{
    LinkLabel& help = Link("LblHelp");
    help.setFocus(Qt::TabFocusReason);
    ASSERT_EQ(window.focusWidget(), &help);
    QTest::keyClick(&help, Qt::Key_Return);
    EXPECT_EQ(platform.browser.opened, QStringList{ServiceRequests::HelpPage(window.Variables().Settings)});
    EXPECT_EQ(window.focusWidget(), &help);
}

} // namespace
