// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class PTimer;
class VBCompas;
class VBSunAndMoon;
struct MainControls;
struct Platform;

/// The compass and the sky picture of the main window, and what feeds them from the scheduler.
class Instruments final
{
public:
    /// Places both in their frames, whose children they become.
    Instruments(const Platform& platform, const PTimer& prayerTimer, const MainControls& controls);

    /// Turns the compass to the place of the scheduler's last recalculation.
    void ShowQibla() const;
    /// Composes the sky of this minute.
    void RefreshSkyPicture() const;

private:
    const Platform& m_platform;
    const PTimer& m_prayerTimer;
    VBCompas* VBCompas1 = nullptr;
    VBSunAndMoon* VBSunAndMoon1 = nullptr;
};
