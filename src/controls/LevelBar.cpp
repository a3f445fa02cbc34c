// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/LevelBar.h"

#include "support/RuntimeError.h"

LevelBar::LevelBar(int lowest, int highest, QWidget* parent)
    : QScrollBar(Qt::Horizontal, parent)
{
    setRange(lowest, highest);
    setTracking(false);
    // A scroll bar of its own takes its keys upside down: right would lower the level.
    setInvertedControls(false);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QScrollBar::valueChanged, this, [this] {
        if (m_change) {
            m_change();
        }
    });
}

void LevelBar::SetValue(int value)
{
    if (value < minimum() || value > maximum()) {
        throw RuntimeError(ErrorNumber::kInvalidPropertyValue, QStringLiteral("Invalid property value"));
    }
    setValue(value);
}
