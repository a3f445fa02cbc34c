// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindowFixture.h"
#include "forms/LinkLabel.h"
#include "locations/FrmLocation.h"

namespace {

/// The main window with the list of places itself.
class LocationListTest : public MainWindowFixture
{
protected:
    LocationListTest()
    {
        forms.Register(FrmLocation::kName, [this] { return std::make_unique<FrmLocation>(forms); });
    }

    [[nodiscard]] static LinkLabel& Link(const FrmMain& main)
    {
        return *main.findChild<LinkLabel*>(QStringLiteral("LblLocLink"));
    }
    [[nodiscard]] Form* OpenedList() const { return forms.Loaded(FrmLocation::kName); }
};

TEST_F(LocationListTest, wholeFile_listIsUpOverTheDisabledMainWindow)
{
    FrmMain& main = Start();
    Desk::Click(Link(main));
    ASSERT_NE(OpenedList(), nullptr);
    EXPECT_TRUE(OpenedList()->isVisible() && OpenedList()->isEnabled());
    EXPECT_FALSE(main.isEnabled());
    EXPECT_EQ(Link(main).foregroundRole(), QPalette::Link) << "grey is only what is disabled itself";
    EXPECT_EQ(main.Variables().ActiveForm, QStringLiteral("FrmLocation"));
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
}

TEST_F(LocationListTest, damagedFile_saysSoThenEndsTheProgram)
{
    // Unlike the settings dialog, which just doesn't stay: a list that can't be opened is fatal.
    FrmMain& main = Start();
    WriteSettings(QStringLiteral("<root><locations"));
    Desk::Click(Link(main));
    const std::vector<FakeMessageBoxes::Box> boxes{
        {QStringLiteral("There was a problem retrieving list of locations."), QStringLiteral("Dusk Beacon"),
         QStringLiteral("OK")},
        {QStringLiteral("An error has occured, The application will be terminated."),
         QStringLiteral("Error - 3"), QStringLiteral("OK")}};
    EXPECT_EQ(platform.boxes.boxes, boxes);
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_EQ(OpenedList(), nullptr);
}

TEST_F(LocationListTest, closedWithoutAChoice_noPlaceYet_showsWhatTheClockHoldsBeforeItsFirstDay)
{
    WriteSettings(
        SettingsText().replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"\"")));
    // The module's answers before a date is set.
    calculation.hijriDay = 0;
    calculation.hijriMonth = 0;
    calculation.hijriYear = 0;
    FrmMain& main = Start();
    const auto text = [&](const char* name) { return main.findChild<QLabel*>(QLatin1String(name))->text(); };
    ASSERT_EQ(text("LblFarjTime"), QString());
    Desk::Click(Link(main));
    ASSERT_NE(OpenedList(), nullptr);
    OpenedList()->close();
    Desk::Settle();
    EXPECT_EQ(text("LblLocation"), QStringLiteral(", "));
    EXPECT_EQ(text("LblTimeZ"), QStringLiteral("Time Zone: 0"));
    EXPECT_EQ(text("LblHajri"), QStringLiteral("0 , 0"));
    for (const char* name :
         {"LblFarjTime", "LblShuruqTime", "LblDuhrTime", "LblAsrTime", "LblMaghribTime", "LblIshaTime"}) {
        EXPECT_EQ(text(name), QStringLiteral("12:00 AM")) << name;
    }
    EXPECT_TRUE(calculation.calls.isEmpty()) << "no day has been computed";
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(LocationListTest, closed_givesTheFocusBackToTheControlThatHadIt)
{
    FrmMain& main = Start();
    auto* const help = main.findChild<LinkLabel*>(QStringLiteral("LblHelp"));
    ASSERT_NE(help, nullptr);
    help->setFocus();
    Desk::Click(Link(main));
    ASSERT_NE(OpenedList(), nullptr);
    EXPECT_EQ(main.focusWidget(), nullptr);
    OpenedList()->close();
    Desk::Settle();
    EXPECT_TRUE(main.isEnabled());
    EXPECT_EQ(main.focusWidget(), help);
}

} // namespace
