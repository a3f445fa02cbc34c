// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

class LevelBar;
class LinkLabel;
class QGroupBox;
class QLabel;
class QWidget;
struct Prayer;

/// Link and time of one prayer. Asr has one column for both of its slots, with the first row of the table.
struct PrayerColumn
{
    const Prayer* prayer = nullptr;
    LinkLabel* link = nullptr;
    QLabel* time = nullptr;
};

/// The controls of the main window, each under its name, in their places.
struct MainControls
{
    explicit MainControls(QWidget& window);

    QLabel* Picture2 = nullptr;

    QGroupBox* Frame2 = nullptr;
    QLabel* LblLocation = nullptr;
    QLabel* LblCaclMeth = nullptr;
    QLabel* LblAsrMeth = nullptr;
    QLabel* LblDLSavings = nullptr;
    QLabel* LblTimeZ = nullptr;
    QLabel* LblAdvWarning = nullptr;

    QLabel* Label3 = nullptr;
    QLabel* LblCountDown = nullptr;

    QGroupBox* FrmOptions = nullptr;
    LinkLabel* LblLocLink = nullptr;
    LinkLabel* LblAlertsLink = nullptr;
    LinkLabel* LblHelp = nullptr;
    LinkLabel* LblGetMoreLink = nullptr;

    QGroupBox* Frame6 = nullptr;
    QLabel* Label2 = nullptr;

    QLabel* LblVolume = nullptr;
    LevelBar* VolControl = nullptr;
    LinkLabel* LblStopLink = nullptr;

    QGroupBox* Frame3 = nullptr;

    QGroupBox* PrayerFrame = nullptr;
    QLabel* Label1 = nullptr;
    QLabel* LblHajri = nullptr;
    /// From left to right, in the order of the day.
    std::vector<PrayerColumn> PrayerColumns;

private:
    void BuildSettingsBlock(QWidget& window);
    void BuildLeftColumn(QWidget& window);
    void BuildPrayerFrame(QWidget& window);
};
