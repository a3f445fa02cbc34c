// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/LocationsFixture.h"

namespace {

/// The place windows, used by keyboard alone.
class PlacesKeyboardTest : public LocationsFixture
{
protected:
    PlacesKeyboardTest()
    {
        Answer("getUsCanCity.pl", "<root><a city=\"Evanston\" atlas_id=\"US-9\"/></root>");
        Answer("getCityInfo.pl",
               "<root><Evanston city=\"Evanston\" state=\"Illinois\" longitude_final=\"-87.69\" "
               "latitude_final=\"42.04\" time_zone2=\"-6\"/></root>");
    }

    static void Press(const Form& window, const char* name, Qt::Key key = Qt::Key_Return)
    {
        auto& control = Find<QWidget>(window, name);
        ASSERT_TRUE(control.isVisible() && control.isEnabled()) << name;
        control.setFocus();
        QTest::keyClick(&control, key);
    }
    static QString Focused(const Form& window)
    {
        return window.focusWidget() == nullptr ? QString() : window.focusWidget()->objectName();
    }
    static void MakeActive(QWidget& window)
    {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
};

TEST_F(PlacesKeyboardTest, enterKeypadEnterAndSpace_pressEachButton)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        SCOPED_TRACE(key);
        WriteSettings();
        const FrmLocation& list = OpenList();
        Press(list, "CmdDel", key);
        ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Chicago, Illinois"))});
        Press(list, "LstLocations", Qt::Key_Down);
        Press(list, "CmdSet", key);
        EXPECT_EQ(Current(), u"Makkah");
        ExpectBackInMain();

        FrmNewLoc& window = OpenSearch();
        MakeActive(window);
        Type(window, "TxtZipCode", QStringLiteral("60201"));
        Press(window, "TxtZipCode");
        Press(window, "LstSearchResults", Qt::Key_Space);
        ASSERT_EQ(Results(window).ListIndex(), 0);
        Press(window, "CmdAdd", key);
        EXPECT_EQ(Lines(Places()).last(), u"Evanston, Illinois");
        ExpectBackInList();

        Press(OpenSearch(), "CmdCancel", key);
        ExpectBackInList();
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(PlacesKeyboardTest, enterElsewhere_pressesNoButton)
{
    const FrmLocation& window = OpenList();
    Press(window, "LstLocations");
    EXPECT_EQ(List(), &window);
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    ExpectBoxes({});
}

TEST_F(PlacesKeyboardTest, linkOfTheList_leavesTheFocusWhereItWas)
{
    const FrmLocation& list = OpenList();
    Press(list, "LblNewLocLink");
    ASSERT_NE(Search(), nullptr);
    Press(*Search(), "CmdCancel");
    EXPECT_EQ(Focused(list), u"LblNewLocLink");
    Find<QWidget>(list, "CmdDel").setFocus();
    ClickOn(list, "LblNewLocLink");
    Press(*Search(), "CmdCancel");
    EXPECT_EQ(Focused(list), u"CmdDel") << "by mouse";
    platform.http.reachable = false;
    Press(list, "LblNewLocLink");
    EXPECT_EQ(Focused(list), u"LblNewLocLink") << "also where the search never comes up";
}

TEST_F(PlacesKeyboardTest, afterAMessageOrAReply_theFocusIsWhereItWas)
{
    const FrmNewLoc& window = OpenSearch();
    for (const char* const control : {"LblGetLink", "LblGet2Link", "CmdAdd"}) {
        Press(window, control);
        EXPECT_EQ(platform.boxes.boxes.size(), 1U) << control;
        EXPECT_EQ(Focused(window), QLatin1String(control));
        platform.boxes.boxes.clear();
    }
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    Press(window, "LblGetLink");
    EXPECT_EQ(Focused(window), QStringLiteral("LblGetLink"));
    ExpectBoxes({});
}

TEST_F(PlacesKeyboardTest, focusMovedDuringTheSearch_staysThere)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    platform.http.whileWaiting = [&] { Find<QWidget>(window, "TxtCity").setFocus(); };
    Press(window, "LblGetLink");
    EXPECT_EQ(Focused(window), QStringLiteral("TxtCity"));
}

TEST_F(PlacesKeyboardTest, searchClosed_givesTheListTheFocus)
{
    FrmNewLoc& window = OpenSearch();
    QWidget other;
    MakeActive(other);
    window.close();
    ExpectBackInList();
    EXPECT_TRUE(QTest::qWaitForWindowActive(List()));
}

} // namespace
