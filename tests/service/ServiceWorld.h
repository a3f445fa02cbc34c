// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/FakeMain.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"

/// The window with fakes around it, loaded with the usual settings.
class ServiceWorld
{
public:
    ServiceWorld()
    {
        WriteSettings();
        forms.Register(FakeMain::kName, [this] { return std::make_unique<FakeMain>(forms); });
        window = &forms.Touch<FakeMain>();
        LoadConfiguration(window->Variables().Settings, platform.interfaces);
        window->Variables().AdTimer = 600.0F;
        platform.http.reachable = true;
    }

    FakePlatform platform;
    Forms forms{platform.interfaces};
    FakeMain* window = nullptr;
};
