// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/ServiceRequests.h"

#include "fakes/FakePlatform.h"
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"
#include "store/Configuration.h"

#include <QUrl>

#include <gtest/gtest.h>

namespace {

const QString kBase = ServiceRequests::BaseAddress(QStringLiteral(DUSKBEACON_SERVICE_URL));

Configuration Settings(const QString& pid)
{
    Configuration configuration;
    configuration.PID = pid;
    configuration.Dstr = QStringLiteral("dist 1");
    configuration.AtlasID = QStringLiteral("US-1");
    configuration.CityName = QStringLiteral("S\u00e3o & Paulo");
    configuration.StateName = QStringLiteral("New York");
    return configuration;
}

struct Row
{
    const char* name;
    QString request;
    QString text;
    QByteArray wire;
};

std::vector<Row> Rows(const Configuration& configuration)
{
    using namespace ServiceRequests;
    const QString pid = configuration.PID;
    const QByteArray wirePid = pid.toUtf8();
    return {
        {"requestProdID", RequestProdID(configuration.Dstr), QStringLiteral("requestProdID.pl?dist=dist 1"),
         "requestProdID.pl?dist=dist%201"},
        {"startup", Startup(configuration),
         QStringLiteral("startup.pl?prod_string=") + pid +
             QStringLiteral("&city=S\u00e3o & Paulo&country=New York&dist_string=dist 1&aid=US-1"),
         "startup.pl?prod_string=" + wirePid +
             "&city=S%C3%A3o%20&%20Paulo&country=New%20York&dist_string=dist%201&aid=US-1"},
        {"getAd", GetAd(configuration),
         QStringLiteral("getAd.pl?dist_string=dist 1&prod_string=") + pid +
             QStringLiteral("&aid=US-1&curr_v=1&curr_s=5"),
         "getAd.pl?dist_string=dist%201&prod_string=" + wirePid + "&aid=US-1&curr_v=1&curr_s=5"},
        {"version", Version(configuration),
         QStringLiteral("version.pl?dist_string=dist 1&prod_string=") + pid +
             QStringLiteral("&curr_v=1&curr_s=5"),
         "version.pl?dist_string=dist%201&prod_string=" + wirePid + "&curr_v=1&curr_s=5"},
        {"prayerCall",
         PrayerCall(configuration, 5, QStringLiteral("Quite"), QStringLiteral("0"), QStringLiteral("18:42")),
         QStringLiteral("prayerCall.pl?prod_string=") + pid +
             QStringLiteral("&aid=US-1&pno=5&alert_type=Quite&ma=0&dist_string=dist 1&time=18:42&aid=US-1"),
         "prayerCall.pl?prod_string=" + wirePid +
             "&aid=US-1&pno=5&alert_type=Quite&ma=0&dist_string=dist%201&time=18:42&aid=US-1"},
        {"getStates", GetStates(configuration),
         QStringLiteral("getStates.pl?prod_string=") + pid + QStringLiteral("&dist_string=dist 1"),
         "getStates.pl?prod_string=" + wirePid + "&dist_string=dist%201"},
        {"getUsCanCity", GetUsCanCity(configuration, QStringLiteral("606#1 2")),
         QStringLiteral("getUsCanCity.pl?zipcode=606#1 2&prod_string=") + pid +
             QStringLiteral("&dist_string=dist 1"),
         "getUsCanCity.pl?zipcode=606#1%202&prod_string=" + wirePid + "&dist_string=dist%201"},
        {"getNumMatchingCities",
         GetNumMatchingCities(configuration, QStringLiteral("IL"), QStringLiteral("a b&c+%41")),
         QStringLiteral("getNumMatchingCities.pl?state_id=IL&city_string=a b&c+%41&prod_string=") + pid +
             QStringLiteral("&dist_string=dist 1"),
         "getNumMatchingCities.pl?state_id=IL&city_string=a%20b&c+%41&prod_string=" + wirePid +
             "&dist_string=dist%201"},
        {"getMatchingCities",
         GetMatchingCities(configuration, QStringLiteral("IL"), QStringLiteral("\u0645")),
         QStringLiteral("getMatchingCities.pl?prod_string=") + pid +
             QStringLiteral("&state_id=IL&city_string=\u0645&dist_string=dist 1"),
         "getMatchingCities.pl?prod_string=" + wirePid +
             "&state_id=IL&city_string=%D9%85&dist_string=dist%201"},
        {"getCityInfo", GetCityInfo(configuration, QStringLiteral("US-2")),
         QStringLiteral("getCityInfo.pl?prod_string=") + pid + QStringLiteral("&aid=US-2&dist_string=dist 1"),
         "getCityInfo.pl?prod_string=" + wirePid + "&aid=US-2&dist_string=dist%201"},
        {"confirmSignup", ConfirmSignup(configuration, QStringLiteral("12[3]")),
         QStringLiteral("ma/confirmSignup.pl?prod_string=") + pid +
             QStringLiteral("&vCode=12[3]&dist_string=dist 1"),
         "ma/confirmSignup.pl?prod_string=" + wirePid + "&vCode=12[3]&dist_string=dist%201"},
    };
}

TEST(ServiceRequests, everyRequest_hasItsExactText)
{
    for (const QString& pid : {QStringLiteral("P-77"), QString()}) {
        for (const Row& row : Rows(Settings(pid))) {
            EXPECT_EQ(row.request, kBase + QStringLiteral("/cgi-bin/dbeacon/") + row.text) << row.name;
        }
    }
}

TEST(ServiceRequests, everyRequest_reachesTheServiceInItsExactBytes)
{
    const LoopbackServer server(LoopbackServer::Answer("<root/>"));
    CurlHttp http;
    for (const QString& pid : {QStringLiteral("P-77"), QString()}) {
        for (const Row& row : Rows(Settings(pid))) {
            const QString url = server.Url(row.request.mid(kBase.size()));
            ASSERT_TRUE(http.Fetch(url, HttpLimits{})) << row.name;
            EXPECT_EQ(server.RequestLines().back(), "GET /cgi-bin/dbeacon/" + row.wire + " HTTP/1.1");
        }
    }
}

TEST(ServiceRequests, baseAddress_slashesAtItsEnd_areLeftOut)
{
    const std::pair<const char*, const char*> rows[] = {
        {"http://localhost:8750", "http://localhost:8750"},
        {"http://localhost:8750/", "http://localhost:8750"},
        {"https://example.org/times//", "https://example.org/times"},
        {"https://example.org/a//b", "https://example.org/a//b"},
        {"", ""},
    };
    for (const auto& [text, base] : rows) {
        EXPECT_EQ(ServiceRequests::BaseAddress(QLatin1String(text)), QLatin1String(base)) << text;
    }
}

TEST(ServiceRequests, pages_areThese)
{
    const Configuration configuration = Settings(QStringLiteral("P-77"));
    EXPECT_EQ(ServiceRequests::SoundFilesPage(configuration),
              kBase + QStringLiteral("/cgi-bin/dbeacon/sound/sound.pl?prod_string=P-77"));
    EXPECT_EQ(ServiceRequests::HelpPage(), kBase + QStringLiteral("/dbeacon/help.html"));
    EXPECT_EQ(ServiceRequests::HomePage(), kBase);
}

TEST(ServiceRequests, signupAddress_isAtTheHostOfTheService)
{
    const QString host = QUrl(kBase).host();
    EXPECT_FALSE(host.isEmpty());
    const QString address = ServiceRequests::SignupAddress();
    EXPECT_TRUE(address.endsWith(u'@' + host)) << address.toStdString();
    EXPECT_GT(address.size(), host.size() + 1) << "there is somebody to write to";
}

} // namespace
