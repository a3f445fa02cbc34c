// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/ServiceRequests.h"

#include "fakes/FakePlatform.h"
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"
#include "service/ServiceAddresses.h"
#include "store/Configuration.h"

#include <gtest/gtest.h>

namespace {

const QString kBase = ServiceAddresses::Base(Configuration());

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
        {"requestProdID", RequestProdID(configuration, configuration.Dstr),
         QStringLiteral("requestProdID.pl?dist=dist 1"), "requestProdID.pl?dist=dist%201"},
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

TEST(ServiceRequests, everyRequestAndPage_areAtTheServiceOfTheSettings)
{
    const QString base = QStringLiteral("https://example.org/beacon");
    Configuration configuration = Settings(QStringLiteral("P-77"));
    configuration.ServiceText = base + u'/';
    for (const Row& row : Rows(configuration)) {
        EXPECT_EQ(row.request, base + QStringLiteral("/cgi-bin/dbeacon/") + row.text) << row.name;
    }
    EXPECT_TRUE(
        ServiceRequests::SoundFilesPage(configuration).startsWith(base + QStringLiteral("/cgi-bin/")));
    EXPECT_EQ(ServiceRequests::HelpPage(configuration), base + QStringLiteral("/dbeacon/help.html"));
    EXPECT_EQ(ServiceRequests::HomePage(configuration), base);
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

TEST(ServiceRequests, pages_haveTheirExactText)
{
    const Configuration configuration = Settings(QStringLiteral("P-77"));
    EXPECT_EQ(ServiceRequests::SoundFilesPage(configuration),
              kBase + QStringLiteral("/cgi-bin/dbeacon/sound/sound.pl?prod_string=P-77"));
    EXPECT_EQ(ServiceRequests::HelpPage(configuration), kBase + QStringLiteral("/dbeacon/help.html"));
    EXPECT_EQ(ServiceRequests::HomePage(configuration), kBase);
}

} // namespace
