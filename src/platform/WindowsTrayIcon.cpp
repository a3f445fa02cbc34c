// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WindowsTrayIcon.h"

#include <QCoreApplication>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

// The second needs the first.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <chrono>

namespace {

// Qt assumes that the taskbar exists, but it is missing while the shell restarts.
bool HasTaskbar()
{
    return FindWindowW(L"Shell_TrayWnd", nullptr) != nullptr;
}

// Wine does not tell where an icon is, and refuses none.
bool TellsPlaces()
{
    NOTIFYICONIDENTIFIER none = {};
    none.cbSize = sizeof none;
    RECT place = {};
    return Shell_NotifyIconGetRect(&none, &place) != E_NOTIMPL;
}

bool IsInPlace(const QSystemTrayIcon& icon)
{
    return HasTaskbar() && (!icon.geometry().isEmpty() || !TellsPlaces());
}

} // namespace

WindowsTrayIcon::WindowsTrayIcon()
{
    constexpr std::chrono::seconds kBetweenAttempts(5);
    m_again.setInterval(kBetweenAttempts);
    QObject::connect(&m_again, &QTimer::timeout, &m_again, [this] { AddAgain(); });
}

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
    m_again.start();
}

void WindowsTrayIcon::Remove()
{
    if (m_icon == nullptr) {
        return;
    }
    m_again.stop();
    m_icon->hide();
    // Remove may be called from the menu that the icon has opened.
    m_icon.release()->deleteLater();
}

bool WindowsTrayIcon::IsShown() const
{
    return m_icon != nullptr && IsInPlace(*m_icon);
}

void WindowsTrayIcon::AddAgain()
{
    // Qt does not try again, nor does it tell of the failure. It adds the icon itself when a taskbar starts.
    if (HasTaskbar() && !IsInPlace(*m_icon)) {
        m_icon->hide();
        m_icon->show();
    }
}
