// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/InstallationIdentifier.h"
#include "server/protocol/ScriptsFixture.h"

using namespace beacond;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

TEST_F(ScriptsTest, replies_areTheseDocuments)
{
    const struct
    {
        const char* script;
        const char* query;
        const char* body;
    } rows[] = {
        {"startup.pl", "prod_string=a&city=Makkah&country=Saudi Arabia&dist_string=&aid=SA-G104515",
         "<root/>"},
        {"startup.pl", "", "<root/>"},
        {"getAd.pl", "dist_string=&prod_string=&aid=&curr_v=1&curr_s=5",
         R"(<root ad_url="" wait_time="10"/>)"},
        {"version.pl", "dist_string=&prod_string=&curr_v=1&curr_s=5",
         R"(<root version_name="" version_sequence="" download_url=""/>)"},
        {"prayerCall.pl",
         "prod_string=a&aid=SA-G104515&pno=1&alert_type=Normal&ma=0&dist_string=&time=5:07&aid=SA-G104515",
         "<root/>"},
        {"prayerCall.pl", "", "<root/>"},
        {"getUsCanCity.pl", "zipcode=&prod_string=&dist_string=", "<root/>"},
        {"getNumMatchingCities.pl", "state_id=SA&city_string=ma&prod_string=&dist_string=",
         R"(<root num_matches="2" max_matches="200"/>)"},
        {"getNumMatchingCities.pl", "state_id=XX&city_string=ma",
         R"(<root num_matches="0" max_matches="200"/>)"},
        {"getNumMatchingCities.pl", "", R"(<root num_matches="0" max_matches="200"/>)"},
        {"getMatchingCities.pl", "prod_string=&state_id=SA&city_string=med&dist_string=",
         R"(<root><c1 city="Medina" atlas_id="SA-G109223"/></root>)"},
        {"getMatchingCities.pl", "state_id= sa &city_string= MED ",
         R"(<root><c1 city="Medina" atlas_id="SA-G109223"/></root>)"},
        {"getMatchingCities.pl", "state_id=SA&city_string=m%E9d",
         R"(<root><c1 city="Medina" atlas_id="SA-G109223"/></root>)"},
        {"getMatchingCities.pl", "state_id=SA&city_string=", "<root/>"},
        {"getMatchingCities.pl", "state_id=SA&city_string=\"<>'&", "<root/>"},
        {"getCityInfo.pl", "prod_string=&aid=SA-G104515&dist_string=",
         R"(<root><G104515 atlas_id="SA-G104515" city="Mecca" state="Saudi Arabia" longitude="39.83 E" )"
         R"(longitude_final="39.82563" latitude="21.43 N" latitude_final="21.42664" time_zone2="3" )"
         R"(utc_minutes="180" tz="Asia/Riyadh"/></root>)"},
        {"getCityInfo.pl", "aid=US-G1",
         R"(<root><G1 atlas_id="US-G1" city="Springfield" state="Illinois" longitude="89.64 W" )"
         R"(longitude_final="-89.64000" latitude="39.80 N" latitude_final="39.80000" time_zone2="-6" )"
         R"(utc_minutes="-360" tz="America/Chicago" elevation="180"/></root>)"},
    };
    for (const auto& row : rows) {
        const Response response = Ask(row.script, row.query);
        EXPECT_EQ(response.body, row.body) << row.script << '?' << row.query;
        EXPECT_EQ(response.status, 200U);
        EXPECT_EQ(response.contentType, "text/xml; charset=utf-8");
        ASSERT_EQ(response.headers.size(), 1U);
        EXPECT_EQ(response.headers[0].name, "Cache-Control");
        EXPECT_EQ(response.headers[0].value, "no-store");
    }
}

// The program ignores the status and reads any well-formed document as a reply.
TEST_F(ScriptsTest, failures_areNotXml)
{
    const struct
    {
        const char* script;
        const char* query;
        Method method;
        unsigned status;
    } rows[] = {
        {"getCityInfo.pl", "aid=SA-G9", Method::Get, 404},
        {"getCityInfo.pl", "", Method::Get, 404},
        {"getCityInfo.pl", "aid=US-G1+", Method::Get, 404}, // a plus is not a space
        {"getCityInfo.pl#", "aid=US-G1", Method::Get, 404},
        {"none.pl", "", Method::Get, 404},
        {"", "", Method::Get, 404},
        {"getStates.pl", "", Method::Post, 405},
        {"prayerCall.pl", "", Method::Other, 405},
    };
    for (const auto& row : rows) {
        const Response response = Ask(row.script, row.query, row.method);
        EXPECT_EQ(response.status, row.status) << row.script;
        EXPECT_EQ(response.contentType, "text/plain; charset=utf-8");
        EXPECT_THAT(response.body, Not(HasSubstr("<"))) << row.script;
    }
}

