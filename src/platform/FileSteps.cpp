// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileSteps.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

std::optional<QByteArray> WholeContent(QFile& file, qint64 limit)
{
    if (file.size() > limit) {
        return std::nullopt;
    }
    // read() allocates all that it is asked for, so ask for the size; a file in /proc has size 0, another may
    // have grown.
    QByteArray content = file.read(file.size() + 1);
    if (!file.atEnd()) {
        content += file.read(limit + 1 - content.size());
    }
    if (file.error() != QFileDevice::NoError || content.size() > limit) {
        return std::nullopt;
    }
    return content;
}

QByteArray NewSuffix()
{
    return ".saving-" + QUuid::createUuid().toByteArray(QUuid::Id128).left(6);
}

QStringList FilesBeside(const QFileInfo& target)
{
    QStringList paths = target.dir().entryList({target.fileName() + QStringLiteral(".saving-??????")},
                                               QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (QString& path : paths) {
        path = target.dir().filePath(path);
    }
    return paths;
}
