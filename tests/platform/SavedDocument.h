// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// A document of realistic size that differs for each number. Its first line is "<root number="…">".
[[nodiscard]] inline QByteArray SavedDocument(int number)
{
    constexpr int kPlaces = 80;
    const QByteArray text = QByteArray::number(number);
    QByteArray document = "<root number=\"" + text + "\">\n";
    for (int i = 0; i < kPlaces; ++i) {
        document += "  <place city=\"" + text + "\" latitude_final=\"41.85\" longitude_final=\"-87.65\"/>\n";
    }
    return document + "</root>\n";
}
