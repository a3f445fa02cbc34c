// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/OptionButton.h"

OptionButton::OptionButton(const QString& caption, QWidget* parent)
    : QRadioButton(caption, parent)
{
    connect(this, &QRadioButton::toggled, this, [this](bool selected) {
        if (selected && m_click) {
            m_click();
        }
    });
}
