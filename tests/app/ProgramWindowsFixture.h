// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/FirstTouchFixture.h"
#include "fakes/Desk.h"
#include "fakes/DialogWindows.h"
#include "forms/LinkLabel.h"

/// The main window and the real other windows, opened as a user opens them.
class ProgramWindowsFixture : public FirstTouchFixture
{
protected:
    ProgramWindowsFixture()
    {
        RegisterDialogWindows(forms, signup);
        platform.http.reachable = true;
        platform.http.replies[QStringLiteral("getStates.pl")] =
            "<root><a state='Illinois' state_id='17'/><b state='Egypt' state_id='EG'/></root>";
    }
    ~ProgramWindowsFixture() override { Desk::Settle(); }

    Form& OpenMain()
    {
        Window().Show();
        return Active(Window());
    }
    /// @param link of the main window; opens the page to which it belongs
    Form& OpenAlerts(const char* link = "LblAlertsLink") { return Open(OpenMain(), link, FrmAlerts::kName); }
    Form& OpenList() { return Open(OpenMain(), "LblLocLink", FrmLocation::kName); }
    Form& OpenSearch() { return Open(OpenList(), "LblNewLocLink", FrmNewLoc::kName); }
    Form& OpenPopup()
    {
        OpenMain();
        auto& popup = forms.Touch<FrmPopup>();
        popup.ShowPopup(QStringLiteral("Prayer Time:\r\nMaghrib: 18:42"), 600);
        return Active(popup);
    }

    static void Click(const Form& window, const char* name)
    {
        Desk::Click(*window.findChild<QWidget*>(QLatin1String(name)));
    }

private:
    static Form& Active(Form& window)
    {
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window)) {
            qFatal("a window does not become active");
        }
        Desk::Settle();
        return window;
    }
    Form& Open(Form& from, const char* link, QLatin1String name)
    {
        Click(from, link);
        if (forms.Loaded(name) == nullptr) {
            qFatal("%s opens nothing", link);
        }
        return Active(*forms.Loaded(name));
    }

    MobileSignup signup{forms};
};
