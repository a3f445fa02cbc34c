// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Forms.h"

#include "support/RuntimeError.h"

#include <QTimer>

#include <algorithm>

Forms::Forms(const Platform& platform)
    : m_platform(platform)
{
}

Forms::~Forms() = default;

void Forms::Register(const QString& name, Factory factory)
{
    m_factories[name] = std::move(factory);
}

Form& Forms::Touch(const QString& name)
{
    if (Form* const form = Loaded(name); form != nullptr) {
        return *form;
    }
    Form& form = *(m_loaded[name] = m_factories.at(name)());
    form.m_loaded = true;
    try {
        form.KeepWhile([&form] { form.OnLoad(); });
    } catch (...) {
        // The next Touch must not return a half-loaded window.
        Drop(form);
        throw;
    }
    if (!form.IsLoaded()) {
        throw RuntimeError(ErrorNumber::kFormUnloaded, QStringLiteral("The window has been unloaded"));
    }
    return form;
}

Form* Forms::Loaded(const QString& name) const
{
    const auto found = m_loaded.find(name);
    return found == m_loaded.end() ? nullptr : found->second.get();
}

void Forms::Unload(const QString& name)
{
    Form* const form = Loaded(name);
    if (form == nullptr || !form->m_loaded) {
        return;
    }
    form->m_loaded = false;
    try {
        form->OnUnload();
    } catch (...) {
        // The window stays loaded, so that it can be closed again.
        form->m_loaded = true;
        throw;
    }
    Drop(*form);
    if (!KeepsProcess() && m_lastUnloaded) {
        m_lastUnloaded();
    }
}

void Forms::Drop(Form& form)
{
    const auto found = m_loaded.find(form.Name());
    if (found == m_loaded.end() || found->second.get() != &form) {
        return;
    }
    form.m_loaded = false;
    form.hide();
    m_unloaded.push_back(std::move(found->second));
    m_loaded.erase(found);
    DisposeOfUnloaded();
}

MainForm& Forms::Main()
{
    if (m_main == nullptr) {
        throw RuntimeError(ErrorNumber::kObjectNotSet, QStringLiteral("There is no main window"));
    }
    return *m_main;
}

void Forms::ReturnToMain()
{
    Main().Enable(true);
    Main().TakeFocus();
    m_variables.ActiveForm = MainForm::kName;
}

bool Forms::IsMain(const Form& form) const
{
    return m_main != nullptr && dynamic_cast<const MainForm*>(&form) == m_main;
}

bool Forms::KeepsProcess() const
{
    // A popup that was loaded again by its own last tick is hidden, and the user can't close it. The main
    // window counts even before it is shown, since other windows open and close while it loads.
    return std::any_of(m_loaded.begin(), m_loaded.end(), [this](const auto& entry) {
        return entry.second->WasShown() || IsMain(*entry.second);
    });
}

void Forms::DisposeOfUnloaded()
{
    if (!m_unloaded.empty()) {
        QTimer::singleShot(0, this, &Forms::Dispose);
    }
}

void Forms::Dispose()
{
    std::erase_if(m_unloaded, [this](const std::unique_ptr<Form>& form) {
        return !form->IsHandling() && !IsMain(*form);
    });
}
