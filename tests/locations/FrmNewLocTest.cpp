// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmNewLoc.h"

#include "locations/LocationsFixture.h"
#include "service/ServiceRequests.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>

namespace {

const QString kNoStates = QStringLiteral("Unable to retrieve state list.\r\nVerify internet connection.");
const QString kNoMatches =
    QStringLiteral("There are no matches for this search criteria.\r\nPlease try again.");
const QString kNoCountry = QStringLiteral("You must first select a Country/Region.");

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
    void Answer(const char* script, const char* reply)
    {
        platform.http.replies[QLatin1String(script)] = reply;
    }
    void Refuse(const char* script) { platform.http.replies.erase(QLatin1String(script)); }

    static void SelectCountry(const Form& window, int row)
    {
        Find<QComboBox>(window, "CombState").setCurrentIndex(row);
    }
    static QStringList Results(const Form& window)
    {
        return Lines(Find<ListBox>(window, "LstSearchResults"));
    }
    static bool IsSearching(const Form& window)
    {
        const bool isShown = Find<QWidget>(window, "ProgressBar1").isVisible();
        EXPECT_EQ(Find<QWidget>(window, "LblStatus").isVisible(), isShown);
        EXPECT_EQ(Find<QWidget>(window, "LblGet2Link").isEnabled(), !isShown);
        return isShown;
    }
    FakeTimer& Timer1() const { return *platform.timers.all.back(); }
    void SearchCairo(const Form& window)
    {
        SelectCountry(window, 1);
        Type(window, "TxtCity", QStringLiteral("Ca"));
        ClickOn(window, "LblGet2Link");
    }
    /// Puts the results of an earlier search on display.
    void SearchEvanston(const Form& window)
    {
        Type(window, "TxtZipCode", QStringLiteral("60201"));
        ClickOn(window, "LblGetLink");
        ASSERT_EQ(Results(window), QStringList{QStringLiteral("Evanston")});
        platform.http.requests.clear();
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
    EXPECT_EQ(Find<QGroupBox>(window, "FrmSearch").title(), QStringLiteral("USA / Canada"));
    EXPECT_EQ(Find<QGroupBox>(window, "Frame1").title(), QStringLiteral("Other Countries"));
    const std::vector<std::pair<const char*, QString>> labels{
        {"Label2", QStringLiteral("Enter Zip Code: ")},
        {"LblGetLink", QStringLiteral("Lookup")},
        {"Label3", QStringLiteral("Select Country/State:")},
        {"Label4", QStringLiteral("City Name (2 characters):")},
        {"LblGet2Link", QStringLiteral("Lookup")},
        {"Label1", QStringLiteral("City Search Results:")},
    };
    for (const auto& [name, text] : labels) {
        EXPECT_EQ(Find<QLabel>(window, name).text(), text) << name;
    }
    EXPECT_EQ(Find<QPushButton>(window, "CmdAdd").text(), QStringLiteral("Add"));
    EXPECT_EQ(Find<QPushButton>(window, "CmdCancel").text(), QStringLiteral("Cancel"));
    EXPECT_FALSE(IsSearching(window));
}

TEST_F(FrmNewLocTest, load_asksOnceAndListsTheCountries_noneSelected)
{
    ClickOn(OpenList(), "LblNewLocLink");
    EXPECT_EQ(platform.http.probes.size(), 1);
    EXPECT_EQ(platform.http.requests, QStringList{ServiceRequests::GetStates(main->Variables().Settings)});
    const auto& countries = Find<QComboBox>(*forms.Loaded(FrmNewLoc::kName), "CombState");
    EXPECT_EQ(countries.count(), 2);
    EXPECT_EQ(countries.itemText(0), QStringLiteral("Illinois"));
    EXPECT_EQ(countries.itemText(1), QStringLiteral("Egypt"));
    EXPECT_EQ(countries.currentIndex(), -1);
}

TEST_F(FrmNewLocTest, load_serviceOfTheSettings_isAsked)
{
    main->Variables().Settings.ServiceText = QStringLiteral("https://times.example.org");
    main->Variables().Settings.ProbeText = QStringLiteral("http://probe.example.org/");
    ClickOn(OpenList(), "LblNewLocLink");
    EXPECT_EQ(platform.http.probes, QStringList(main->Variables().Settings.ProbeText));
    ASSERT_EQ(platform.http.requests.size(), 1);
    EXPECT_TRUE(platform.http.requests.front().startsWith(main->Variables().Settings.ServiceText + u'/'));
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
    const std::vector<std::pair<const char*, const char*>> replies{
        {"refused", nullptr},
        {"empty", ""},
        {"root without children", "<root/>"},
        {"another root", "<reply><a state=\"x\" state_id=\"1\"/></reply>"},
        {"page", "<html><body><p>502</p></body></html>"},
        {"cut", "<root><a state=\"x\""},
    };
    for (const auto& [name, reply] : replies) {
        SCOPED_TRACE(name);
        reply == nullptr ? Refuse("getStates.pl") : Answer("getStates.pl", reply);
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
    ClickOn(*forms.Loaded(FrmLocation::kName), "LblNewLocLink");
    forms.Loaded(FrmNewLoc::kName)->close();
    ExpectBackInList();
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, close_listGone_leavesTheMainWindowInCharge)
{
    FrmNewLoc& window = OpenSearch();
    forms.Unload(FrmLocation::kName);
    main->Variables().ActiveForm = QStringLiteral("FrmNewLoc");
    window.close();
    ExpectBackInMain();
}

TEST_F(FrmNewLocTest, pointer_isAHandOverTheLinks_plainOverTheFrames)
{
    FrmNewLoc& window = OpenSearch();
    for (const auto& [link, frame] :
         {std::pair{"LblGetLink", "FrmSearch"}, std::pair{"LblGet2Link", "Frame1"}}) {
        MoveOver(Find<QWidget>(window, link), QPoint(5, 5));
        EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor) << link;
        MoveOver(Find<QWidget>(window, frame), QPoint(4, 20));
        EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor) << frame;
    }
}

