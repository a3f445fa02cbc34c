// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtProcess.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QThread>

#include <cstdlib>

void QtProcess::End()
{
    // Destructors would unload windows, and that is what a fatal end must not do.
    std::_Exit(EXIT_FAILURE);
}

void QtProcess::Sleep(int milliseconds)
{
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

QString QtProcess::ApplicationFolder() const
{
    return QCoreApplication::applicationDirPath();
}

QString QtProcess::UserDataFolder() const
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/dusk-beacon");
}
