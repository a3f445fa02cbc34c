// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/DlgStart.h"
#include "app/FrmMain.h"
#include "fakes/FakeCalculation.h"
#include "fakes/FakePlatform.h"
#include "fakes/PlainWindow.h"
#include "forms/Forms.h"
#include "service/WebAd.h"

/// The main window as the program starts it, with the platform of a test.
class Program final
{
public:
    explicit Program(const Platform& interfaces)
        : forms(interfaces)
    {
        forms.Register(DlgStart::kName, [this] { return std::make_unique<DlgStart>(forms); });
        forms.Register(FrmMain::kName, [this] { return std::make_unique<FrmMain>(forms, calculation); });
        // Replaces the list of places, which a first start opens.
        PlainWindow::Register(forms, QStringLiteral("FrmLocation"));
    }
    FrmMain& Start() { return forms.Touch<FrmMain>(); }
    /// The text of the ad strip.
    [[nodiscard]] QString Strip()
    {
        return forms.Touch<FrmMain>().findChild<WebAd*>(QStringLiteral("WebAd"))->toPlainText();
    }

    Forms forms;
    FakeCalculation calculation;
};
