// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class Form;
class MediaPlayer;
struct MainControls;

/// Connects the stop link and the volume bar of the main window with the player.
class SoundControls final
{
public:
    /// @param form the window that contains the controls
    SoundControls(Form& form, MainControls& controls);
    ~SoundControls();
    SoundControls(const SoundControls&) = delete;
    SoundControls& operator=(const SoundControls&) = delete;

    /// Sets the bar to the player's volume. Throws kInvalidPropertyValue for a volume outside 0 to 100.
    void ShowVolume();

private:
    void OnPlayStateChange(int newState);

    MediaPlayer& m_player;
    MainControls& m_controls;
};
