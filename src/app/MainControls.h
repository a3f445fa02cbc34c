// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class LevelBar;
class LinkLabel;
class QGroupBox;
class QLabel;
class QWidget;

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
    LinkLabel* LblFarjLink = nullptr;
    QLabel* LblFarjTime = nullptr;
    LinkLabel* LblShuruqLink = nullptr;
    QLabel* LblShuruqTime = nullptr;
    LinkLabel* LblDuhrLink = nullptr;
    QLabel* LblDuhrTime = nullptr;
    LinkLabel* LblAsrLink = nullptr;
    QLabel* LblAsrTime = nullptr;
    LinkLabel* LblMaghribLink = nullptr;
    QLabel* LblMaghribTime = nullptr;
    LinkLabel* LblIshaLink = nullptr;
    QLabel* LblIshaTime = nullptr;

private:
    void BuildSettingsBlock(QWidget& window);
    void BuildLeftColumn(QWidget& window);
    void BuildPrayerFrame(QWidget& window);
};
