// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Form.h"

#include "forms/Forms.h"
#include "platform/Guard.h"
#include "support/RuntimeError.h"

#include <QCloseEvent>

Form::Form(Forms& forms, const QString& name, Qt::WindowFlags flags)
    : QWidget(nullptr, flags)
    , m_forms(forms)
{
    setObjectName(name);
}

const Platform& Form::Outside() const
{
    return m_forms.Outside();
}

void Form::Show()
{
    m_wasShown = true;
    if (!isVisible()) {
        show();
        return;
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void Form::Unload()
{
    m_forms.Unload(Name());
}

void Form::SetFocus()
{
    if (!isVisible() || !isEnabled()) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("The window can't take the focus"));
    }
    raise();
    activateWindow();
}

void Form::SetHandPointer()
{
    setCursor(Qt::PointingHandCursor);
}

void Form::SetDefaultPointer()
{
    unsetCursor();
}

void Form::Handle(const std::function<void()>& handler)
{
    ++m_handling;
    RunGuarded(Outside(), handler);
    --m_handling;
    m_forms.DisposeOfUnloaded();
}

bool Form::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && m_loaded) {
        Handle([this] { OnGotFocus(); });
    }
    return QWidget::event(event);
}

void Form::showEvent(QShowEvent* event)
{
    m_wasShown = true;
    QWidget::showEvent(event);
}

void Form::closeEvent(QCloseEvent* event)
{
    // Only unloading closes a window. A disabled one takes no input, its close button included.
    event->ignore();
    if (m_loaded && isEnabled()) {
        Handle([this] { Unload(); });
    }
}
