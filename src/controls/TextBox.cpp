// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/TextBox.h"

TextBox::TextBox(QWidget* parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textChanged, this, [this] { Changed(); });
    connect(this, &QLineEdit::returnPressed, this, [this] {
        if (m_enter) {
            m_enter();
        }
    });
}

void TextBox::Changed()
{
    if (m_change) {
        m_change();
    }
}
