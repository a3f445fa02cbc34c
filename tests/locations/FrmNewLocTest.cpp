// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmNewLoc.h"

#include "locations/LocationsFixture.h"
#include "service/ServiceAddresses.h"
#include "service/ServiceRequests.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>

namespace {

const QString kNoStates = QStringLiteral("Unable to retrieve state list.\r\nVerify internet connection.");

class FrmNewLocTest : public LocationsFixture
{
protected:
    FrmNewLocTest()
    {
        Answer("getUsCanCity.pl", "<root><a city=\"Evanston\" atlas_id=\"US-9\"/></root>");
        Answer("getNumMatchingCities.pl", "<root num_matches=\"2\" max_matches=\"50\"/>");
        Answer("getMatchingCities.pl", "<root><a city=\"Cairo\" atlas_id=\"EG-1\"/>"
                                       "<b city=\"Cairo\" atlas_id=\"EG-2\"/></root>");
    }
    static bool IsSearching(const Form& window)
    {
        const bool isShown = Find<QWidget>(window, "ProgressBar1").isVisible();
        EXPECT_EQ(Find<QWidget>(window, "LblStatus").isVisible(), isShown);
        EXPECT_EQ(Find<QWidget>(window, "LblGet2Link").isEnabled(), !isShown);
        return isShown;
    }
    FakeTimer& Timer1() const { return *platform.timers.all.back(); }
    /// The window with the results of an earlier search on display.
    FrmNewLoc& OpenWithEvanston()
    {
        FrmNewLoc& window = OpenSearch();
        SearchZip(window);
        EXPECT_EQ(Shown(Results(window)), u"Evanston");
        platform.http.requests.clear();
        return window;
    }
    QStringList CityRequests() const
    {
        return {ServiceRequests::GetNumMatchingCities(main->Variables().Settings, QStringLiteral("EG"),
                                                      QStringLiteral("Ca")),
                ServiceRequests::GetMatchingCities(main->Variables().Settings, QStringLiteral("EG"),
                                                   QStringLiteral("Ca"))};
    }
};

TEST_F(FrmNewLocTest, window_hasItsTexts)
{
    const FrmNewLoc& window = OpenSearch();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Dusk Beacon: New Location"));
    EXPECT_EQ(Find<QGroupBox>(window, "FrmSearch").title(), u"USA / Canada");
    EXPECT_EQ(Find<QGroupBox>(window, "Frame1").title(), u"Other Countries");
    EXPECT_EQ(Find<QLabel>(window, "Label2").text(), u"Enter Zip Code: ");
    EXPECT_EQ(Find<QLabel>(window, "LblGetLink").text(), u"Lookup");
    EXPECT_EQ(Find<QLabel>(window, "Label3").text(), u"Select Country/State:");
    EXPECT_EQ(Find<QLabel>(window, "Label4").text(), u"City Name (2 characters):");
    EXPECT_EQ(Find<QLabel>(window, "LblGet2Link").text(), u"Lookup");
    EXPECT_EQ(Find<QLabel>(window, "Label1").text(), u"City Search Results:");
    EXPECT_EQ(Find<QPushButton>(window, "CmdAdd").text(), u"Add");
    EXPECT_EQ(Find<QPushButton>(window, "CmdCancel").text(), u"Cancel");
    EXPECT_FALSE(IsSearching(window));
}

TEST_F(FrmNewLocTest, load_asksTheServiceOfTheSettingsOnceAndListsTheCountries_noneSelected)
{
    Configuration& settings = main->Variables().Settings;
    const std::pair<QString, QString> services[] = {
        {settings.ServiceText, settings.ProbeText},
        {QStringLiteral("https://times.example.org"), QStringLiteral("http://probe.example.org/")}};
    for (const auto& [service, probe] : services) {
        settings.ServiceText = service;
        settings.ProbeText = probe;
        platform.http.probes.clear();
        platform.http.requests.clear();
        ClickOn(OpenList(), "LblNewLocLink");
        EXPECT_EQ(platform.http.probes, QStringList{ServiceAddresses::Probe(settings)});
        EXPECT_EQ(platform.http.requests, QStringList{ServiceRequests::GetStates(settings)});
        EXPECT_TRUE(platform.http.requests.front().startsWith(service));
        const auto& countries = Find<QComboBox>(*Search(), "CombState");
        EXPECT_EQ(countries.count(), 2);
        EXPECT_EQ(countries.itemText(0), u"Illinois");
        EXPECT_EQ(countries.itemText(1), u"Egypt");
        EXPECT_EQ(countries.currentIndex(), -1);
        forms.Unload(FrmNewLoc::kName);
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(FrmNewLocTest, load_noNetwork_saysSoAndGivesTheListBack)
{
    platform.http.reachable = false;
    ClickOn(OpenList(), "LblNewLocLink");
    ExpectBoxes({Plain(QStringLiteral(
        "You must be connected to the Internet to add locations.  Please check your connection."))});
    EXPECT_TRUE(platform.http.requests.isEmpty());
    ExpectBackInList();
}

TEST_F(FrmNewLocTest, load_noCountries_saysSoAndGivesTheListBack)
{
    for (const char* const reply :
         {"refused", "", "<root/>", "<reply><a state=\"x\" state_id=\"1\"/></reply>",
          "<html><body><p>502</p></body></html>", "<root><a state=\"x\""}) {
        SCOPED_TRACE(reply);
        Answer("getStates.pl", reply);
        if (qstrcmp(reply, "refused") == 0) {
            Refuse("getStates.pl");
        }
        ClickOn(OpenList(), "LblNewLocLink");
        ExpectBoxes({Plain(kNoStates)});
        ExpectBackInList();
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(FrmNewLocTest, cancelAndClose_giveTheListBack)
{
    ClickOn(OpenSearch(), "CmdCancel");
    ExpectBackInList();
    ClickOn(*List(), "LblNewLocLink");
    Search()->close();
    ExpectBackInList();
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, pointer_isAHandOverTheLinks_plainOverTheFrames)
{
    FrmNewLoc& window = OpenSearch();
    for (const auto& [link, frame] :
         {std::pair{"LblGetLink", "FrmSearch"}, std::pair{"LblGet2Link", "Frame1"}}) {
        MoveOver(Find<QWidget>(window, link), QPoint(5, 5));
        EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor) << link;
        MoveOver(window, QPoint(3, 3));
        EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor) << "only the frames set it back";
        MoveOver(Find<QWidget>(window, frame), QPoint(4, 20));
        EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor) << frame;
    }
}

TEST_F(FrmNewLocTest, zip_linkOrEnterKey_listsTheCities_askingOnce)
{
    const FrmNewLoc& window = OpenSearch();
    const auto pressEnter = [&] { QTest::keyClick(&Find<QLineEdit>(window, "TxtZipCode"), Qt::Key_Return); };
    for (const bool byKey : {false, true}) {
        Results(window).clear();
        platform.http.requests.clear();
        Type(window, "TxtZipCode", QStringLiteral("60201"));
        platform.http.whileWaiting = [&] {
            EXPECT_FALSE(Find<QWidget>(window, "LblGetLink").isEnabled());
            EXPECT_FALSE(IsSearching(window)) << "no progress for this search";
            pressEnter();
        };
        byKey ? pressEnter() : ClickOn(window, "LblGetLink");
        EXPECT_EQ(platform.http.requests, QStringList{ServiceRequests::GetUsCanCity(
                                              main->Variables().Settings, QStringLiteral("60201"))});
        EXPECT_EQ(Shown(Results(window)), u"Evanston");
        EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
        ExpectBoxes({});
    }
}

TEST_F(FrmNewLocTest, zip_emptyBox_saysSoAndAsksAllTheSame)
{
    const FrmNewLoc& window = OpenSearch();
    platform.http.whileWaiting = [&] {
        EXPECT_EQ(platform.boxes.boxes.size(), 1U);
        EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
    };
    ClickOn(window, "LblGetLink");
    ExpectBoxes({Plain(QStringLiteral("You must enter a zipcode to search for."))});
    EXPECT_EQ(platform.http.requests,
              QStringList{ServiceRequests::GetUsCanCity(main->Variables().Settings, QString())});
    EXPECT_EQ(Shown(Results(window)), u"Evanston");
}

TEST_F(FrmNewLocTest, zip_failures_keepTheEarlierResults)
{
    const FrmNewLoc& window = OpenWithEvanston();
    Refuse("getUsCanCity.pl");
    ClickOn(window, "LblGetLink");
    ExpectBoxes({Plain(QStringLiteral("Failed to retrieve list"))});
    for (const char* const reply : {"<root/>", "<html><body><p>502</p></body></html>"}) {
        Answer("getUsCanCity.pl", reply);
        ClickOn(window, "LblGetLink");
        ExpectBoxes({Plain(QStringLiteral("No city found matching this Zip Code"))});
    }
    EXPECT_EQ(Shown(Results(window)), u"Evanston");
    EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
}

TEST_F(FrmNewLocTest, city_asksForTheCountThenForTheList)
{
    const FrmNewLoc& window = OpenSearch();
    SearchCity(window);
    EXPECT_EQ(platform.http.requests, CityRequests());
    EXPECT_EQ(Shown(Results(window)), u"Cairo|Cairo");
    EXPECT_FALSE(IsSearching(window));
    EXPECT_FALSE(Timer1().IsEnabled());
    ExpectBoxes({});
    SearchCity(window, QStringLiteral("New & Old"));
    EXPECT_TRUE(platform.http.requests.last().contains(QStringLiteral("city_string=New & Old&")));
}

TEST_F(FrmNewLocTest, city_progress_movesOncePerTickAndStopsAtItsEnd)
{
    const FrmNewLoc& window = OpenSearch();
    const auto& bar = Find<QProgressBar>(window, "ProgressBar1");
    platform.http.whileWaiting = [&] {
        EXPECT_TRUE(IsSearching(window));
        EXPECT_EQ(Find<QLabel>(window, "LblStatus").text(), u"Retrieving Information");
        EXPECT_EQ(bar.minimum(), 0);
        EXPECT_EQ(bar.maximum(), 100);
        EXPECT_EQ(Timer1().intervalMilliseconds, 1000);
        for (int second = 0; second < 150; ++second) {
            EXPECT_EQ(bar.value(), std::min(second, 100));
            Timer1().Fire();
        }
    };
    SearchCity(window);
    EXPECT_FALSE(IsSearching(window));
    platform.http.whileWaiting = [&] { EXPECT_EQ(bar.value(), 0); };
    ClickOn(window, "LblGet2Link");
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, city_enterKeyWithoutACountry_saysSo)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtCity", QStringLiteral("Ca"));
    platform.boxes.whileOpen = [&] { EXPECT_TRUE(IsSearching(window)); };
    QTest::keyClick(&Find<QLineEdit>(window, "TxtCity"), Qt::Key_Return);
    ExpectBoxes({Plain(QStringLiteral("You must first select a Country/Region."))});
    EXPECT_TRUE(platform.http.requests.isEmpty());
    EXPECT_FALSE(IsSearching(window));
}

TEST_F(FrmNewLocTest, city_fewerThanTwoCharacters_neverReachTheService)
{
    const FrmNewLoc& window = OpenSearch();
    for (const QString& text : {QString(), QStringLiteral("C")}) {
        SearchCity(window, text, 0);
        ExpectBoxes(
            {Plain(QStringLiteral("You must supply at least the first\r\n 2 characters of the city name."))});
        EXPECT_FALSE(IsSearching(window));
    }
    EXPECT_TRUE(platform.http.requests.isEmpty());
}

TEST_F(FrmNewLocTest, city_noMatches_saysSoAndKeepsTheEarlierResults)
{
    const FrmNewLoc& window = OpenWithEvanston();
    for (const auto* reply : {"<root num_matches=\"0\" max_matches=\"50\"/>", "<root num_matches=\"\"/>",
                              "<root/>", "<reply num_matches=\"7\"/>"}) {
        SCOPED_TRACE(reply);
        Answer("getNumMatchingCities.pl", reply);
        SearchCity(window);
        ExpectBoxes(
            {Plain(QStringLiteral("There are no matches for this search criteria.\r\nPlease try again."))});
        EXPECT_EQ(platform.http.requests, QStringList{CityRequests().first()});
        EXPECT_FALSE(IsSearching(window));
        EXPECT_EQ(Shown(Results(window)), u"Evanston");
        platform.http.requests.clear();
    }
}

TEST_F(FrmNewLocTest, city_question_comesOnlyAboveTheLimit)
{
    const struct
    {
        const char16_t* matches;
        const char16_t* limit;
        bool asks;
    } rows[] = {
        {u"49", u"50", false}, {u"50", u"50", false},     {u"51", u"50", true},
        {u"9", u"50", false},  {u"50.9", u"50.1", false}, {u" 51", u"50", true},
        {u"1", u"", true},     {u"many", u"50", false},   {u"5", u"few", true},
        {u"00", u"50", false}, {u"-5", u"50", false},     {u"99999999999999999999", u"50", true},
    };
    const FrmNewLoc& window = OpenSearch();
    for (const auto& row : rows) {
        const QString reply =
            QStringLiteral("<root num_matches=\"%1\" max_matches=\"%2\"/>").arg(row.matches, row.limit);
        SCOPED_TRACE(reply.toStdString());
        Answer("getNumMatchingCities.pl", reply.toUtf8());
        const Box question = Question(
            QStringLiteral("There are over %1 matches.\r\nWould you like to display all?").arg(row.limit));
        for (const bool answer : {true, false}) {
            platform.boxes.answers = {answer};
            platform.http.requests.clear();
            SearchCity(window);
            if (!row.asks) {
                ExpectBoxes({});
            } else if (answer) {
                ExpectBoxes({question});
            } else {
                ExpectBoxes({question, Plain(QStringLiteral("Please refine your search and try again."))});
            }
            EXPECT_EQ(platform.http.requests, CityRequests().mid(0, answer || !row.asks ? 2 : 1));
            EXPECT_FALSE(IsSearching(window));
        }
    }
}

TEST_F(FrmNewLocTest, city_failedCount_goesOnToTheListSilently)
{
    Refuse("getNumMatchingCities.pl");
    const FrmNewLoc& window = OpenSearch();
    SearchCity(window);
    EXPECT_EQ(platform.http.requests, CityRequests());
    EXPECT_EQ(Results(window).count(), 2);
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, city_listReply_failureLeavesTheEarlierResults_elseTheyAreReplaced)
{
    const std::pair<const char*, const char16_t*> rows[] = {
        {"", u"Evanston"},
        {"<root/>", u""},
        // Of two children of one name the first is read.
        {"<root><a city=\"Cairo\" atlas_id=\"1\"/><a city=\"Suez\" atlas_id=\"2\"/></root>", u"Cairo|Cairo"},
    };
    for (const auto& [reply, shown] : rows) {
        const FrmNewLoc& window = OpenWithEvanston();
        Answer("getMatchingCities.pl", reply);
        SearchCity(window);
        EXPECT_EQ(Shown(Results(window)), shown);
        EXPECT_FALSE(IsSearching(window));
        ExpectBoxes({});
        forms.Unload(FrmNewLoc::kName);
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(FrmNewLocTest, bothSearches_runAtOnce)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    platform.http.whileWaiting = [&] { ClickOn(window, "LblGetLink"); };
    SearchCity(window);
    EXPECT_EQ(platform.http.requests.size(), 3);
    EXPECT_EQ(Results(window).count(), 2) << "the one that ended last";
    EXPECT_FALSE(IsSearching(window));
    EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
}

TEST_F(FrmNewLocTest, closedDuringAnyWait_stopsQuietly)
{
    const struct
    {
        const char* link;
        int requests;
    } rows[] = {{"LblGetLink", 1}, {"LblGet2Link", 1}, {"LblGet2Link", 2}};
    for (const auto& [link, requests] : rows) {
        SCOPED_TRACE(std::string(link) + ' ' + std::to_string(requests));
        FrmNewLoc& window = OpenSearch();
        Find<QComboBox>(window, "CombState").setCurrentIndex(1);
        Type(window, "TxtZipCode", QStringLiteral("60201"));
        Type(window, "TxtCity", QStringLiteral("Ca"));
        const auto close = [&] {
            window.close();
            // An unloaded window must outlive the handler that still runs in it.
            QCoreApplication::processEvents();
        };
        platform.http.whileWaiting = close;
        if (requests == 2) {
            platform.http.whileWaiting = [&] { platform.http.whileWaiting = close; };
        }
        ClickOn(window, link);
        EXPECT_EQ(platform.http.requests.size(), requests);
        ExpectBoxes({});
        ExpectBackInList();
        forms.Unload(FrmLocation::kName);
        QCoreApplication::processEvents();
    }
}

TEST_F(FrmNewLocTest, reopenedDuringAWait_theOldSearchLeavesTheNewWindowAlone)
{
    FrmNewLoc& old = OpenSearch();
    platform.http.whileWaiting = [&] {
        old.close();
        ClickOn(*List(), "LblNewLocLink");
    };
    SearchZip(old);
    ASSERT_NE(Search(), nullptr);
    EXPECT_EQ(Results(*Search()).count(), 0);
    EXPECT_EQ(main->Variables().ActiveForm, u"FrmNewLoc");
    ExpectBoxes({});
}

} // namespace
