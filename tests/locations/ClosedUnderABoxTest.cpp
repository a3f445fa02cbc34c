// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/LocationsFixture.h"
#include "service/ServiceRequests.h"

namespace {

/// A window is closed while its own message box is open.
class ClosedUnderABoxTest : public LocationsFixture
{
protected:
    /// The window of that name is destroyed when the box is answered.
    void CloseUnderTheBox(const QString& name)
    {
        platform.boxes.whileOpen = [this, name] {
            forms.Unload(name);
            QCoreApplication::processEvents();
        };
    }
};

TEST_F(ClosedUnderABoxTest, refusedPlace_theOldKeyIsBackInTheFile)
{
    WriteChanged(QStringLiteral("latitude_final=\"21.42\""), QStringLiteral("latitude_final=\"\""));
    FrmLocation& window = OpenList();
    ClickRow(Find<ListBox>(window, "LstLocations"), 1);
    CloseUnderTheBox(FrmLocation::kName);
    ClickOn(window, "CmdSet");
    ExpectBoxes({Plain(QStringLiteral("Can not load setting for this area, location will not be changed."))});
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    EXPECT_EQ(main->Variables().Settings.CityName, QStringLiteral("Chicago"));
    ExpectBackInMain();
}

TEST_F(ClosedUnderABoxTest, refusedPlaceAndABrokenOldOne_theMessagesEnd)
{
    FrmLocation& window = OpenList();
    WriteChanged(QStringLiteral("useDLS=\"false\""), QStringLiteral("useDLS=\"maybe\""));
    platform.boxes.whileOpen = [&] {
        window.Unload();
        if (platform.boxes.boxes.size() == 3) {
            main->Unload();
        }
    };
    ClickOn(window, "CmdSet");
    EXPECT_EQ(platform.boxes.boxes.size(), 1U);
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    ExpectBackInMain();
}

TEST_F(ClosedUnderABoxTest, agreedDeletion_deletesNothing)
{
    FrmLocation& window = OpenList();
    const QByteArray before = ReadSettings();
    platform.boxes.answers = {true};
    CloseUnderTheBox(FrmLocation::kName);
    ClickOn(window, "CmdDel");
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Chicago, Illinois"))});
    EXPECT_EQ(ReadSettings(), before);
    ExpectBackInMain();
}

TEST_F(ClosedUnderABoxTest, emptyZipCode_asksForNothing)
{
    const FrmNewLoc& window = OpenSearch();
    CloseUnderTheBox(FrmNewLoc::kName);
    ClickOn(window, "LblGetLink");
    ExpectBoxes({Plain(QStringLiteral("You must enter a zipcode to search for."))});
    EXPECT_TRUE(platform.http.requests.isEmpty());
    ExpectBackInList();
}

TEST_F(ClosedUnderABoxTest, agreedLongList_isNotAskedFor)
{
    Answer("getNumMatchingCities.pl", "<root num_matches=\"51\" max_matches=\"50\"/>");
    const FrmNewLoc& window = OpenSearch();
    platform.boxes.answers = {true};
    CloseUnderTheBox(FrmNewLoc::kName);
    SearchCity(window);
    ExpectBoxes({Question(QStringLiteral("There are over 50 matches.\r\nWould you like to display all?"))});
    EXPECT_EQ(platform.http.requests,
              QStringList{ServiceRequests::GetNumMatchingCities(main->Variables().Settings,
                                                                QStringLiteral("EG"), QStringLiteral("Ca"))});
    ExpectBackInList();
}

} // namespace
