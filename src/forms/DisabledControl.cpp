// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/DisabledControl.h"

#include "forms/Form.h"

#include <utility>

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
    // Once: what the user does with the focus from here on stands.
    m_hadFocus = false;
}
