// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

class Form;
class LinkLabel;
struct MainControls;

/// The links of the main window and its banner: what a click on each does, and the pointer over and behind
/// them.
class MainLinks final
{
public:
    /// @param window the main window
    MainLinks(Form& window, MainControls& controls);

    /// Opens the settings dialog at its first page. False if it is not open afterwards: it has closed itself
    /// over settings that it can't show, or the failure has ended the program.
    bool ClickLblAlertsLink();
    /// Opens the list of places over the disabled main window.
    void ClickLblLocLink();

private:
    void ConnectClicks();
    void ConnectPointer();
    void ClickPrayerLink(LinkLabel& link, std::int16_t tab);
    /// Shows a page of the settings dialog; false if the dialog has closed itself over it.
    bool SelectTab(std::int16_t tab);
    void OpenPage(LinkLabel& link, const QString& url);

    Form& m_window;
    MainControls& m_controls;
};
