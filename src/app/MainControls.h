// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui_FrmMain.h"

#include <vector>

struct Prayer;

/// Link and time label of one prayer. Asr has one column for its two slots, with the first of its rows in the
/// table.
struct PrayerColumn
{
    const Prayer* prayer = nullptr;
    LinkLabel* link = nullptr;
    QLabel* time = nullptr;
};

/// The controls of FrmMain.ui.
struct MainControls : Ui::FrmMain
{
    explicit MainControls(QWidget& window);

    /// From left to right, in the order of the day.
    std::vector<PrayerColumn> PrayerColumns;
};
