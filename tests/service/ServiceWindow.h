// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "forms/Forms.h"
#include "forms/MainForm.h"

/// A main window with nothing in it.
class ServiceWindow final : public Form, public MainForm
{
public:
    static constexpr QLatin1String kName{"FrmMain"};

    explicit ServiceWindow(Forms& forms)
        : Form(forms, kName, Qt::Window)
    {
        resize(602, 423);
    }

    int UpdateEverything() override { return 0; }
    void PopLocation() override {}
    void PopPrayerFrame() override {}
    void Enable(bool /*enabled*/) override {}
    void TakeFocus() override {}
};

/// The window with fakes around it, loaded with the usual settings.
class ServiceWorld
{
public:
    ServiceWorld()
    {
        WriteSettings();
        forms.Register(ServiceWindow::kName, [this] { return std::make_unique<ServiceWindow>(forms); });
        window = &forms.Touch<ServiceWindow>();
        LoadConfiguration(window->Settings, platform.doors);
        window->AdTimer = 600.0F;
        window->ActiveForm = QStringLiteral("FrmMain");
        platform.http.reachable = true;
    }

    FakePlatform platform;
    Forms forms{platform.doors};
    ServiceWindow* window = nullptr;
};
