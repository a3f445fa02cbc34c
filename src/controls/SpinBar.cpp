// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/SpinBar.h"

#include "support/RuntimeError.h"

SpinBar::SpinBar(int lowest, int highest, int value, QWidget* parent)
    : QScrollBar(Qt::Vertical, parent)
{
    setRange(lowest, highest);
    setSingleStep(1);
    setPageStep(1);
    setFocusPolicy(Qt::StrongFocus);
    // A vertical scroll bar counts downwards; here the high end is up.
    setInvertedAppearance(true);
    setInvertedControls(true);
    setValue(value);
    connect(this, &QScrollBar::valueChanged, this, [this] {
        if (m_change) {
            m_change();
        }
    });
}

void SpinBar::SetValue(int value)
{
    if (value < minimum() || value > maximum()) {
        throw RuntimeError(ErrorNumber::kInvalidPropertyValue, QStringLiteral("Invalid property value"));
    }
    setValue(value);
}
