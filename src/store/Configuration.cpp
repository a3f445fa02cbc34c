// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Configuration.h"

#include "platform/Platform.h"
#include "store/SimpleXML.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"
#include "support/RuntimeError.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

// Only ASCII digits with at most one sign; a place with any other text has only its zone.
std::optional<int> WholeNumber(const QString& text)
{
    const bool isSigned = text.startsWith(u'+') || text.startsWith(u'-');
    const bool isNumber = std::all_of(text.begin() + (isSigned ? 1 : 0), text.end(),
                                      [](QChar digit) { return digit >= u'0' && digit <= u'9'; });
    bool isInRange = false;
    const int number = isNumber ? text.toInt(&isInRange) : 0;
    return isInRange ? std::optional(number) : std::nullopt;
}

std::optional<std::int16_t> MinutesBeyond(std::int16_t zoneHours, const QString& utcMinutes)
{
    constexpr std::int64_t kMinutesPerHour = 60;
    // The scheduler's offset has 16 bits, and daylight saving adds an hour to it.
    constexpr std::int64_t kLargest = std::numeric_limits<std::int16_t>::max() - kMinutesPerHour;
    const std::optional<std::int64_t> minutes = WholeNumber(utcMinutes);
    const std::int64_t beyond = minutes.value_or(0) - zoneHours * kMinutesPerHour;
    const bool counts = minutes && std::abs(*minutes) <= kLargest && std::abs(beyond) < kMinutesPerHour;
    return counts ? std::optional(static_cast<std::int16_t>(beyond)) : std::nullopt;
}

void ReadPlace(Configuration& configuration, const SimpleXML& settings, const QString& decimalSign,
               const QLocale& locale)
{
    const QString place = kLocationsPath + QStringLiteral("//") + configuration.CurrentKey;
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
    // The zone is in whole hours; the minutes of a zone at a half or a quarter of an hour are separate.
    configuration.MinutesBeyondZone = MinutesBeyond(configuration.ZoneHours, read(u"utc_minutes"));
}

void ReadAlerts(Configuration& configuration, const SimpleXML& settings, const QString& decimalSign,
                const QLocale& locale)
{
    const auto read = [&](const char16_t* name) {
        return settings.GetAttribute(QString::fromUtf16(name), kAlertsPath);
    };

    // Intended: the fraction of an angle is dropped here although the dialog stores it.
    configuration.FajrAngle = ToInteger16(read(u"angle1").replace(u'.', decimalSign), locale);
    configuration.IshaAngle = ToInteger16(read(u"angle2").replace(u'.', decimalSign), locale);
    configuration.CalcMethod = read(u"method");
    configuration.UseAdvAlert = ToBoolean(read(u"useAdvWarn"), locale);
    // Intended: the point is not replaced here, so that a fraction fails on a system with a decimal comma.
    configuration.AdvAlertMinutes = ToInteger16(read(u"advWarn"), locale);
    configuration.AsrMethod = read(u"asrMethode");
    configuration.UseDayLight = ToBoolean(read(u"useDLS"), locale);
    configuration.HourMode = read(u"hourmode");
}

void Read(Configuration& configuration, const Platform& platform)
{
    SimpleXML settings(platform);
    if (!settings.Load(kSettingsFile)) {
        throw RuntimeError(ErrorNumber::kConfiguration, QStringLiteral("settings.xml can't be loaded"));
    }
    configuration.CurrentKey = settings.GetAttribute(QStringLiteral("Current"), kLocationsPath);
    configuration.ProdID = settings.GetAttribute(QStringLiteral("pid"), kAppPath);
    configuration.PID = configuration.ProdID;
    ReadAddresses(configuration, settings);
    const QString decimalSign = GetDecimalSign(platform.region);
    const QLocale locale = platform.region.UserLocale();
    ReadPlace(configuration, settings, decimalSign, locale);
    configuration.DistText = settings.GetAttribute(QStringLiteral("dist"), kAppPath);
    configuration.DefaultAdText =
        settings.GetAttribute(QStringLiteral("Ad"), kAppPath + QStringLiteral("//DefaultAd"));
    configuration.Dstr = configuration.DistText;
    ReadAlerts(configuration, settings, decimalSign, locale);
}

} // namespace

void ReadAddresses(Configuration& configuration, const SimpleXML& settings)
{
    configuration.ServiceText = settings.GetAttribute(QStringLiteral("service"), kAppPath);
    configuration.SignupText = settings.GetAttribute(QStringLiteral("signup"), kAppPath);
    configuration.ProbeText = settings.GetAttribute(QStringLiteral("probe"), kAppPath);
}

void LoadConfiguration(Configuration& configuration, const Platform& platform)
{
    try {
        Read(configuration, platform);
    } catch (const RuntimeError& error) {
        throw RuntimeError(ErrorNumber::kConfiguration, error.Description());
    }
}
