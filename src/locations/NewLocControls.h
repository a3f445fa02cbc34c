// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class LinkLabel;
class ListBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QVBoxLayout;
class QWidget;
class TextBox;

/// The controls of the search window, each under its name, from top to bottom in the order of the work.
struct NewLocControls
{
    explicit NewLocControls(QWidget& window);

    QGroupBox* FrmSearch = nullptr;
    QLabel* Label2 = nullptr;
    TextBox* TxtZipCode = nullptr;
    LinkLabel* LblGetLink = nullptr;

    QGroupBox* Frame1 = nullptr;
    QLabel* Label3 = nullptr;
    QComboBox* CombState = nullptr;
    QLabel* Label4 = nullptr;
    TextBox* TxtCity = nullptr;
    LinkLabel* LblGet2Link = nullptr;

    QLabel* Label1 = nullptr;
    ListBox* LstSearchResults = nullptr;
    QProgressBar* ProgressBar1 = nullptr;
    QLabel* LblStatus = nullptr;
    QPushButton* CmdAdd = nullptr;
    QPushButton* CmdCancel = nullptr;

private:
    void BuildZipSearch(QWidget& window);
    void BuildCitySearch(QWidget& window);
    void BuildResults(QWidget& window);
    void BuildFoot(QWidget& window);
};
