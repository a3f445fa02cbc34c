// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>

/// Makes a named pipe, whose reader waits for a writer.
[[nodiscard]] inline bool MakePipe(const QString& path)
{
    return ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
}
