// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Configuration.h"

#include "store/SimpleXML.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"
#include "support/RuntimeError.h"

namespace {

const QString kApp = QStringLiteral("//root//app");
const QString kAlerts = QStringLiteral("//root//alerts");

void ReadPlace(Configuration& configuration, const SimpleXML& settings, const QString& decimalSign,
               const QLocale& locale)
{
    const QString place = QStringLiteral("//root//locations//") + configuration.CurrentKey;
    const auto read = [&](const char16_t* name) {
        return settings.GetAttribute(QString::fromUtf16(name), place);
    };

    configuration.AtlasID = read(u"atlas_id");
    configuration.CityName = read(u"city");
    configuration.StateName = read(u"state");
    configuration.LongitudeText = read(u"longitude");
    configuration.LongitudeFinal = ToDouble(read(u"longitude_final").replace(u'.', decimalSign), locale);
    configuration.LatitudeText = read(u"latitude");
    configuration.LatitudeFinal = ToDouble(read(u"latitude_final").replace(u'.', decimalSign), locale);
    configuration.ZoneHours = ToInteger16(read(u"time_zone2").replace(u'.', decimalSign), locale);
}

void ReadAlerts(Configuration& configuration, const SimpleXML& settings, const QString& decimalSign,
                const QLocale& locale)
{
    const auto read = [&](const char16_t* name) {
        return settings.GetAttribute(QString::fromUtf16(name), kAlerts);
    };

    // The fraction of an angle is lost here although the dialog stores it: the scheduler takes whole degrees.
    configuration.FajrAngle = ToInteger16(read(u"angle1").replace(u'.', decimalSign), locale);
    configuration.IshaAngle = ToInteger16(read(u"angle2").replace(u'.', decimalSign), locale);
    configuration.CalcMethod = read(u"method");
    configuration.UseAdvAlert = ToBoolean(read(u"useAdvWarn"), locale);
    // Whole minutes, read as they stand: a fraction with a point is no number on a comma system.
    configuration.AdvAlertMinutes = ToInteger16(read(u"advWarn"), locale);
    configuration.AsrMethod = read(u"asrMethode");
    configuration.UseDayLight = ToBoolean(read(u"useDLS"), locale);
    configuration.HourMode = read(u"hourmode");
}

void Read(Configuration& configuration, const DomDocuments& documents, const RegionalSettings& region)
{
    SimpleXML settings(documents);
    if (!settings.Load(kSettingsFile)) {
        throw RuntimeError(ErrorNumber::kConfiguration, QStringLiteral("settings.xml can't be loaded"));
    }
    configuration.CurrentKey =
        settings.GetAttribute(QStringLiteral("Current"), QStringLiteral("//root//locations"));
    configuration.ProdID = settings.GetAttribute(QStringLiteral("pid"), kApp);
    configuration.PID = configuration.ProdID;
    const QString decimalSign = GetDecimalSign(region);
    const QLocale locale = region.UserLocale();
    ReadPlace(configuration, settings, decimalSign, locale);
    configuration.DistText = settings.GetAttribute(QStringLiteral("dist"), kApp);
    configuration.DefaultAdText =
        settings.GetAttribute(QStringLiteral("Ad"), QStringLiteral("//root//app//DefaultAd"));
    configuration.Dstr = configuration.DistText;
    ReadAlerts(configuration, settings, decimalSign, locale);
}

} // namespace

void LoadConfiguration(Configuration& configuration, const DomDocuments& documents,
                       const RegionalSettings& region)
{
    try {
        Read(configuration, documents, region);
    } catch (const RuntimeError& error) {
        throw RuntimeError(ErrorNumber::kConfiguration, error.Description());
    }
}
