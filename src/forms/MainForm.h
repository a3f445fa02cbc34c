// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Configuration.h"

#include <QString>

/// The public variables of the main window, which every window may read and set. They outlive the window.
struct MainVariables
{
    /// The configuration of the last load of settings.xml; contains PID and Dstr.
    Configuration Settings;
    /// Name of the window that has the user's attention; while it is not the main window's, alerts are
    /// dropped.
    QString ActiveForm;
    /// A switch for developers; the program never sets it.
    bool DebugMode = false;
    /// Whether the network was reached, by the probe at the start or by the latest request for an ad. Other
    /// probes and requests do not set it.
    bool Connected = false;
    /// Seconds between two refreshes of the ad.
    float AdTimer = 0.0F;
    /// The last step that a tracing routine has reached. Intended: written, never shown.
    QString TraceLoc;
};

/// The interface of the main window for the other windows. After the main window was unloaded the calls do
/// nothing, so that a window that closes later can't load it again.
class MainForm
{
public:
    /// The name of the main window.
    static constexpr QLatin1String kName{"FrmMain"};

    MainForm() = default;
    MainForm(const MainForm&) = delete;
    MainForm& operator=(const MainForm&) = delete;
    virtual ~MainForm() = default;

    /// Reads settings.xml and updates everything from it. Returns 1, or 0 if the file holds no usable
    /// configuration.
    virtual int UpdateEverything() = 0;
    /// Rewrites the settings block from the values in memory.
    virtual void PopLocation() = 0;
    /// Rewrites dates and times from the values in memory.
    virtual void PopPrayerFrame() = 0;
    virtual void Enable(bool enabled) = 0;
    /// Takes the focus. Does nothing while the window is hidden or disabled, which is no failure: a dialog
    /// that closes sets ActiveForm after this call, and without that every alert would be dropped.
    virtual void TakeFocus() = 0;
    /// Enables the stop link.
    virtual void EnableStopLink() = 0;
    /// Asks the service for an ad and shows it.
    virtual void RefreshAd() = 0;
};
