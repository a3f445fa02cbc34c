// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

class Forms;
struct MainVariables;
struct Platform;

/// Runs a handler that the window system calls. What it lets through is shown, and the program ends: no
/// exception may cross the window system's frames.
void RunGuarded(const Platform& platform, const std::function<void()>& handler) noexcept;

/// The fatal box, "Error - @p number", and the end of the process.
void EndWithFatalBox(const Platform& platform, int number);

/// A window of the program, known by its name. Created on first touch by Forms, gone when unloaded.
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

    /// Shows the window without waiting for it; one that is up already comes to the front.
    void Show();
    /// Paints the window now.
    void Refresh() { repaint(); }
    /// Returns when the window is really on the screen and painted, or after half a second if no screen shows
    /// it. Serves events meanwhile, but none of the user's.
    void PaintNow();
    void Unload();
    /// Gives the window the focus; throws kInvalidCall if it is hidden or disabled. A minimised window keeps
    /// its place on the taskbar.
    virtual void SetFocus();
    /// Lets the window take input or not. The control that had the keyboard when it was taken from the window
    /// has it back when the window takes input again, or the next one if that control is disabled by then.
    virtual void Enable(bool enabled);
    /// Gives one of the window's controls the keyboard, or leaves it to be had once the window takes input.
    void GiveFocus(QWidget& control);

    /// The hand over links, and the default pointer behind them.
    void SetHandPointer();
    void SetDefaultPointer();

    /// Runs a handler that the window system calls: the window stays in memory while it runs even if it
    /// unloads the window, and what the handler lets through is shown and ends the program.
    void Handle(const std::function<void()>& handler);
    [[nodiscard]] bool IsHandling() const { return m_handling > 0; }
    /// Keeps the window in memory while @p work runs, even if the window is unloaded meanwhile. What @p work
    /// throws goes on to the caller.
    void KeepWhile(const std::function<void()>& work);

    [[nodiscard]] const Platform& Outside() const;
    [[nodiscard]] Forms& Siblings() const { return m_forms; }
    /// The public variables of the main window.
    [[nodiscard]] MainVariables& Variables() const;

protected:
    /// The window has been created and is about to be used. May unload it again.
    virtual void OnLoad() {}
    /// The window is about to go.
    virtual void OnUnload() {}
    /// The window has become the active one.
    virtual void OnGotFocus() {}

    /// Stands the window over the middle of @p window, or of the screen if there is none, wholly on the
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
    int m_handling = 0;
    /// The control that has the keyboard as soon as the window takes input.
    QPointer<QWidget> m_nextFocus;
};

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
