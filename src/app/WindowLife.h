// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class Form;

/// Handles changes of state and paint events of the main window: it hides when minimised, does not stay
/// maximised, and passes the focus to the open dialog. A disabled dialog passes the focus on in the same way.
class WindowLife final : public QObject
{
    Q_OBJECT

public:
    /// @param window the main window
    explicit WindowLife(Form& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AwaitPaint();
    void Resize();
    void Paint();
    void FollowState();
    void HandOnFocus();

    Form& m_window;
    bool m_paintIsPending = false;
};
