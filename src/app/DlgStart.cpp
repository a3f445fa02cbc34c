// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DlgStart.h"

#include "forms/Forms.h"
#include "forms/Layout.h"
#include "platform/Platform.h"
#include "support/RuntimeError.h"

#include <QLabel>

DlgStart::DlgStart(Forms& forms)
    : Form(forms, kName, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_timer1(Outside().timers.CreateTimer())
{
    setFixedSize(Pixels(3600), Pixels(1500));
    setWindowTitle(QStringLiteral("Dusk Beacon"));
    auto* const label1 = new QLabel(QStringLiteral("Build 5"), this);
    label1->setObjectName(QStringLiteral("Label1"));
    label1->setAlignment(Qt::AlignCenter);
    label1->setGeometry(TwipsRect(120, 300, 3360, 360));
    m_label2 = new QLabel(QStringLiteral("Loading...."), this);
    m_label2->setObjectName(QStringLiteral("Label2"));
    m_label2->setGeometry(TwipsRect(1200, 840, 2280, 360));
    CentreOver(nullptr);
    m_timer1->SetInterval(1000);
    m_timer1->SetHandler([this] {
        Handle([this] {
            try {
                Tick();
            } catch (const RuntimeError&) {
                // Dots that stand still are no reason to end a program that is about to come up.
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
