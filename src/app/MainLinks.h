// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

class Form;
class LinkLabel;
class MediaPlayer;
struct MainControls;

/// Handles clicks on the links and the banner of the main window, and sets the mouse pointer over them.
class MainLinks final
{
public:
    /// @param window the main window
    MainLinks(Form& window, MainControls& controls);

    /// Opens the settings dialog on its first page. False if the dialog is not open afterwards: it closes
    /// itself if it can't show the settings, and any other failure ends the program.
    bool ClickLblAlertsLink();
    /// Opens the list of places over the disabled main window.
    void ClickLblLocLink();

private:
    void ConnectClicks();
    void ConnectPointer();
    void ClickPrayerLink(LinkLabel& link, std::int16_t tab);
    /// Shows a page of the settings dialog; false if this has closed the dialog.
    bool SelectTab(std::int16_t tab);
    void OpenPage(LinkLabel& link, const QString& url);

    Form& m_window;
    MainControls& m_controls;
};

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