TEST_F(FrmNewLocTest, pointer_overTheBareWindow_staysAHand)
{
    FrmNewLoc& window = OpenSearch();
    MoveOver(Find<QWidget>(window, "LblGet2Link"), QPoint(5, 5));
    MoveOver(window, QPoint(3, 3));
    EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor) << "only the frames set it back";
}

TEST_F(FrmNewLocTest, zip_listsTheCities)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    platform.http.whileWaiting = [&] {
        EXPECT_FALSE(Find<QWidget>(window, "LblGetLink").isEnabled());
        EXPECT_FALSE(IsSearching(window)) << "no progress for this search";
    };
    ClickOn(window, "LblGetLink");
    EXPECT_EQ(platform.http.requests, QStringList{ServiceRequests::GetUsCanCity(main->Variables().Settings,
                                                                                QStringLiteral("60201"))});
    EXPECT_EQ(Results(window), QStringList{QStringLiteral("Evanston")});
    EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, zip_enterKey_searches)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    QTest::keyClick(&Find<QLineEdit>(window, "TxtZipCode"), Qt::Key_Return);
    EXPECT_EQ(Results(window), QStringList{QStringLiteral("Evanston")});
}

TEST_F(FrmNewLocTest, zip_enterKeyDuringTheSearch_asksNoSecondTime)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    platform.http.whileWaiting = [&] {
        QTest::keyClick(&Find<QLineEdit>(window, "TxtZipCode"), Qt::Key_Return);
    };
    ClickOn(window, "LblGetLink");
    EXPECT_EQ(platform.http.requests.size(), 1);
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
    EXPECT_EQ(Results(window), QStringList{QStringLiteral("Evanston")});
}

TEST_F(FrmNewLocTest, zip_failures_keepTheEarlierResults)
{
    const FrmNewLoc& window = OpenSearch();
    SearchEvanston(window);
    Refuse("getUsCanCity.pl");
    ClickOn(window, "LblGetLink");
    ExpectBoxes({Plain(QStringLiteral("Failed to retrieve list"))});
    Answer("getUsCanCity.pl", "<root/>");
    ClickOn(window, "LblGetLink");
    ExpectBoxes({Plain(QStringLiteral("No city found matching this Zip Code"))});
    EXPECT_EQ(Results(window), QStringList{QStringLiteral("Evanston")});
    EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
}

TEST_F(FrmNewLocTest, city_asksForTheCountThenForTheList)
{
    const FrmNewLoc& window = OpenSearch();
    SearchCairo(window);
    EXPECT_EQ(platform.http.requests, CityRequests());
    EXPECT_EQ(Results(window), (QStringList{QStringLiteral("Cairo"), QStringLiteral("Cairo")}));
    EXPECT_FALSE(IsSearching(window));
    EXPECT_FALSE(Timer1().IsEnabled());
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, city_textWithABlankAndAnAmpersand_goesAsItStands)
{
    const FrmNewLoc& window = OpenSearch();
    SelectCountry(window, 1);
    Type(window, "TxtCity", QStringLiteral("New & Old"));
    ClickOn(window, "LblGet2Link");
    EXPECT_TRUE(platform.http.requests.first().contains(QStringLiteral("city_string=New & Old&")));
}

