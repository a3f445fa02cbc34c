// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

struct Configuration;

/// The requests to the remote service, each as the exact text that is asked for. Values go in as they stand,
/// nothing is encoded. One place holds them all, so that this is where to look for what leaves the computer.
namespace ServiceRequests {
/// @param dist handed in on its own: the identifier is asked for before the configuration is loaded, of which
/// the addresses alone are needed
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
