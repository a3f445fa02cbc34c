// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Stacking.h"

#include <QMenu>
#include <QObject>

class Form;

/// Handles changes of state and paint events of the main window: it hides when minimised, does not stay
/// maximised, and passes the focus to the open dialog. A disabled dialog passes the focus on in the same way.
class WindowLife final : public QObject
{
    Q_OBJECT

public:
    /// @param window the main window
    explicit WindowLife(Form& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AwaitPaint();
    void Resize();
    void Paint();
    void FollowState();
    /// The dialog that ActiveForm names; null if it names no dialog, or one that is not loaded.
    [[nodiscard]] Form* ActiveDialog() const;
    void PassFocusOn();
    /// Raises the active dialog, without giving it the focus, if the main window was raised over it: a window
    /// manager or a pager may have done that without activating the main window. A dialog that the user has
    /// lowered stays there, since the raise would put it over the windows of all other programs.
    void KeepDialogInFront();

    Form& m_window;
    bool m_paintIsPending = false;
    Stacking m_stacking;
    /// Raises since the dialog was last above the main window.
    int m_raises = 0;
};

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