TEST_F(FrmNewLocTest, city_progress_movesOncePerTickAndStopsAtItsEnd)
{
    const FrmNewLoc& window = OpenSearch();
    platform.http.whileWaiting = [&] {
        EXPECT_TRUE(IsSearching(window));
        EXPECT_EQ(Find<QLabel>(window, "LblStatus").text(), QStringLiteral("Retrieving Information"));
        auto& bar = Find<QProgressBar>(window, "ProgressBar1");
        EXPECT_EQ(bar.minimum(), 0);
        EXPECT_EQ(bar.maximum(), 100);
        EXPECT_EQ(bar.value(), 0);
        EXPECT_EQ(Timer1().intervalMilliseconds, 1000);
        Timer1().Fire();
        Timer1().Fire();
        EXPECT_EQ(bar.value(), 2);
        for (int second = 0; second < 150; ++second) {
            Timer1().Fire();
        }
        EXPECT_EQ(bar.value(), 100);
    };
    SearchCairo(window);
    EXPECT_FALSE(IsSearching(window));
    platform.http.whileWaiting = [&] { EXPECT_EQ(Find<QProgressBar>(window, "ProgressBar1").value(), 0); };
    ClickOn(window, "LblGet2Link");
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, city_enterKeyWithoutACountry_saysSo)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtCity", QStringLiteral("Ca"));
    platform.boxes.whileOpen = [&] { EXPECT_TRUE(IsSearching(window)); };
    QTest::keyClick(&Find<QLineEdit>(window, "TxtCity"), Qt::Key_Return);
    ExpectBoxes({Plain(kNoCountry)});
    EXPECT_TRUE(platform.http.requests.isEmpty());
    EXPECT_FALSE(IsSearching(window));
}

TEST_F(FrmNewLocTest, city_fewerThanTwoCharacters_neverReachTheService)
{
    const FrmNewLoc& window = OpenSearch();
    SelectCountry(window, 0);
    for (const auto* text : {"", "C"}) {
        Type(window, "TxtCity", QLatin1String(text));
        ClickOn(window, "LblGet2Link");
        ExpectBoxes(
            {Plain(QStringLiteral("You must supply at least the first\r\n 2 characters of the city name."))});
        EXPECT_FALSE(IsSearching(window));
    }
    EXPECT_TRUE(platform.http.requests.isEmpty());
}

TEST_F(FrmNewLocTest, city_noMatches_saysSoAndKeepsTheEarlierResults)
{
    const FrmNewLoc& window = OpenSearch();
    SearchEvanston(window);
    for (const auto* reply : {"<root num_matches=\"0\" max_matches=\"50\"/>", "<root num_matches=\"\"/>",
                              "<root/>", "<reply num_matches=\"7\"/>"}) {
        SCOPED_TRACE(reply);
        Answer("getNumMatchingCities.pl", reply);
        SearchCairo(window);
        ExpectBoxes({Plain(kNoMatches)});
        EXPECT_EQ(platform.http.requests, QStringList{CityRequests().first()});
        EXPECT_FALSE(IsSearching(window));
        EXPECT_EQ(Results(window), QStringList{QStringLiteral("Evanston")});
        platform.http.requests.clear();
    }
}

struct CountRow
{
    const char* name;
    const char* matches;
    const char* limit;
    bool asks;
};

