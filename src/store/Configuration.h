// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

class SimpleXML;
struct Platform;

/// The values of settings.xml that the program keeps between two loads.
struct Configuration
{
    QString DistText;
    QString AtlasID;
    QString CurrentKey;
    QString CityName;
    QString StateName;
    QString LatitudeText;
    double LatitudeFinal = 0.0; ///< degrees, north positive
    QString LongitudeText;
    double LongitudeFinal = 0.0; ///< degrees, east positive
    std::int16_t ZoneHours = 0;
    /// Minutes to add to ZoneHours for the standard time of the place, -59 to 59; nothing if the place has
    /// none.
    std::optional<std::int16_t> MinutesBeyondZone;
    QString ProdID;
    std::int16_t FajrAngle = 0; ///< whole degrees, negative below the horizon
    std::int16_t IshaAngle = 0; ///< whole degrees, negative below the horizon
    QString CalcMethod;
    QString AsrMethod;
    bool UseAdvAlert = false;
    std::int16_t AdvAlertMinutes = 0;
    bool UseDayLight = false;
    QString HourMode;
    QString DefaultAdText;
    /// The addresses of the service, of its mobile sign-up and of the probe, as written in the file; empty if
    /// missing.
    QString ServiceText;
    QString SignupText;
    QString ProbeText;

    /// Public copies of ProdID and DistText.
    QString PID;
    QString Dstr;

    bool operator==(const Configuration&) const = default;
};

/// The file name of the settings, relative to the working directory.
inline const QString kSettingsFile = QStringLiteral("settings.xml");
/// Its elements: the program itself, the places, and the options of calculation, clock and alerts with an
/// element for each prayer.
inline const QString kAppPath = QStringLiteral("//root//app");
inline const QString kLocationsPath = QStringLiteral("//root//locations");
inline const QString kAlertsPath = QStringLiteral("//root//alerts");

/// Reads only the three addresses from @p settings: the first requests of a start are sent before the rest is
/// loaded.
void ReadAddresses(Configuration& configuration, const SimpleXML& settings);

/// Reads settings.xml into @p configuration. There are no defaults: a number that does not convert ends the
/// load with the RuntimeError kConfiguration, and the fields read before it keep their new values.
void LoadConfiguration(Configuration& configuration, const Platform& platform);
