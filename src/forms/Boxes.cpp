// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Boxes.h"

CheckBox::CheckBox(QWidget* parent)
    : QCheckBox(parent)
{
    connect(this, &QCheckBox::toggled, this, [this] {
        if (m_click) {
            m_click();
        }
    });
}

OptionButton::OptionButton(QWidget* parent)
    : QRadioButton(parent)
{
    connect(this, &QRadioButton::toggled, this, [this](bool selected) {
        if (selected && m_click) {
            m_click();
        }
    });
}

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
