// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/ServiceRequests.h"

#include "service/ServiceAddresses.h"
#include "store/Configuration.h"

namespace {

QString Script(const Configuration& configuration, const char16_t* name)
{
    return ServiceAddresses::Base(configuration) + QStringLiteral("/cgi-bin/dbeacon/") +
           QString::fromUtf16(name);
}

QString ProgramVersion()
{
    return QStringLiteral("&curr_v=1&curr_s=5");
}

} // namespace

namespace ServiceRequests {

QString RequestProdID(const Configuration& configuration, const QString& dist)
{
    return Script(configuration, u"requestProdID.pl?dist=") + dist;
}

QString Startup(const Configuration& configuration)
{
    return Script(configuration, u"startup.pl?prod_string=") + configuration.PID + QStringLiteral("&city=") +
           configuration.CityName + QStringLiteral("&country=") + configuration.StateName +
           QStringLiteral("&dist_string=") + configuration.Dstr + QStringLiteral("&aid=") +
           configuration.AtlasID;
}

QString GetAd(const Configuration& configuration)
{
    return Script(configuration, u"getAd.pl?dist_string=") + configuration.Dstr +
           QStringLiteral("&prod_string=") + configuration.PID + QStringLiteral("&aid=") +
           configuration.AtlasID + ProgramVersion();
}

QString Version(const Configuration& configuration)
{
    return Script(configuration, u"version.pl?dist_string=") + configuration.Dstr +
           QStringLiteral("&prod_string=") + configuration.PID + ProgramVersion();
}

QString PrayerCall(const Configuration& configuration, int pno, const QString& alertType, const QString& ma,
                   const QString& time)
{
    // Intended: aid is sent twice, second and last.
    return Script(configuration, u"prayerCall.pl?prod_string=") + configuration.PID +
           QStringLiteral("&aid=") + configuration.AtlasID + QStringLiteral("&pno=") + QString::number(pno) +
           QStringLiteral("&alert_type=") + alertType + QStringLiteral("&ma=") + ma +
           QStringLiteral("&dist_string=") + configuration.Dstr + QStringLiteral("&time=") + time +
           QStringLiteral("&aid=") + configuration.AtlasID;
}

QString GetStates(const Configuration& configuration)
{
    return Script(configuration, u"getStates.pl?prod_string=") + configuration.PID +
           QStringLiteral("&dist_string=") + configuration.Dstr;
}

QString GetUsCanCity(const Configuration& configuration, const QString& zipCode)
{
    return Script(configuration, u"getUsCanCity.pl?zipcode=") + zipCode + QStringLiteral("&prod_string=") +
           configuration.PID + QStringLiteral("&dist_string=") + configuration.Dstr;
}

QString GetNumMatchingCities(const Configuration& configuration, const QString& stateId, const QString& city)
{
    return Script(configuration, u"getNumMatchingCities.pl?state_id=") + stateId +
           QStringLiteral("&city_string=") + city + QStringLiteral("&prod_string=") + configuration.PID +
           QStringLiteral("&dist_string=") + configuration.Dstr;
}

QString GetMatchingCities(const Configuration& configuration, const QString& stateId, const QString& city)
{
    return Script(configuration, u"getMatchingCities.pl?prod_string=") + configuration.PID +
           QStringLiteral("&state_id=") + stateId + QStringLiteral("&city_string=") + city +
           QStringLiteral("&dist_string=") + configuration.Dstr;
}

QString GetCityInfo(const Configuration& configuration, const QString& atlasId)
{
    return Script(configuration, u"getCityInfo.pl?prod_string=") + configuration.PID +
           QStringLiteral("&aid=") + atlasId + QStringLiteral("&dist_string=") + configuration.Dstr;
}

QString ConfirmSignup(const Configuration& configuration, const QString& personalCode)
{
    return Script(configuration, u"ma/confirmSignup.pl?prod_string=") + configuration.PID +
           QStringLiteral("&vCode=") + personalCode + QStringLiteral("&dist_string=") + configuration.Dstr;
}

QString SoundFilesPage(const Configuration& configuration)
{
    return Script(configuration, u"sound/sound.pl?prod_string=") + configuration.PID;
}

QString HelpPage(const Configuration& configuration)
{
    return ServiceAddresses::Base(configuration) + QStringLiteral("/dbeacon/help.html");
}

QString HomePage(const Configuration& configuration)
{
    return ServiceAddresses::Base(configuration);
}

} // namespace ServiceRequests
