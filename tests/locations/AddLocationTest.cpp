// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/AddLocationFixture.h"
#include "service/ServiceRequests.h"

#include <QFocusEvent>

namespace {

const QString kAdded = QStringLiteral("This location has already been added to location list.");

using AddLocationTest = AddLocationFixture;

TEST_F(AddLocationTest, add_nothingSelected_saysSoAndSendsNothing_alsoWhereTheListTookTheFocus)
{
    const FrmNewLoc& window = OpenResults();
    for (const bool hasFocus : {false, true}) {
        if (hasFocus) {
            QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
            QCoreApplication::sendEvent(&Results(window), &focus);
            ASSERT_EQ(Results(window).currentRow(), 0) << "current, not selected";
        }
        ClickOn(window, "CmdAdd");
        ExpectBoxes({Plain(QStringLiteral("You must first select a city to add."))});
        EXPECT_TRUE(platform.http.requests.isEmpty());
        ExpectStillOpen(window);
    }
}

TEST_F(AddLocationTest, addOrDoubleClick_appendsTheElementUnchangedToThePlaces)
{
    for (const bool byDoubleClick : {false, true}) {
        WriteSettings();
        const FrmNewLoc& window = OpenResults();
        platform.http.whileWaiting = [&] {
            EXPECT_FALSE(Find<QWidget>(window, "CmdAdd").isEnabled());
            DoubleClick(Results(window), 0); // sends no second request
        };
        if (byDoubleClick) {
            DoubleClick(Results(window), 1);
        } else {
            AddRow(window, 1);
        }
        EXPECT_EQ(platform.http.requests, QStringList{ServiceRequests::GetCityInfo(main->Variables().Settings,
                                                                                   QStringLiteral("EG-2"))})
            << "the identifier of the row, not of the name";
        EXPECT_EQ(Shown(Places()), u"Chicago, Illinois|Makkah, Saudi Arabia|Cairo, Egypt");
        EXPECT_EQ(Places().ListIndex(), 0) << "still the current place";
        EXPECT_EQ(Current(), u"Chicago");
        EXPECT_TRUE(ReadSettings().contains(QByteArray(kCairoReply).mid(6).chopped(9)))
            << ReadSettings().constData();
        EXPECT_FALSE(main->calls.contains(QStringLiteral("UpdateEverything")));
        ExpectBackInList();
        ExpectBoxes({});
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(AddLocationTest, add_thenSet_makesItCurrent)
{
    AddRow(OpenResults(), 0);
    ClickRow(Places(), 2);
    ClickOn(*List(), "CmdSet");
    EXPECT_EQ(main->Variables().Settings.CityName, QStringLiteral("Cairo"));
    EXPECT_DOUBLE_EQ(main->Variables().Settings.LatitudeFinal, 30.05);
    ExpectBackInMain();
}

TEST_F(AddLocationTest, add_storedName_saysSoAndStaysOpen)
{
    // Another place of the same name: only the name is compared.
    Info(Reply(Place("Makkah")));
    const QByteArray before = ReadSettings();
    const FrmNewLoc& window = OpenResults();
    AddRow(window, 0);
    ExpectBoxes({Plain(kAdded)});
    EXPECT_EQ(ReadSettings(), before);
    ExpectStillOpen(window);
    // Names are case-sensitive.
    Info(Reply(Place("makkah")));
    AddRow(window, 0);
    EXPECT_EQ(Places().count(), 3);
    ExpectBoxes({});
}

TEST_F(AddLocationTest, add_failedRequest_saysSoAndStaysOpen)
{
    const FrmNewLoc& window = OpenResults();
    for (const auto* reply : {"", "<root><Cairo", "Service Unavailable", "refused"}) {
        Info(reply);
        if (qstrcmp(reply, "refused") == 0) {
            Refuse("getCityInfo.pl");
        }
        AddRow(window, 0);
        ExpectBoxes({Plain(kNoCityInfo)});
        ExpectStillOpen(window);
    }
}

TEST_F(AddLocationTest, add_replyWithoutAPlace_closesWithNothingNew)
{
    for (const auto* reply : {"<root/>", "<other><Cairo city=\"Cairo\"/></other>"}) {
        Info(reply);
        AddRow(OpenResults(), 0);
        EXPECT_EQ(Places().count(), 2) << reply;
        ExpectBackInList();
        ExpectBoxes({});
        forms.Unload(FrmLocation::kName);
    }
}

// No message tells whether the place was stored; the list shows it.
TEST_F(AddLocationTest, add_fileWithoutLocations_closesAsAfterASuccessWithAnEmptyList)
{
    const FrmNewLoc& window = OpenResults();
    const QString bare = QStringLiteral("<root><app/></root>");
    WriteSettings(bare);
    AddRow(window, 0);
    ExpectBoxes({});
    ExpectBackInList();
    EXPECT_EQ(Places().count(), 0);
    SimpleXML settings(interfaces);
    ASSERT_TRUE(settings.Load(kSettingsFile));
    EXPECT_FALSE(settings.XML().contains(QStringLiteral("Cairo")));
}

TEST_F(AddLocationTest, add_replyWithThreePlaces_storesEverySecond)
{
    Info(Reply(Place("A") + Place("B") + Place("C")));
    AddRow(OpenResults(), 0);
    EXPECT_EQ(Lines(Places()).mid(2).join(u'|'), u"A, s|C, s");
}

TEST_F(AddLocationTest, add_duplicateAfterANewPlace_keepsTheNewPlace)
{
    // The first place is moved out of the reply, so that the loop continues with the third.
    Info(Reply(Place("A") + Place("B") + Place("Makkah")));
    const FrmNewLoc& window = OpenResults();
    AddRow(window, 0);
    ExpectBoxes({Plain(kAdded)});
    ExpectStillOpen(window);
    EXPECT_EQ(Setting(QStringLiteral("city"), QStringLiteral("//root//locations//A")), QStringLiteral("A"));
}

TEST_F(AddLocationTest, add_fileThatCanNotBeWritten_losesThePlaceQuietly)
{
    const FrmNewLoc& window = OpenResults();
    files.isLocked = true;
    AddRow(window, 0);
    EXPECT_EQ(Places().count(), 2);
    ExpectBackInList();
    ExpectBoxes({});
}

TEST_F(AddLocationTest, add_damagedFile_staysAsItIs_bothWindowsClose)
{
    const FrmNewLoc& window = OpenResults();
    WriteSettings(QStringLiteral("<root><app"));
    AddRow(window, 0);
    ExpectBoxes({Plain(QStringLiteral("There was a problem retrieving list of locations."))});
    EXPECT_EQ(ReadSettings(), QByteArray("<root><app"));
    ExpectBackInMain();
}

TEST_F(AddLocationTest, closedDuringTheRequest_addsNothing)
{
    FrmNewLoc& window = OpenResults();
    const QByteArray before = ReadSettings();
    platform.http.whileWaiting = [&] { window.close(); };
    AddRow(window, 0);
    EXPECT_EQ(ReadSettings(), before);
    ExpectBackInList();
    ExpectBoxes({});
}

TEST_F(AddLocationTest, add_listGone_storesAndGoesBackToTheMainWindow)
{
    const FrmNewLoc& window = OpenResults();
    platform.http.whileWaiting = [&] { forms.Unload(FrmLocation::kName); };
    AddRow(window, 0);
    EXPECT_EQ(Setting(QStringLiteral("city"), QStringLiteral("//root//locations//Cairo")),
              QStringLiteral("Cairo"));
    ExpectBackInMain();
}

TEST_F(AddLocationTest, oddPlace_isListedSetAndDeletedAgain)
{
    const std::pair<QString, QString> places[] = {
        {QStringLiteral("القاهرة"), QStringLiteral("القاهرة")},
        {QStringLiteral("São_Paulo"), QStringLiteral("São Paulo")},
        {QStringLiteral("_1.a-b"), QStringLiteral("x")},
        // "text" is a node test in XPath.
        {QStringLiteral("text"), QStringLiteral("div")},
        {QStringLiteral("Q"), QStringLiteral("\"O'Fallon\" & <b>Sons</b>")},
        {QStringLiteral("L"), QString(10000, u'w')},
        {QStringLiteral("E"), QString()}};
    for (const auto& [key, city] : places) {
        SCOPED_TRACE(key.toStdString());
        Info(QStringLiteral("<root><%1 city=\"%2\" state=\"s\" longitude_final=\"1\" latitude_final=\"2\" "
                            "time_zone2=\"3\"/></root>")
                 .arg(key, city.toHtmlEscaped())
                 .toUtf8());
        AddRow(OpenResults(), 0);
        EXPECT_EQ(Places().List(2), city + QStringLiteral(", s"));
        ClickRow(Places(), 2);
        ClickOn(*List(), "CmdSet");
        EXPECT_EQ(Current(), key);
        EXPECT_EQ(main->Variables().Settings.CityName, city);
        const FrmLocation& again = OpenList();
        EXPECT_EQ(Places().ListIndex(), 2);
        platform.boxes.answers = {true};
        ClickOn(again, "CmdDel");
        EXPECT_EQ(Places().count(), 2);
        EXPECT_EQ(Current(), u"Chicago");
        platform.boxes.boxes.clear();
        forms.Unload(FrmLocation::kName);
    }
}

} // namespace
