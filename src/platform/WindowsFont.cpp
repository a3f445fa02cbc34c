// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SystemFont.h"

#include <QCoreApplication>
#include <QDir>
#include <QFontDatabase>

void LoadShippedFonts()
{
    const QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/fonts"));
    for (const QString& name : folder.entryList({QStringLiteral("*.ttf")}, QDir::Files)) {
        QFontDatabase::addApplicationFont(folder.filePath(name));
    }
}

QFont SystemFont(const QString& family)
{
    QFont font;
    // Letters of Arial have the same widths.
    font.setFamilies({family, QStringLiteral("Arial")});
    // Hinting rounds the width of each letter to whole pixels: texts would be up to 5 pixels too wide.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}
