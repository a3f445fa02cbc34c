// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CheckBox.h"

CheckBox::CheckBox(const QString& caption, QWidget* parent)
    : QCheckBox(caption, parent)
{
    connect(this, &QCheckBox::toggled, this, [this] {
        if (m_click) {
            m_click();
        }
    });
}
