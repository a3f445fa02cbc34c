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

    Form& OpenList()
    {
        Desk::Click(Find<LinkLabel>("LblLocLink"));
        return *forms.Loaded(FrmLocation::kName);
    }
};

TEST_F(LocationListTest, closedWithoutAChoice_noPlaceYet_showsWhatTheClockHoldsBeforeItsFirstDay)
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

TEST_F(LocationListTest, closed_givesTheFocusBackToTheControlThatHadIt)
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
