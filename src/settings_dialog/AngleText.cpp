// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/AngleText.h"

#include <QLocale>

QString AngleForBox(QString stored, const QString& decimalSign)
{
    return stored.replace(u'.', decimalSign);
}

QString AngleAsTyped(const QString& text, const QString& decimalSign)
{
    QString typed;
    for (const QChar character : text) {
        if (character == u'.' || character == u',') {
            typed += decimalSign.isEmpty() ? QString(character) : decimalSign;
        } else if (character == u'\u2212') {
            typed += u'-';
        } else if (character != u'\u061c' && character != u'\u200e' && character != u'\u200f') {
            typed += character;
        }
    }
    return typed;
}

QString AngleForFile(QString typed, const QString& decimalSign, const QLocale& locale)
{
    // Replacing the empty text would put a point between all characters.
    if (!decimalSign.isEmpty()) {
        typed.replace(decimalSign, QStringLiteral("."));
    }
    typed.replace(locale.negativeSign(), QStringLiteral("-"));
    typed.replace(locale.positiveSign(), QStringLiteral("+"));
    for (QChar& character : typed) {
        if (character.isDigit()) {
            character = QChar(u'0' + character.digitValue());
        }
    }
    return typed;
}
