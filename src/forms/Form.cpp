// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Form.h"

#include "forms/Forms.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "support/RuntimeError.h"

#include <QCloseEvent>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QPalette>
#include <QScopeGuard>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <utility>

namespace {

// A disabled window keeps the colours of the application: only a control that is disabled itself is grey. A
// palette of one control in a .ui file must give its colours for the group "disabled" itself.
QPalette UngreyedColours(QPalette colours)
{
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
        const auto colourRole = static_cast<QPalette::ColorRole>(role);
        colours.setBrush(QPalette::Disabled, colourRole, colours.brush(QPalette::Active, colourRole));
    }
    return colours;
}

// The control that the Tab key would reach from @p control; null if there is no other.
QWidget* NextInTabOrder(const QWidget& control)
{
    QWidget* next = control.nextInFocusChain();
    while (next != &control) {
        const bool isReached = (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (isReached && !next->isWindow() && next->isEnabled() && next->isVisibleTo(control.window())) {
            return next;
        }
        next = next->nextInFocusChain();
    }
    return nullptr;
}

void EndWithUntrappedError(const Platform& platform, const QString& number, const QString& description)
{
    platform.boxes.Show(QStringLiteral("Run-time error '%1':\r\n\r\n%2").arg(number, description));
    platform.process.End();
}

} // namespace

void RunGuarded(const Platform& platform, const std::function<void()>& handler) noexcept
{
    try {
        handler();
    } catch (const RuntimeError& error) {
        EndWithUntrappedError(platform, QString::number(error.Number()), error.Description());
    } catch (const std::exception& error) {
        EndWithUntrappedError(platform, QStringLiteral("51"), QString::fromUtf8(error.what()));
    }
}

void EndWithFatalBox(const Platform& platform, int number)
{
    platform.boxes.Show(QStringLiteral("An error has occured, The application will be terminated."),
                        QStringLiteral("Error - %1").arg(number));
    platform.process.End();
}

Form::Form(Forms& forms, const QString& name, Qt::WindowFlags flags)
    : QWidget(nullptr, flags)
    , m_forms(forms)
{
    setObjectName(name);
}

const Platform& Form::GetPlatform() const
{
    return m_forms.GetPlatform();
}

MainVariables& Form::Variables() const
{
    return m_forms.Variables();
}

void Form::CentreOver(const QWidget* window)
{
    const QScreen* const screen = window == nullptr ? QGuiApplication::primaryScreen() : window->screen();
    if (screen == nullptr) {
        return;
    }
    const QRect around = screen->availableGeometry();
    QRect place(QPoint(), size());
    place.moveCenter(window == nullptr ? around.center() : window->frameGeometry().center());
    place.moveRight(qMin(place.right(), around.right()));
    place.moveBottom(qMin(place.bottom(), around.bottom()));
    place.moveLeft(qMax(place.left(), around.left()));
    place.moveTop(qMax(place.top(), around.top()));
    move(place.topLeft());
}

void Form::Show()
{
    m_wasShown = true;
    const bool wasUp = isVisible();
    show();
    // The desktop chooses where a new window appears. A window that was visible already must come to the
    // front.
    if (wasUp) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
        raise();
        activateWindow();
    }
}

void Form::PaintNow()
{
    KeepWhile([this] {
        constexpr int kLongestWaitMilliseconds = 500;
        constexpr int kCheckMilliseconds = 20;
        const QDeadlineTimer deadline(kLongestWaitMilliseconds);
        // The timer ends each wait, since processEvents with a time limit ignores WaitForMoreEvents.
        QTimer alarm;
        alarm.start(kCheckMilliseconds);
        while (!deadline.hasExpired() && (windowHandle() == nullptr || !windowHandle()->isExposed())) {
            QGuiApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                           QEventLoop::WaitForMoreEvents);
        }
        repaint();
        QGuiApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
}

void Form::Unload()
{
    // After this window was unloaded, its name may belong to a new one.
    if (m_loaded) {
        m_forms.Unload(Name());
    }
}

void Form::SetFocus()
{
    if (!isVisible() || !isEnabled()) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("The window can't take the focus"));
    }
    if (!isMinimized()) {
        raise();
        activateWindow();
    }
}

void Form::Enable(bool enabled)
{
    if (enabled == isEnabled()) {
        return;
    }
    if (!enabled) {
        m_nextFocus = focusWidget();
    }
    setEnabled(enabled);
    if (enabled && m_nextFocus != nullptr) {
        // The control may have been disabled meanwhile, as the stop link is at the end of a sound.
        QWidget* const heir = m_nextFocus->isEnabled() ? m_nextFocus.data() : NextInTabOrder(*m_nextFocus);
        if (heir != nullptr) {
            heir->setFocus();
        }
        m_nextFocus.clear();
    }
}

void Form::GiveFocus(QWidget& control)
{
    if (isEnabled()) {
        control.setFocus();
    } else {
        m_nextFocus = &control;
    }
}

void Form::SetHandPointer()
{
    if (!m_isWaitPointerShown) {
        setCursor(Qt::PointingHandCursor);
    }
}

void Form::SetDefaultPointer()
{
    if (!m_isWaitPointerShown) {
        unsetCursor();
    }
}

void Form::ShowWaitPointer(bool isShown)
{
    m_isWaitPointerShown = isShown;
    if (isShown) {
        setCursor(Qt::WaitCursor);
    } else {
        unsetCursor();
    }
}

void Form::Handle(const std::function<void()>& handler)
{
    KeepWhile([&] { RunGuarded(GetPlatform(), handler); });
}

void Form::KeepWhile(const std::function<void()>& work)
{
    ++m_handling;
    const auto leave = qScopeGuard([this] {
        --m_handling;
        m_forms.DisposeOfUnloaded();
    });
    work();
}

bool Form::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && m_loaded) {
        Handle([this] { OnGotFocus(); });
    }
    return QWidget::event(event);
}

void Form::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange) {
        setPalette(isEnabled() ? QPalette() : UngreyedColours(QGuiApplication::palette()));
    }
    QWidget::changeEvent(event);
}

void Form::showEvent(QShowEvent* event)
{
    m_wasShown = true;
    QWidget::showEvent(event);
}

void Form::closeEvent(QCloseEvent* event)
{
    // Only Unload closes a window. The close button of a disabled window does nothing.
    event->ignore();
    if (m_loaded && isEnabled()) {
        Handle([this] { Unload(); });
    }
}

DisabledControl::DisabledControl(Form& window, QWidget& control, std::function<void(bool)> setEnabled)
    : m_window(window)
    , m_control(control)
    , m_setEnabled(std::move(setEnabled))
    , m_hadFocus(window.focusWidget() == &control)
{
    m_setEnabled(false);
    m_heir = window.focusWidget();
}

void DisabledControl::Enable()
{
    m_setEnabled(true);
    const QWidget* const holder = m_window.focusWidget();
    if (m_hadFocus && (holder == nullptr || holder == m_heir)) {
        m_window.GiveFocus(m_control);
    }
    // Only once: later the focus stays where the user has moved it.
    m_hadFocus = false;
}
