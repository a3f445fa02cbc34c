// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/ServiceRequests.h"

#include "service/ServiceAddresses.h"
#include "store/Configuration.h"

#include <gtest/gtest.h>

namespace {

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

// Each request and its text behind the folder of the scripts.
std::vector<std::pair<QString, QString>> Requests(const Configuration& configuration)
{
    using namespace ServiceRequests;
    const QString installation = QStringLiteral("prod_string=") + configuration.PID;
    const QString dist = QStringLiteral("&dist_string=dist 1");
    return {
        {RequestProdID(configuration, configuration.Dstr), QStringLiteral("requestProdID.pl?dist=dist 1")},
        {Startup(configuration), QStringLiteral("startup.pl?") + installation +
                                     QStringLiteral("&city=S\u00e3o & Paulo&country=New York") + dist +
                                     QStringLiteral("&aid=US-1")},
        {GetAd(configuration), QStringLiteral("getAd.pl?dist_string=dist 1&") + installation +
                                   QStringLiteral("&aid=US-1&curr_v=1&curr_s=5")},
        {Version(configuration), QStringLiteral("version.pl?dist_string=dist 1&") + installation +
                                     QStringLiteral("&curr_v=1&curr_s=5")},
        {PrayerCall(configuration, 5, QStringLiteral("Quite"), QStringLiteral("0"), QStringLiteral("18:42")),
         QStringLiteral("prayerCall.pl?") + installation +
             QStringLiteral("&aid=US-1&pno=5&alert_type=Quite&ma=0") + dist +
             QStringLiteral("&time=18:42&aid=US-1")},
        {GetStates(configuration), QStringLiteral("getStates.pl?") + installation + dist},
        {GetUsCanCity(configuration, QStringLiteral("606#1 2")),
         QStringLiteral("getUsCanCity.pl?zipcode=606#1 2&") + installation + dist},
        {GetNumMatchingCities(configuration, QStringLiteral("IL"), QStringLiteral("a b&c+%41")),
         QStringLiteral("getNumMatchingCities.pl?state_id=IL&city_string=a b&c+%41&") + installation + dist},
        {GetMatchingCities(configuration, QStringLiteral("IL"), QStringLiteral("\u0645")),
         QStringLiteral("getMatchingCities.pl?") + installation +
             QStringLiteral("&state_id=IL&city_string=\u0645") + dist},
        {GetCityInfo(configuration, QStringLiteral("US-2")),
         QStringLiteral("getCityInfo.pl?") + installation + QStringLiteral("&aid=US-2") + dist},
        {ConfirmSignup(configuration, QStringLiteral("12[3]")),
         QStringLiteral("ma/confirmSignup.pl?") + installation + QStringLiteral("&vCode=12[3]") + dist},
        {SoundFilesPage(configuration), QStringLiteral("sound/sound.pl?") + installation},
    };
}

TEST(ServiceRequests, everyRequestAndPage_hasItsExactText)
{
    for (const QString& pid : {QStringLiteral("P-77"), QString()}) {
        for (const QString& service : {QString(), QStringLiteral("https://example.org/beacon/")}) {
            Configuration configuration = Settings(pid);
            configuration.ServiceText = service;
            const QString base = ServiceAddresses::Base(configuration);
            for (const auto& [request, text] : Requests(configuration)) {
                EXPECT_EQ(request, base + QStringLiteral("/cgi-bin/dbeacon/") + text);
            }
            EXPECT_EQ(ServiceRequests::HelpPage(configuration), base + QStringLiteral("/dbeacon/help.html"));
            EXPECT_EQ(ServiceRequests::HomePage(configuration), base);
        }
    }
}

} // namespace
