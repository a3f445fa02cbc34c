// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

class Forms;
struct MainVariables;
struct Platform;

/// Runs a handler that the window system calls. An exception that leaves the handler is shown in a box and
/// ends the program: none may cross the stack frames of the window system.
void RunGuarded(const Platform& platform, const std::function<void()>& handler) noexcept;

/// Shows the fatal box, "Error - @p number", and ends the process.
void EndWithFatalBox(const Platform& platform, int number);

/// A window of the program, identified by its name. Forms creates it on first touch and destroys it after it
/// is unloaded.
class Form : public QWidget
{
    Q_OBJECT

public:
    Form(Forms& forms, const QString& name, Qt::WindowFlags flags);

    [[nodiscard]] QString Name() const { return objectName(); }
    [[nodiscard]] bool IsLoaded() const { return m_loaded; }
    /// True once the window has been on the screen; from then on it keeps the process alive until it is
    /// unloaded.
    [[nodiscard]] bool WasShown() const { return m_wasShown; }

    /// Shows the window and returns at once; a window that is visible already comes to the front.
    void Show();
    /// Paints the window now.
    void Refresh() { repaint(); }
    /// Waits until the window is on the screen, for at most half a second, and paints it. Serves events
    /// meanwhile, except the user's input.
    void PaintNow();
    void Unload();
    /// Gives the window the focus; throws kInvalidCall if it is hidden or disabled. A minimised window stays
    /// minimised.
    virtual void SetFocus();
    /// Enables or disables the window. When the window is enabled again, the control that had the keyboard
    /// focus gets it back; if that control is disabled by then, the next one gets it.
    virtual void Enable(bool enabled);
    /// Gives a control of the window the keyboard focus, at once or when the window is enabled again.
    void GiveFocus(QWidget& control);

    /// The mouse pointer over links, and the one elsewhere.
    void SetHandPointer();
    void SetDefaultPointer();
    /// Shows the wait pointer, until it is called again with false. Meanwhile the two functions above do
    /// nothing.
    void ShowWaitPointer(bool isShown);

    /// Runs a handler of this window by RunGuarded. The window stays in memory while the handler runs, even
    /// if the handler unloads it.
    void Handle(const std::function<void()>& handler);
    [[nodiscard]] bool IsHandling() const { return m_handling > 0; }
    /// Keeps the window in memory while @p work runs, even if the window is unloaded meanwhile. Exceptions of
    /// @p work reach the caller.
    void KeepWhile(const std::function<void()>& work);

    [[nodiscard]] const Platform& GetPlatform() const;
    [[nodiscard]] Forms& Siblings() const { return m_forms; }
    /// The public variables of the main window.
    [[nodiscard]] MainVariables& Variables() const;

protected:
    /// Called after the window has been created and before it is used. May unload it again.
    virtual void OnLoad() {}
    /// Called before the window is removed.
    virtual void OnUnload() {}
    /// Called when the window has become the active one.
    virtual void OnGotFocus() {}

    /// Centres this window over @p window, or on the primary screen if that is null, and keeps it on the
    /// screen if it fits. The window must have its size.
    void CentreOver(const QWidget* window);

    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    friend class Forms;

    Forms& m_forms;
    bool m_loaded = false;
    bool m_wasShown = false;
    bool m_isWaitPointerShown = false;
    int m_handling = 0;
    /// The control that gets the keyboard focus when the window is enabled again.
    QPointer<QWidget> m_nextFocus;
};

/// Disables a control while its handler runs, so that it can't be pressed twice. Enable returns the keyboard
/// focus to the control, unless the user has moved the focus meanwhile.
class DisabledControl final
{
public:
    /// Calls the control's own setEnabled: that of LinkLabel also shows the state inside a disabled window.
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
    /// The control to which Qt has moved the focus.
    QPointer<QWidget> m_heir;
};