void PrintTo(const CountRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class CityCountTest : public FrmNewLocTest, public testing::WithParamInterface<CountRow>
{
};

TEST_P(CityCountTest, question_comesOnlyAboveTheLimit)
{
    const CountRow row = GetParam();
    Answer("getNumMatchingCities.pl",
           qPrintable(QStringLiteral("<root num_matches=\"%1\" max_matches=\"%2\"/>")
                          .arg(QLatin1String(row.matches), QLatin1String(row.limit))));
    const FrmNewLoc& window = OpenSearch();
    platform.boxes.answers = {true};
    SearchCairo(window);
    const Box question =
        Question(QStringLiteral("There are over %1 matches.\r\nWould you like to display all?")
                     .arg(QLatin1String(row.limit)));
    ExpectBoxes(row.asks ? std::vector<Box>{question} : std::vector<Box>{});
    EXPECT_EQ(platform.http.requests, CityRequests());
    EXPECT_FALSE(IsSearching(window));
}

INSTANTIATE_TEST_SUITE_P(
    Counts, CityCountTest,
    testing::Values(CountRow{"below", "49", "50", false}, CountRow{"equal", "50", "50", false},
                    CountRow{"above", "51", "50", true}, CountRow{"asNumbersNotAsText", "9", "50", false},
                    CountRow{"fractionLeftOut", "50.9", "50.1", false},
                    CountRow{"blankInFront", " 51", "50", true}, CountRow{"noLimit", "1", "", true},
                    CountRow{"countNotANumber", "many", "50", false},
                    CountRow{"limitNotANumber", "5", "few", true},
                    CountRow{"zeroWrittenLong", "00", "50", false}, CountRow{"negative", "-5", "50", false},
                    CountRow{"huge", "99999999999999999999", "50", true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(FrmNewLocTest, city_tooMany_noRefinesTheSearch)
{
    Answer("getNumMatchingCities.pl", "<root num_matches=\"812\" max_matches=\"50\"/>");
    const FrmNewLoc& window = OpenSearch();
    SearchCairo(window);
    ExpectBoxes({Question(QStringLiteral("There are over 50 matches.\r\nWould you like to display all?")),
                 Plain(QStringLiteral("Please refine your search and try again."))});
    EXPECT_EQ(platform.http.requests, QStringList{CityRequests().first()});
    EXPECT_FALSE(IsSearching(window));
}

TEST_F(FrmNewLocTest, city_failedCount_goesOnToTheListSilently)
{
    Refuse("getNumMatchingCities.pl");
    const FrmNewLoc& window = OpenSearch();
    SearchCairo(window);
    EXPECT_EQ(platform.http.requests, CityRequests());
    EXPECT_EQ(Results(window).size(), 2);
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, city_failedList_leavesTheEarlierResults)
{
    const FrmNewLoc& window = OpenSearch();
    SearchEvanston(window);
    Refuse("getMatchingCities.pl");
    SearchCairo(window);
    EXPECT_EQ(Results(window), QStringList{QStringLiteral("Evanston")});
    EXPECT_FALSE(IsSearching(window));
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, city_countWithoutChildren_clearsTheResults)
{
    const FrmNewLoc& window = OpenSearch();
    SearchEvanston(window);
    Answer("getNumMatchingCities.pl", "<root num_matches=\"5\" max_matches=\"50\"/>");
    Answer("getMatchingCities.pl", "<root/>");
    SearchCairo(window);
    EXPECT_EQ(Results(window), QStringList());
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, city_twoChildrenOfOneName_readAsTheFirst)
{
    Answer("getMatchingCities.pl",
           "<root><a city=\"Cairo\" atlas_id=\"1\"/><a city=\"Suez\" atlas_id=\"2\"/></root>");
    const FrmNewLoc& window = OpenSearch();
    SearchCairo(window);
    EXPECT_EQ(Results(window), (QStringList{QStringLiteral("Cairo"), QStringLiteral("Cairo")}));
}

TEST_F(FrmNewLocTest, bothSearches_runAtOnce)
{
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("60201"));
    platform.http.whileWaiting = [&] { ClickOn(window, "LblGetLink"); };
    SearchCairo(window);
    EXPECT_EQ(platform.http.requests.size(), 3);
    EXPECT_EQ(Results(window).size(), 2) << "the one that ended last";
    EXPECT_FALSE(IsSearching(window));
    EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
}

TEST_F(FrmNewLocTest, closedDuringAnyWait_stopsQuietly)
{
    const std::vector<std::pair<const char*, const char*>> searches{
        {"getUsCanCity.pl", "LblGetLink"}, {"getNumMatchingCities.pl", "LblGet2Link"}};
    for (const auto& [script, link] : searches) {
        SCOPED_TRACE(script);
        FrmNewLoc& window = OpenSearch();
        SelectCountry(window, 1);
        Type(window, "TxtZipCode", QStringLiteral("60201"));
        Type(window, "TxtCity", QStringLiteral("Ca"));
        platform.http.whileWaiting = [&] {
            window.close();
            // What is unloaded must outlive the handler that still runs in it.
            QCoreApplication::processEvents();
        };
        ClickOn(window, link);
        EXPECT_EQ(platform.http.requests.size(), 1);
        ExpectBoxes({});
        ExpectBackInList();
        forms.Unload(FrmLocation::kName);
        QCoreApplication::processEvents();
    }
}

TEST_F(FrmNewLocTest, closedDuringTheListRequest_stopsQuietly)
{
    FrmNewLoc& window = OpenSearch();
    platform.http.whileWaiting = [&] { platform.http.whileWaiting = [&] { window.close(); }; };
    SearchCairo(window);
    EXPECT_EQ(platform.http.requests.size(), 2);
    ExpectBackInList();
    ExpectBoxes({});
}

TEST_F(FrmNewLocTest, reopenedDuringAWait_theOldSearchLeavesTheNewWindowAlone)
{
    FrmNewLoc& old = OpenSearch();
    Type(old, "TxtZipCode", QStringLiteral("60201"));
    platform.http.whileWaiting = [&] {
        old.close();
        ClickOn(*forms.Loaded(FrmLocation::kName), "LblNewLocLink");
    };
    ClickOn(old, "LblGetLink");
    ASSERT_NE(forms.Loaded(FrmNewLoc::kName), nullptr);
    EXPECT_EQ(Results(*forms.Loaded(FrmNewLoc::kName)), QStringList());
    EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmNewLoc"));
    ExpectBoxes({});
}

} // namespace
