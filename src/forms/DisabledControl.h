// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

class Form;

/// A control of a window while its own work is under way: disabled, so that it can't be pressed twice.
/// Whoever works by keyboard finds it under the fingers again afterwards, unless they have gone elsewhere
/// meanwhile.
class DisabledControl final
{
public:
    DisabledControl(Form& window, QWidget& control);

    void Enable();

private:
    Form& m_window;
    QWidget& m_control;
    bool m_hadFocus = false;
    /// Where the toolkit took the focus by itself.
    QPointer<QWidget> m_heir;
};
