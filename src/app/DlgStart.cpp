// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DlgStart.h"

#include "forms/Forms.h"
#include "platform/Platform.h"
#include "support/RuntimeError.h"
#include "ui_DlgStart.h"

DlgStart::DlgStart(Forms& forms)
    : Form(forms, kName, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_timer1(GetPlatform().timers.CreateTimer())
{
    Ui::DlgStart ui;
    ui.setupUi(this);
    m_label2 = ui.Label2;
    CentreOver(nullptr);
    m_timer1->SetInterval(1000);
    m_timer1->SetHandler([this] {
        Handle([this] {
            try {
                Tick();
            } catch (const RuntimeError&) {
                // A failed animation must not end the program.
            }
        });
    });
    m_timer1->SetEnabled(true);
}

void DlgStart::Tick()
{
    if (DotCount > 10) {
        DotCount = 1;
    } else {
        ++DotCount;
    }
    m_label2->setText(QStringLiteral("Loading") + QString(DotCount, u'.'));
}
