// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

class Form;
class Forms;
class LinkLabel;
class MainForm;
struct MainControls;

/// The links of the main window and its banner: what a click on each does, and the pointer over and behind
/// them.
class MainLinks final
{
public:
    /// What the links ask of the two dialogs.
    struct Dialogs
    {
        std::function<void()> ShowAlerts;
        /// Shows page 1 to 8 of the settings dialog; false if the dialog has closed itself over it.
        std::function<bool(std::int16_t)> SelectTab;
        std::function<void()> ShowLocation;
    };
    [[nodiscard]] static Dialogs DialogsAmong(Forms& forms);

    /// @param window the main window as a window, @p main the same one with its public variables
    MainLinks(Form& window, MainForm& main, MainControls& controls, Dialogs dialogs);

    /// Opens the settings dialog at its first page. False if it is not open afterwards: it has closed itself
    /// over settings that it can't show, or the failure has ended the program.
    bool ClickLblAlertsLink();
    /// Opens the list of places over the disabled main window.
    void ClickLblLocLink();

private:
    void ConnectClicks();
    void ConnectPointer();
    void ClickPrayerLink(LinkLabel& link, std::int16_t tab);
    void OpenPage(LinkLabel& link, const QString& url);

    Form& m_window;
    MainForm& m_main;
    MainControls& m_controls;
    Dialogs m_dialogs;
};
