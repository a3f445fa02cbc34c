// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CalculationLibrary.h"
#include "fakes/Desk.h"
#include "fakes/DialogWindows.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "fakes/StartWindows.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"

#include <QLabel>

#include <stdexcept>

/// The whole program, with all its windows and the true calculation, on a fake platform.
class ProgramWorld
{
public:
    /// @param http null for the table of replies of the fakes
    ProgramWorld(FileStore& files, Http* http, const QString& settings)
        : interfaces(platform.With(files, http != nullptr ? *http : platform.http))
        , forms{interfaces}
    {
        WriteSettings(settings);
        platform.http.reachable = true;
        RegisterStartWindows(forms, calculation);
        RegisterDialogWindows(forms, signup);
    }

    FrmMain& Start()
    {
        m_main = &forms.Touch<FrmMain>();
        m_main->Show();
        Desk::Settle();
        return *m_main;
    }
    [[nodiscard]] FrmMain& Main() const { return *m_main; }
    [[nodiscard]] Form* Loaded(const QString& name) const { return forms.Loaded(name); }
    [[nodiscard]] bool IsUp(const QString& name) const
    {
        const Form* const form = Loaded(name);
        return form != nullptr && form->isVisible();
    }

    /// A control in a window that is loaded.
    template <typename Control = QWidget>
    [[nodiscard]] Control& Find(const QString& window, const char* name) const
    {
        Form* const form = Loaded(window);
        auto* const control = form == nullptr ? nullptr : form->findChild<Control*>(QLatin1String(name));
        if (control == nullptr) {
            throw std::runtime_error(window.toStdString() + " has no " + name);
        }
        return *control;
    }
    void Click(const QString& window, const char* name) const
    {
        auto& control = Find(window, name);
        if (!control.isVisible() || !control.isEnabled()) {
            throw std::runtime_error(std::string(name) + " is hidden or disabled");
        }
        // Beside the middle, where a check box has its text.
        QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(8, control.height() / 2));
        Desk::Settle();
    }
    /// The timer of the popup; null if none runs.
    [[nodiscard]] FakeTimer* PopupTimer() const
    {
        for (FakeTimer* const timer : platform.timers.all) {
            if (timer->enabled && !timer->isSecondTicker) {
                return timer;
            }
        }
        return nullptr;
    }
    [[nodiscard]] QString Text(const char* label) const { return Find<QLabel>(FrmMain::kName, label).text(); }

    FakePlatform platform;
    Platform interfaces;
    CalculationLibrary calculation{QStringLiteral(DUSKBEACON_BIN_FOLDER)};
    Forms forms;
    MobileSignup signup{forms};

private:
    FrmMain* m_main = nullptr;
};
