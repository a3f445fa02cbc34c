// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

class Form;

/// The program's icon in the notification area, with the menu items Open and Exit.
class MainTray final
{
public:
    /// @param window the main window: the icon has its icon and caption, and Open shows it again
    explicit MainTray(Form& window);
    ~MainTray();
    MainTray(const MainTray&) = delete;
    MainTray& operator=(const MainTray&) = delete;

    /// Adds the icon; its tooltip is the present caption of the window.
    void PutMeInSysTray();
    /// Does nothing if there is no icon.
    void RemoveMeFromSysTray();

private:
    void ClickMnuOpen();
    void ClickMnuExit();

    Form& m_window;
    /// Not a child of the window: the menu also works while the window is disabled.
    QMenu mnuTrayIcon;
};
