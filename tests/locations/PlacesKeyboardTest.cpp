// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/LocationsFixture.h"

namespace {

/// The windows of the places in the hands of somebody without a mouse.
class PlacesKeyboardTest : public LocationsFixture
{
protected:
    PlacesKeyboardTest()
    {
        platform.http.replies[QStringLiteral("getUsCanCity.pl")] =
            "<root><a city=\"Evanston\" atlas_id=\"US-9\"/></root>";
        platform.http.replies[QStringLiteral("getCityInfo.pl")] =
            "<root><Evanston city=\"Evanston\" state=\"Illinois\" longitude_final=\"-87.69\" "
            "latitude_final=\"42.04\" time_zone2=\"-6\"/></root>";
    }

    /// The names of the controls that the Tab key reaches, from the first one on until it comes round.
    static QStringList TabOrder(const Form& window, const char* first)
    {
        QStringList names;
        Find<QWidget>(window, first).setFocus();
        while (window.focusWidget() != nullptr && !names.contains(window.focusWidget()->objectName())) {
            names << window.focusWidget()->objectName();
            QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        }
        return names;
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

TEST_F(PlacesKeyboardTest, list_tabGoesWithTheEye)
{
    EXPECT_EQ(TabOrder(OpenList(), "LstLocations"),
              QStringLiteral("LstLocations CmdSet CmdDel LblNewLocLink").split(u' '));
}

TEST_F(PlacesKeyboardTest, search_tabGoesWithTheEye)
{
    EXPECT_EQ(TabOrder(OpenSearch(), "TxtZipCode"),
              QStringLiteral(
                  "TxtZipCode LblGetLink CombState TxtCity LblGet2Link LstSearchResults CmdAdd CmdCancel")
                  .split(u' '));
}

TEST_F(PlacesKeyboardTest, boxesAndLists_haveAccessibleNames_linksTellApart)
{
    const FrmNewLoc& search = OpenSearch();
    const Form& list = *forms.Loaded(FrmLocation::kName);
    EXPECT_EQ(Find<ListBox>(list, "LstLocations").accessibleName(), QStringLiteral("Locations"));
    const std::vector<std::pair<const char*, QString>> names{
        {"TxtZipCode", QStringLiteral("Zip Code")},
        {"CombState", QStringLiteral("Country or State")},
        {"TxtCity", QStringLiteral("City Name")},
        {"LstSearchResults", QStringLiteral("City Search Results")},
        {"ProgressBar1", QStringLiteral("Search Progress")},
    };
    for (const auto& [name, text] : names) {
        EXPECT_EQ(Find<QWidget>(search, name).accessibleName(), text) << name;
    }
    EXPECT_EQ(Find<QWidget>(search, "LblGetLink").accessibleDescription(),
              QStringLiteral("Search by zip code"));
    EXPECT_EQ(Find<QWidget>(search, "LblGet2Link").accessibleDescription(),
              QStringLiteral("Search by country and city name"));
}

class PlacesKeyTest : public PlacesKeyboardTest, public testing::WithParamInterface<Qt::Key>
{
};

TEST_P(PlacesKeyTest, setCurrent_isPressed)
{
    const FrmLocation& window = OpenList();
    auto& list = Find<ListBox>(window, "LstLocations");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down);
    Press(window, "CmdSet", GetParam());
    EXPECT_EQ(Current(), QStringLiteral("Makkah"));
    ExpectBackInMain();
}

TEST_P(PlacesKeyTest, delete_isPressed)
{
    Press(OpenList(), "CmdDel", GetParam());
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Chicago, Illinois"))});
}

TEST_P(PlacesKeyTest, add_isPressed)
{
    FrmNewLoc& window = OpenSearch();
    MakeActive(window);
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    Press(window, "TxtZipCode");
    auto& results = Find<ListBox>(window, "LstSearchResults");
    results.setFocus();
    QTest::keyClick(&results, Qt::Key_Space);
    ASSERT_EQ(results.ListIndex(), 0);
    Press(window, "CmdAdd", GetParam());
    EXPECT_EQ(Lines(Find<ListBox>(*forms.Loaded(FrmLocation::kName), "LstLocations")).last(),
              QStringLiteral("Evanston, Illinois"));
    ExpectBackInList();
}

TEST_P(PlacesKeyTest, cancel_isPressed)
{
    Press(OpenSearch(), "CmdCancel", GetParam());
    ExpectBackInList();
}

INSTANTIATE_TEST_SUITE_P(Keys, PlacesKeyTest, testing::Values(Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space),
                         [](const auto& row) {
                             return row.param == Qt::Key_Return  ? std::string("enter")
                                    : row.param == Qt::Key_Enter ? std::string("keypadEnter")
                                                                 : std::string("space");
                         });

TEST_F(PlacesKeyboardTest, enterElsewhere_pressesNoButton)
{
    const FrmLocation& window = OpenList();
    Press(window, "LstLocations");
    EXPECT_EQ(forms.Loaded(FrmLocation::kName), &window);
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    ExpectBoxes({});
}

TEST_F(PlacesKeyboardTest, linkOfTheList_hasTheFocusBackOnceTheSearchIsClosed)
{
    const FrmLocation& list = OpenList();
    Press(list, "LblNewLocLink");
    ASSERT_NE(forms.Loaded(FrmNewLoc::kName), nullptr);
    Press(*forms.Loaded(FrmNewLoc::kName), "CmdCancel");
    EXPECT_EQ(Focused(list), QStringLiteral("LblNewLocLink"));
    // Also where the search never comes up.
    platform.http.reachable = false;
    Press(list, "LblNewLocLink");
    EXPECT_EQ(Focused(list), QStringLiteral("LblNewLocLink"));
}

TEST_F(PlacesKeyboardTest, linkOfTheListByMouse_leavesTheFocusWhereItWas)
{
    const FrmLocation& list = OpenList();
    Find<QWidget>(list, "CmdDel").setFocus();
    ClickOn(list, "LblNewLocLink");
    Press(*forms.Loaded(FrmNewLoc::kName), "CmdCancel");
    EXPECT_EQ(Focused(list), QStringLiteral("CmdDel"));
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

TEST_F(PlacesKeyboardTest, whoGoesElsewhereDuringTheSearch_staysThere)
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
    EXPECT_TRUE(QTest::qWaitForWindowActive(forms.Loaded(FrmLocation::kName)));
}

} // namespace
