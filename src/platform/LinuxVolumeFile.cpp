// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/VolumeFile.h"

#include <QDir>

// dusk-beacon/volume in XDG_STATE_HOME, or in ~/.local/state where that is unset or relative.
// Source: XDG Base Directory Specification 0.8.
QString VolumeFile::Path()
{
    const QString named = qEnvironmentVariable("XDG_STATE_HOME");
    const QString folder =
        QDir::isAbsolutePath(named) ? named : QDir::homePath() + QStringLiteral("/.local/state");
    return folder + QStringLiteral("/dusk-beacon/volume");
}
