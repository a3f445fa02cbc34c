// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class Form;

/// What the main window does by itself when the window system resizes or paints it: it hides when minimised,
/// does not stay maximised, and leaves the focus to the dialog that is open, as a disabled dialog does.
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
