// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/FirstTouchFixture.h"
#include "fakes/Desk.h"
#include "fakes/PlainWindow.h"

#include <QAction>
#include <QMenu>

/// The main window, loaded from a valid file and shown, among plain windows that stand in for the dialogs.
class MainWindowFixture : public FirstTouchFixture
{
protected:
    MainWindowFixture()
    {
        for (const char* name : {"FrmAlerts", "FrmLocation", "FrmNewLoc", "FrmPopup", "FrmWait"}) {
            PlainWindow::Register(forms, QLatin1String(name));
        }
        forms.SetLastUnloadedHandler([this] { ++ended; });
    }
    ~MainWindowFixture() override { Desk::Settle(); }

    FrmMain& Start()
    {
        m_main = &Window();
        m_main->Show();
        Desk::Settle();
        return *m_main;
    }
    /// Into the notification area, if there is one.
    static void Minimise(QWidget& window)
    {
        window.showMinimized();
        Desk::Settle();
    }
    static void Close(QWidget& window)
    {
        window.close();
        Desk::Settle();
    }
    PlainWindow& Dialog(const char* name) { return PlainWindow::Touch(forms, QLatin1String(name)); }
    /// Opens a dialog as a link does: shown, and named by ActiveForm.
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

    int ended = 0;

private:
    FrmMain* m_main = nullptr;
};
