// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"
#include "forms/MainForm.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

struct Platform;

/// The windows of the program, at most one of each name. A window is created and loaded on first touch and
/// stays until it is unloaded.
class Forms final : public QObject
{
    Q_OBJECT

public:
    using Factory = std::function<std::unique_ptr<Form>()>;

    explicit Forms(const Platform& platform);
    ~Forms() override;

    void Register(const QString& name, Factory factory);

    /// The window of that name, created and loaded if need be. Throws kFormUnloaded if it unloaded itself
    /// while loading.
    Form& Touch(const QString& name);
    template <typename Window>
    Window& Touch()
    {
        return static_cast<Window&>(Touch(QString(Window::kName)));
    }
    /// The window of that name if it is loaded, otherwise null.
    [[nodiscard]] Form* Loaded(const QString& name) const;
    /// Does nothing if the window is not loaded.
    void Unload(const QString& name);

    /// The main window, also after it has been unloaded.
    [[nodiscard]] MainForm& Main();
    void SetMain(MainForm& main) { m_main = &main; }
    /// Enables the main window, gives it the focus and makes it ActiveForm.
    void ReturnToMain();
    [[nodiscard]] MainVariables& Variables() { return m_variables; }

    [[nodiscard]] const Platform& GetPlatform() const { return m_platform; }
    /// Whether the main window, or a window that has been shown, is loaded.
    [[nodiscard]] bool KeepsProcess() const;
    /// The handler is called after a window has been unloaded, if KeepsProcess() is false.
    void SetLastUnloadedHandler(std::function<void()> handler) { m_lastUnloaded = std::move(handler); }

    /// Destroys the unloaded windows in which no handler runs, as soon as control returns to the event loop.
    void DisposeOfUnloaded();

private:
    /// Removes the window from the loaded ones, without OnUnload.
    void Drop(Form& form);
    [[nodiscard]] bool IsMain(const Form& form) const;
    void Dispose();

    const Platform& m_platform;
    MainForm* m_main = nullptr;
    MainVariables m_variables;
    std::map<QString, Factory> m_factories;
    std::map<QString, std::unique_ptr<Form>> m_loaded;
    std::vector<std::unique_ptr<Form>> m_unloaded;
    std::function<void()> m_lastUnloaded;
};
