// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/Desk.h"
#include "fakes/FakeCalculation.h"
#include "fakes/FakePlatform.h"
#include "fakes/PlainWindow.h"
#include "fakes/SettingsFile.h"
#include "fakes/StartWindows.h"
#include "forms/Forms.h"

#include <QAction>
#include <QMenu>

#include <gtest/gtest.h>

/// The main window, loaded from a valid file and shown, among plain windows that stand in for the dialogs.
class MainWindowFixture : public testing::Test
{
protected:
    MainWindowFixture()
    {
        WriteSettings();
        RegisterStartWindows(forms, calculation);
        for (const char* name : {"FrmAlerts", "FrmLocation", "FrmNewLoc", "FrmPopup", "FrmWait"}) {
            PlainWindow::Register(forms, QLatin1String(name));
        }
        forms.SetLastUnloadedHandler([this] { ++ended; });
    }
    ~MainWindowFixture() override { Desk::Settle(); }

    FrmMain& Start()
    {
        m_main = &forms.Touch<FrmMain>();
        m_main->Show();
        Desk::Settle();
        return *m_main;
    }
    PlainWindow& Dialog(const char* name) { return PlainWindow::Touch(forms, QLatin1String(name)); }
    /// A dialog as a link leaves it: up, and named as the one that has the attention.
    PlainWindow& OpenDialog(const char* name)
    {
        PlainWindow& dialog = Dialog(name);
        dialog.Show();
        m_main->Variables().ActiveForm = QLatin1String(name);
        Desk::Settle();
        dialog.focusRequests = 0;
        return dialog;
    }
    void Activate(QWidget& window)
    {
        QApplication::setActiveWindow(&window);
        Desk::Settle();
    }
    void ClickMenu(const char* entry)
    {
        ASSERT_NE(platform.tray.lastMenu, nullptr);
        auto* const action = platform.tray.lastMenu->findChild<QAction*>(QLatin1String(entry));
        ASSERT_NE(action, nullptr) << entry;
        action->trigger();
        Desk::Settle();
    }

    FakePlatform platform;
    FakeCalculation calculation;
    Forms forms{platform.doors};
    int ended = 0;

private:
    FrmMain* m_main = nullptr;
};
