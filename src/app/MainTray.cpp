// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainTray.h"

#include "forms/Form.h"
#include "platform/Platform.h"
#include "platform/TrayIcon.h"

#include <QAction>

MainTray::MainTray(Form& window)
    : m_window(window)
{
    mnuTrayIcon.setObjectName(QStringLiteral("mnuTrayIcon"));
    QAction* const mnuOpen = mnuTrayIcon.addAction(QStringLiteral("&Open"));
    mnuOpen->setObjectName(QStringLiteral("mnuOpen"));
    QObject::connect(mnuOpen, &QAction::triggered, &mnuTrayIcon,
                     [this] { m_window.Handle([this] { ClickMnuOpen(); }); });
    QAction* const mnuExit = mnuTrayIcon.addAction(QStringLiteral("E&xit"));
    mnuExit->setObjectName(QStringLiteral("mnuExit"));
    QObject::connect(mnuExit, &QAction::triggered, &mnuTrayIcon,
                     [this] { m_window.Handle([this] { ClickMnuExit(); }); });
}

MainTray::~MainTray()
{
    // The icon must not outlive its menu.
    RemoveMeFromSysTray();
}

void MainTray::PutMeInSysTray()
{
    m_window.Outside().tray.Add(m_window.windowIcon(), m_window.windowTitle(), mnuTrayIcon);
}

void MainTray::RemoveMeFromSysTray()
{
    m_window.Outside().tray.Remove();
}

void MainTray::ClickMnuOpen()
{
    // The notification area may keep the menu for a moment after the window was unloaded.
    if (!m_window.IsLoaded()) {
        return;
    }
    m_window.setWindowState(Qt::WindowNoState);
    m_window.Show();
    // A desktop may put a window that comes back behind all others.
    m_window.raise();
    m_window.activateWindow();
}

void MainTray::ClickMnuExit()
{
    // Unload removes the icon again, which does nothing.
    RemoveMeFromSysTray();
    m_window.Unload();
}
