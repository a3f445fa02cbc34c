// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

class Form;

/// A control of a window while its own work is under way: disabled, so that it can't be pressed twice.
/// Whoever works by keyboard finds it under the fingers again afterwards, unless they have gone elsewhere
/// meanwhile.
class DisabledControl final
{
public:
    /// By the control's own setEnabled: a link label has one that shows its state inside a disabled window
    /// too.
    template <typename Control>
    DisabledControl(Form& window, Control& control)
        : DisabledControl(window, control, [&control](bool enabled) { control.setEnabled(enabled); })
    {
    }

    void Enable();

private:
    DisabledControl(Form& window, QWidget& control, std::function<void(bool)> setEnabled);

    Form& m_window;
    QWidget& m_control;
    std::function<void(bool)> m_setEnabled;
    bool m_hadFocus = false;
    /// Where the toolkit took the focus by itself.
    QPointer<QWidget> m_heir;
};
