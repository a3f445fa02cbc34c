// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowLife.h"

#include "alerts/FrmPopup.h"
#include "forms/Form.h"
#include "forms/Forms.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "settings_dialog/FrmAlerts.h"
#include "support/RuntimeError.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <array>

WindowLife::WindowLife(Form& window)
    : m_window(window)
    , m_stacking([this] {
        // After the event, which Qt has not handled yet.
        QTimer::singleShot(0, this, [this] { m_window.Handle([this] { KeepDialogInFront(); }); });
    })
{
    window.installEventFilter(this);
    // Some desktops let the user raise a disabled window. Without this connection, it would stay in front of
    // its dialog until the main window is painted.
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &WindowLife::AwaitPaint);
}

bool WindowLife::eventFilter(QObject* /*watched*/, QEvent* event)
{
    // Both are handled after the event: the window system undoes a hide() inside a change of state, and a
    // window can't be painted inside the paint event of another.
    if (event->type() == QEvent::WindowStateChange) {
        QTimer::singleShot(0, this, [this] { m_window.Handle([this] { Resize(); }); });
    } else if (event->type() == QEvent::Paint) {
        AwaitPaint();
    }
    return false;
}

void WindowLife::AwaitPaint()
{
    if (m_paintIsPending) {
        return;
    }
    m_paintIsPending = true;
    QTimer::singleShot(0, this, [this] {
        m_paintIsPending = false;
        m_window.Handle([this] { Paint(); });
    });
}

void WindowLife::Resize()
{
    if (!m_window.IsLoaded() || m_window.Variables().DebugMode) {
        return;
    }
    try {
        FollowState();
    } catch (const RuntimeError&) {
        EndWithFatalBox(m_window.GetPlatform(), 2);
    }
}

void WindowLife::FollowState()
{
    if (!m_window.isMinimized()) {
        // The window does not stay maximised.
        m_window.setWindowState(Qt::WindowNoState);
        m_window.show();
        return;
    }
    // Without an icon the user could not show a hidden window again: it stays on the taskbar.
    if (m_window.isVisible() && m_window.GetPlatform().tray.IsShown()) {
        m_window.hide();
    }
}

void WindowLife::Paint()
{
    if (!m_window.IsLoaded() || m_window.Variables().ActiveForm == m_window.Name()) {
        return;
    }
    try {
        PassFocusOn();
    } catch (const RuntimeError& error) {
        // kInvalidCall: the dialog can't take the focus, which is no failure.
        if (error.Number() != ErrorNumber::kInvalidCall) {
            EndWithFatalBox(m_window.GetPlatform(), 1);
        }
    }
}

Form* WindowLife::ActiveDialog() const
{
    static constexpr std::array kDialogs{FrmAlerts::kName, FrmLocation::kName, FrmNewLoc::kName,
                                         FrmPopup::kName};
    const QString& name = m_window.Variables().ActiveForm;
    if (std::find(kDialogs.begin(), kDialogs.end(), name) == kDialogs.end()) {
        return nullptr;
    }
    Form* const dialog = m_window.Siblings().Loaded(name);
    return dialog != nullptr && dialog->IsLoaded() ? dialog : nullptr;
}

void WindowLife::PassFocusOn()
{
    // Pass on only the focus of this window or of a disabled one. A new text of the countdown paints the
    // window, which must not take the focus from another program or from an open message box.
    const QWidget* const active = QApplication::activeWindow();
    const bool mayPassOn = active == &m_window || (active != nullptr && !active->isEnabled());
    if (!mayPassOn || QApplication::activeModalWidget() != nullptr) {
        return;
    }
    if (Form* const dialog = ActiveDialog(); dialog != nullptr) {
        dialog->SetFocus();
        dialog->Refresh();
    }
}

void WindowLife::KeepDialogInFront()
{
    // Each raise changes the order again. If the user has set the main window to stay on top, raises without
    // a limit would never end and would put the dialog over the windows of all other programs.
    constexpr int kMostRaises = 3;
    Form* const dialog = ActiveDialog();
    if (dialog != nullptr) {
        m_stacking.Read();
    }
    if (dialog == nullptr || !m_stacking.IsBelow(*dialog, m_window)) {
        m_raises = 0;
    } else if (m_raises < kMostRaises && m_stacking.WasRaised(m_window, *dialog)) {
        ++m_raises;
        dialog->raise();
    }
}

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
    m_window.GetPlatform().tray.Add(m_window.windowIcon(), m_window.windowTitle(), mnuTrayIcon);
}

void MainTray::RemoveMeFromSysTray()
{
    m_window.GetPlatform().tray.Remove();
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
    // Intended: Unload removes the icon a second time, which does nothing.
    RemoveMeFromSysTray();
    m_window.Unload();
}
