// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

struct Configuration;

/// The exact URLs of all requests to the service; look here for the data that leaves the computer. Values are
/// inserted as they are, without encoding.
namespace ServiceRequests {
/// @param dist separate, since the identifier is requested before the configuration is loaded, except for its
/// addresses
[[nodiscard]] QString RequestProdID(const Configuration& configuration, const QString& dist);
[[nodiscard]] QString Startup(const Configuration& configuration);
[[nodiscard]] QString GetAd(const Configuration& configuration);
[[nodiscard]] QString Version(const Configuration& configuration);
/// @param pno the number of the prayer, 1 to 6
/// @param alertType "Normal" or "Quite"
/// @param ma "1" asks for a text message, "0" does not
/// @param time hours and minutes in 24-hour form
[[nodiscard]] QString PrayerCall(const Configuration& configuration, int pno, const QString& alertType,
                                 const QString& ma, const QString& time);
[[nodiscard]] QString GetStates(const Configuration& configuration);
[[nodiscard]] QString GetUsCanCity(const Configuration& configuration, const QString& zipCode);
[[nodiscard]] QString GetNumMatchingCities(const Configuration& configuration, const QString& stateId,
                                           const QString& city);
[[nodiscard]] QString GetMatchingCities(const Configuration& configuration, const QString& stateId,
                                        const QString& city);
[[nodiscard]] QString GetCityInfo(const Configuration& configuration, const QString& atlasId);
[[nodiscard]] QString ConfirmSignup(const Configuration& configuration, const QString& personalCode);

/// Pages for the user's browser.
[[nodiscard]] QString SoundFilesPage(const Configuration& configuration);
[[nodiscard]] QString HelpPage(const Configuration& configuration);
[[nodiscard]] QString HomePage(const Configuration& configuration);
} // namespace ServiceRequests
