// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class Form;
class Forms;
class MainForm;

/// What the main window does by itself when the window system resizes or paints it: it hides when minimised,
/// does not stay maximised, and leaves the focus to the dialog that is open, as a disabled dialog does.
class WindowLife final : public QObject
{
    Q_OBJECT

public:
    /// @param window the main window as a window, @p main the same one with its public variables
    WindowLife(Form& window, MainForm& main, Forms& forms);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AwaitPaint();
    void Resize();
    void Paint();
    void FollowState();
    void HandOnFocus();

    Form& m_window;
    MainForm& m_main;
    Forms& m_forms;
    bool m_paintIsPending = false;
};
