// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

class Form;

/// The program's entry in the notification area, with its menu of two.
class MainTray final
{
public:
    /// @param window the main window: the entry has its icon and caption and brings it back
    explicit MainTray(Form& window);
    ~MainTray();
    MainTray(const MainTray&) = delete;
    MainTray& operator=(const MainTray&) = delete;

    /// Adds the icon, with the caption as it is now for its tip.
    void PutMeInSysTray();
    /// Harmless when there is no icon.
    void RemoveMeFromSysTray();

private:
    void ClickMnuOpen();
    void ClickMnuExit();

    Form& m_window;
    /// No child of the window: the menu works also while the window is disabled.
    QMenu mnuTrayIcon;
};
