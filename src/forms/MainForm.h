// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Configuration.h"

#include <QString>

/// The public variables of the main window, for every window to read and set. They stay when it is gone.
struct MainVariables
{
    /// What the last load of settings.xml brought; PID and Dstr are among it.
    Configuration Settings;
    /// Name of the window that has the user's attention; while it is not the main window's, alerts are
    /// dropped.
    QString ActiveForm;
    /// A developers' switch; never set by the program.
    bool DebugMode = false;
    /// Whether the last probe or request reached the network.
    bool Connected = false;
    /// Seconds between two refreshes of the ad.
    float AdTimer = 0.0F;
    /// The last step that a routine which traces itself reached. Written, never shown.
    QString TraceLoc;
};

/// The main window as the other windows see it: what they may ask of it. Once the main window is gone the
/// calls do nothing, so that a window that closes after it can't bring it back.
class MainForm
{
public:
    /// The name of the main window.
    static constexpr QLatin1String kName{"FrmMain"};

    MainForm() = default;
    MainForm(const MainForm&) = delete;
    MainForm& operator=(const MainForm&) = delete;
    virtual ~MainForm() = default;

    /// Rereads settings.xml and feeds everything from it: 1, or 0 if the file holds no usable configuration.
    virtual int UpdateEverything() = 0;
    /// Rewrites the settings block from what is held.
    virtual void PopLocation() = 0;
    /// Rewrites date and times from what is held.
    virtual void PopPrayerFrame() = 0;
    virtual void Enable(bool enabled) = 0;
    /// Takes the focus if it can. Hidden in the tray or disabled it is left alone, which is no failure:
    /// whoever closes a dialog meanwhile must still get to the step behind this one, without which every
    /// alert is dropped.
    virtual void TakeFocus() = 0;
    /// Lets the stop link take clicks.
    virtual void EnableStopLink() = 0;
    /// Asks the service for an ad and shows it.
    virtual void RefreshAd() = 0;
};
