// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

struct Configuration;
struct MainControls;
struct Platform;
class PTimer;

/// The labels of the main window: place and settings, both dates, the six times, the countdown.
class PrayerDisplay final
{
public:
    PrayerDisplay(const Platform& platform, const Configuration& configuration, const PTimer& prayerTimer,
                  MainControls& controls);

    /// Rewrites the settings block.
    void PopLocation() const;
    /// Rewrites date and times.
    void PopPrayerFrame() const;
    /// Rewrites the time left to the next prayer; called each second.
    void UpdateCountDown() const;

private:
    const Platform& m_platform;
    const Configuration& m_configuration;
    const PTimer& m_prayerTimer;
    MainControls& m_controls;
};
