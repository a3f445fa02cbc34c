// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WindowsTrayIcon.h"

#include <QCoreApplication>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

#include <windows.h>

WindowsTrayIcon::WindowsTrayIcon() = default;

WindowsTrayIcon::~WindowsTrayIcon() = default;

void WindowsTrayIcon::Add(const QIcon& icon, const QString& tip, QMenu& menu)
{
    // A child of the application, so that EndAtOnce finds it.
    m_icon = std::make_unique<QSystemTrayIcon>(icon, QCoreApplication::instance());
    m_icon->setToolTip(tip);
    m_icon->setContextMenu(&menu);
    // Qt activates the menu only if no window of the program has the focus. A menu that is not active may
    // close at once, gets no keys and stays open after a click outside of it.
    QObject::connect(&menu, &QMenu::aboutToShow, m_icon.get(), [&menu] {
        QMetaObject::invokeMethod(
            &menu, [&menu] { menu.activateWindow(); }, Qt::QueuedConnection);
    });
    m_icon->show();
}

void WindowsTrayIcon::Remove()
{
    if (m_icon == nullptr) {
        return;
    }
    m_icon->hide();
    // Remove may be called from the menu that the icon has opened.
    m_icon.release()->deleteLater();
}

bool WindowsTrayIcon::IsShown() const
{
    // Qt takes a taskbar for granted, but there is none while the shell restarts.
    return m_icon != nullptr && FindWindowW(L"Shell_TrayWnd", nullptr) != nullptr;
}