TEST_F(ScriptsTest, lettersLongerThanAnyName_findNothingQuickly)
{
    std::string letters = "ma";
    while (letters.size() < 8000) {
        letters += "\uFDFA";
    }
    EXPECT_EQ(Body("getNumMatchingCities.pl", "state_id=SA&city_string=" + letters),
              R"(<root num_matches="0" max_matches="200"/>)");
    EXPECT_EQ(Body("getMatchingCities.pl", "state_id=SA&city_string=" + letters), "<root/>");
}

TEST_F(ScriptsTest, moreThanAThousandMatches_areAllCountedAndListedUpToAThousand)
{
    SmallTables tables;
    for (int number = 1; number <= 1001; ++number) {
        const std::string id = std::to_string(number);
        tables.places += PlaceLine{id, "Newtown " + id}.Text();
    }
    const TemporaryFolder other;
    tables.Import(other);
    places.Set(Places::Open(other / "places.bin"));

    EXPECT_EQ(Body("getNumMatchingCities.pl", "state_id=US&city_string=newtown"),
              R"(<root num_matches="1001" max_matches="200"/>)");
    const std::string list = Body("getMatchingCities.pl", "state_id=US&city_string=newtown");
    EXPECT_THAT(list, HasSubstr("<c1000 "));
    EXPECT_THAT(list, Not(HasSubstr("<c1001 ")));
}

TEST_F(ScriptsTest, withoutPlaces_theScriptsThatNeedThemFail)
{
    places.Set(nullptr);
    for (const char* const script : {"getStates.pl", "getUsCanCity.pl", "getNumMatchingCities.pl",
                                     "getMatchingCities.pl", "getCityInfo.pl"}) {
        EXPECT_EQ(Ask(script, "state_id=SA&city_string=ma&aid=SA-G104515").status, 503U) << script;
    }
    EXPECT_EQ(Body("startup.pl", "aid=SA-G104515"), "<root/>");
}

TEST_F(ScriptsTest, requestProdID_isANewIdentifierOfToday)
{
    const std::string body = Body("requestProdID.pl", "dist=mosque");
    EXPECT_THAT(body, MatchesRegex("<root prod_string=\"[A-Za-z0-9_-]{32}\"/>"));
    EXPECT_NE(body, Body("requestProdID.pl", "dist=mosque"));
    EXPECT_EQ(Ask("requestProdID.pl", "", Method::Head).status, 200U);
    EXPECT_EQ(DayOfInstallationIdentifier(keys.identifier, body.substr(19, 32)), 20'833);
}

TEST_F(ScriptsTest, getStates_listsCountriesAndStatesWithPlaces)
{
    const std::string body = Body("getStates.pl");
    EXPECT_THAT(body, HasSubstr(R"(state="Saudi Arabia" state_id="SA")"));
    EXPECT_THAT(body, HasSubstr(R"(state="United States - Illinois" state_id="US-IL")"));
}

TEST_F(ScriptsTest, startup_isCountedByCountryAndConfiguredDistribution)
{
    Ask("startup.pl", "dist_string=mosque&aid=SA-G104515");
    Ask("startup.pl", "dist_string=another&aid=SA-G104515");
    Ask("startup.pl", "dist_string=&aid=SA-G9");

    EXPECT_THAT(starts.Drain(),
                ElementsAre(StartCount{20'833, "SA", "mosque", 1}, StartCount{20'833, "SA", "other", 1},
                            StartCount{20'833, "ZZ", "other", 1}));
}

TEST_F(ScriptsTest, getAd_isTheStripInBase64)
{
    announcements.Set(
        std::make_shared<const Announcements>(Announcements{{{1, "<b>Eid</b>", "", "SA", "", ""}}, {}}));
    EXPECT_EQ(Body("getAd.pl", "prod_string=&aid=SA-G104515"),
              R"(<root ad_url="PGI+RWlkPC9iPg==" wait_time="10"/>)");
    EXPECT_EQ(Body("getAd.pl", "prod_string=&aid=US-G1"), R"(<root ad_url="" wait_time="10"/>)");
}

TEST_F(ScriptsTest, version_offersTheNewestReleaseToOlderClients)
{
    announcements.Set(std::make_shared<const Announcements>(
        Announcements{{}, {{"1", "6", "https://example.org/?a=1&b=2"}}}));
    EXPECT_EQ(
        Body("version.pl", "curr_v=1&curr_s=5"),
        R"(<root version_name="1" version_sequence="6" download_url="https://example.org/?a=1&amp;b=2"/>)");
    EXPECT_EQ(Body("version.pl", "curr_v=1&curr_s=6"),
              R"(<root version_name="" version_sequence="" download_url=""/>)");
}
