// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowLife.h"

#include "alerts/FrmPopup.h"
#include "forms/Forms.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"
#include "platform/Platform.h"
#include "platform/TrayIcon.h"
#include "settings_dialog/FrmAlerts.h"
#include "support/RuntimeError.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <array>

WindowLife::WindowLife(Form& window)
    : m_window(window)
{
    window.installEventFilter(this);
    // Where a desktop lets people raise a disabled window it would stand in front of its dialog until
    // something paints the main window.
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &WindowLife::AwaitPaint);
}

bool WindowLife::eventFilter(QObject* /*watched*/, QEvent* event)
{
    // Both wait for the event to be over. Hiding inside a change of state is undone by the window system, and
    // one window can't be painted from inside the painting of another.
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
        EndWithFatalBox(m_window.Outside(), 2);
    }
}

void WindowLife::FollowState()
{
    if (!m_window.isMinimized()) {
        // A maximised state doesn't last.
        m_window.setWindowState(Qt::WindowNoState);
        m_window.show();
        return;
    }
    // Without an icon nothing could bring a hidden window back: it stays on the taskbar.
    if (m_window.isVisible() && m_window.Outside().tray.IsShown()) {
        m_window.hide();
    }
}

void WindowLife::Paint()
{
    if (!m_window.IsLoaded() || m_window.Variables().ActiveForm == m_window.Name()) {
        return;
    }
    try {
        HandOnFocus();
    } catch (const RuntimeError& error) {
        // A dialog that can't take the focus is left alone.
        if (error.Number() != ErrorNumber::kInvalidCall) {
            EndWithFatalBox(m_window.Outside(), 1);
        }
    }
}

void WindowLife::HandOnFocus()
{
    // Handed on is only the focus of this window, or of a window that takes no input. Taking it from another
    // program, or from a box that waits for an answer, whenever the countdown repaints a label would let
    // nobody work.
    const QWidget* const active = QApplication::activeWindow();
    const bool isToBeHandedOn = active == &m_window || (active != nullptr && !active->isEnabled());
    if (!isToBeHandedOn || QApplication::activeModalWidget() != nullptr) {
        return;
    }
    static constexpr std::array kDialogs{FrmAlerts::kName, FrmLocation::kName, FrmNewLoc::kName,
                                         FrmPopup::kName};
    if (std::find(kDialogs.begin(), kDialogs.end(), m_window.Variables().ActiveForm) == kDialogs.end()) {
        return;
    }
    if (Form* const dialog = m_window.Siblings().Loaded(m_window.Variables().ActiveForm);
        dialog != nullptr && dialog->IsLoaded()) {
        dialog->SetFocus();
        dialog->Refresh();
    }
}
