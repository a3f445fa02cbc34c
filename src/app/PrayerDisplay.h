// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

struct Configuration;
struct MainControls;
struct Platform;
class PTimer;
class VBCompas;
class VBSunAndMoon;

/// The main window as it shows the day: place and settings, both dates, the six times, the countdown, the
/// compass and the sky.
class PrayerDisplay final
{
public:
    /// Places the compass and the sky in their frames, whose children they become.
    PrayerDisplay(const Platform& platform, const Configuration& configuration, const PTimer& prayerTimer,
                  MainControls& controls);

    /// Rewrites the settings block.
    void PopLocation() const;
    /// Rewrites date and times.
    void PopPrayerFrame() const;
    /// Rewrites the time left to the next prayer; called each second.
    void UpdateCountDown() const;
    /// Turns the compass to the place of the scheduler's last recalculation.
    void ShowQibla() const;
    /// Composes the sky of this minute.
    void RefreshSkyPicture() const;

private:
    const Platform& m_platform;
    const Configuration& m_configuration;
    const PTimer& m_prayerTimer;
    MainControls& m_controls;
    VBCompas* VBCompas1 = nullptr;
    VBSunAndMoon* VBSunAndMoon1 = nullptr;
};
