// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/VolumeFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

// Beside the program in a portable copy, where settings.xml lies there too, otherwise in
// %LOCALAPPDATA%\dusk-beacon.
QString VolumeFile::Path()
{
    const QString own = QCoreApplication::applicationDirPath();
    const QString folder = QFileInfo::exists(own + QStringLiteral("/settings.xml"))
                               ? own
                               : QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                     QStringLiteral("/dusk-beacon");
    return folder + QStringLiteral("/volume");
}
