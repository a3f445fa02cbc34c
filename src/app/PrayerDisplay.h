// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

struct Configuration;
struct MainControls;
struct Platform;
class PTimer;
class VBCompas;
class VBSunAndMoon;

/// Shows the day in the main window: place and settings, both dates, the six times, the countdown, the
/// compass and the sky.
class PrayerDisplay final
{
public:
    /// Creates the compass and the sky as children of their frames.
    PrayerDisplay(const Platform& platform, const Configuration& configuration, const PTimer& prayerTimer,
                  MainControls& controls);

    /// Rewrites the settings block.
    void PopLocation() const;
    /// Rewrites both dates and the six times.
    void PopPrayerFrame() const;
    /// Rewrites the time left to the next prayer; called each second.
    void UpdateCountDown() const;
    /// Turns the compass to the Qibla of the place for which the scheduler has calculated last.
    void ShowQibla() const;
    /// Draws the sky of the current minute.
    void RefreshSkyPicture() const;

private:
    const Platform& m_platform;
    const Configuration& m_configuration;
    const PTimer& m_prayerTimer;
    MainControls& m_controls;
    VBCompas* VBCompas1 = nullptr;
    VBSunAndMoon* VBSunAndMoon1 = nullptr;
};
