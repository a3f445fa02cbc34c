// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmWait.h"

#include "forms/Forms.h"
#include "forms/Layout.h"

#include <QLabel>

// Without a close button: there is nothing that closing it could stop.
FrmWait::FrmWait(Forms& forms)
    : Form(forms, kName, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
{
    setWindowTitle(QStringLiteral("Dusk Beacon"));
    setFixedSize(Pixels(3300), Pixels(1200));
    auto* const label1 = new QLabel(QStringLiteral("Please Wait..."), this);
    label1->setObjectName(QStringLiteral("Label1"));
    label1->setTextFormat(Qt::PlainText);
    label1->setAlignment(Qt::AlignCenter);
    label1->setGeometry(rect());
    CentreOver(forms.Loaded(Variables().ActiveForm));
}
