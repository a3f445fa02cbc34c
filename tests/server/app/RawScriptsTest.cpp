// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"
#include "server/http/RawClient.h"

namespace {

struct Row
{
    const char* name;
    std::string target; ///< after the folder of the scripts
    std::string answer;
};

/// A request in the form of the desktop program, the last one of its connection.
std::string RequestOfTheProgram(const std::string& target)
{
    return "GET " + target +
           " HTTP/1.1\r\nHost: 127.0.0.1:8750\r\nUser-Agent: DuskBeacon/1.0.5\r\nAccept-Encoding: gzip\r\n"
           "Connection: close\r\n\r\n";
}

std::string Answer(const std::string& status, const std::string& type, const std::string& body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type +
           "; charset=utf-8\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nCache-Control: no-store\r\nConnection: close\r\n\r\n" + body;
}

std::string Xml(const std::string& body)
{
    return Answer("200 OK", "text/xml", body);
}

const std::string kNoPlace = Answer("404 Not Found", "text/plain", "There is no such place.\n");
const std::string kNoScript = Answer("404 Not Found", "text/plain", "There is no such script.\n");
const std::string kNone = Xml("<root/>");
const std::string kMakkah =
    Xml(R"(<root><G104515 atlas_id="SA-G104515" city="Makkah" state="Saudi Arabia" longitude="39.83 E" )"
        R"(longitude_final="39.82563" latitude="21.43 N" latitude_final="21.42664" time_zone2="3" )"
        R"(utc_minutes="180" tz="Asia/Riyadh"/></root>)");

std::string Cities(const std::string& city, const std::string& atlasId)
{
    return Xml("<root><c1 city=\"" + city + "\" atlas_id=\"" + atlasId + "\"/></root>");
}

} // namespace

/// Targets in the form of the desktop program, which escapes only spaces, control characters and bytes from
/// 0x80 on.
class RawScriptsTest : public ServiceFixture
{
protected:
    RawScriptsTest()
    {
        SmallTables tables;
        tables.places =
            PlaceLine{"104515", "Makkah", "Mecca",   "21.42664",   "39.82563",
                      "SA",     "14",     "1323624", "Asia/Riyadh"}
                .Text() +
            PlaceLine{"1", "Königs Wusterhausen", "", "52.3", "13.6", "DE", "11", "34000", "Europe/Berlin"}
                .Text();
        tables.Import(folder);
    }

    void ExpectAnswers(const std::vector<Row>& rows)
    {
        ServiceProcess service(Path(), serve);
        const unsigned short port = service.AwaitPort();
        for (const Row& row : rows) {
            EXPECT_EQ(WithoutDates(Exchange(port, RequestOfTheProgram(kScripts + row.target))), row.answer)
                << row.name;
        }
    }
};

TEST_F(RawScriptsTest, typedValues_inAnyEncoding_findTheSamePlaces)
{
    const std::string german = "getMatchingCities.pl?prod_string=pc&state_id=DE&dist_string=d&city_string=";
    const std::string place = "getCityInfo.pl?prod_string=pc&dist_string=d&aid=";
    const std::string konigs = Cities("Königs Wusterhausen", "DE-G1");
    ExpectAnswers({
        {"letters", german + "wus", konigs},
        {"escaped spaces", german + "%20k%C3%B6nigs%20wus%20", konigs},
        {"UTF-8 as it stands", german + "königs", konigs},
        {"windows-1252, escaped", german + "k%F6nigs", konigs},
        {"windows-1252 as it stands", german + "k\xF6nigs", konigs},
        {"a plus", place + "SA-G104515+", kNoPlace},
        {"an escaped letter", place + "SA-%4710451%35", kMakkah},
        {"an escape, escaped", place + "SA-%254710451%2535", kNoPlace},
        {"an invalid escape", place + "SA-G104515%zz", kNoPlace},
        {"a cut escape", place + "SA-G104515%", kNoPlace},
        {"a number sign before the value", "getCityInfo.pl?prod_string=#&aid=SA-G104515", kMakkah},
        {"a number sign in the value", place + "SA-G104515#", kNoPlace},
        {"a number sign in the path", "getCityInfo.pl#?aid=SA-G104515", kNoScript},
        {"a typed ampersand", german + "wus&terhausen", konigs},
        {"an escaped ampersand", place + "SA-G104515%26", kNoPlace},
        {"markup", german + "\"<>'&", kNone},
    });
}

TEST_F(RawScriptsTest, parameters_areTheFirstOfTheirNameOrEmpty)
{
    const std::string none = Xml(R"(<root num_matches="0" max_matches="200"/>)");
    const std::string one = Xml(R"(<root num_matches="1" max_matches="200"/>)");
    ExpectAnswers({
        {"doubled and equal",
         "prayerCall.pl?prod_string=pc&aid=SA-G104515&pno=1&alert_type=Normal&ma=0&dist_string=&time=5:07&"
         "aid=SA-G104515",
         kNone},
        {"doubled, the first is known", "getCityInfo.pl?aid=SA-G104515&aid=X", kMakkah},
        {"doubled, the second is known", "getCityInfo.pl?aid=X&aid=SA-G104515", kNoPlace},
        {"doubled, the first is empty", "getCityInfo.pl?aid=&aid=SA-G104515", kNoPlace},
        {"in another order", "getNumMatchingCities.pl?city_string=ma&state_id=SA", one},
        {"unknown", "getNumMatchingCities.pl?x=1&state_id=SA&city_string=ma&&=&y", one},
        {"missing", "getNumMatchingCities.pl?state_id=SA", none},
        {"all missing", "getNumMatchingCities.pl", none},
        {"without a value", "getNumMatchingCities.pl?state_id&city_string", none},
        {"name in capitals", "getNumMatchingCities.pl?STATE_ID=SA&city_string=ma", none},
    });
}

TEST_F(RawScriptsTest, longTarget_isAnsweredUpToTheLimitOfAHeader)
{
    const std::string script = "getCityInfo.pl?aid=SA-G104515&prod_string=";
    const std::size_t rest = RequestOfTheProgram(kScripts + script).size();
    ExpectAnswers({
        {"8 KiB in all", script + std::string(8192 - rest, 'x'), kMakkah},
        {"a byte more", script + std::string(8193 - rest, 'x'),
         "HTTP/1.1 431 Request Header Fields Too Large\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"},
        {"8 KiB of the target", script + std::string(9000, 'x'),
         "HTTP/1.1 414 URI Too Long\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"},
    });
}
