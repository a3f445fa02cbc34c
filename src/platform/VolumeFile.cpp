// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/VolumeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

constexpr int kVolumeOfANewInstallation = 50;
constexpr qint64 kLongestContent = 16;

QString StateFolder()
{
    const QString named = qEnvironmentVariable("XDG_STATE_HOME");
    return QDir::isAbsolutePath(named) ? named : QDir::homePath() + QStringLiteral("/.local/state");
}

} // namespace

VolumeFile::VolumeFile()
    : m_path(StateFolder() + QStringLiteral("/dusk-beacon/volume"))
{
}

int VolumeFile::Read() const
{
    QFile file(m_path);
    // A pipe of that name would wait for its other end.
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > kLongestContent) {
        return kVolumeOfANewInstallation;
    }
    bool isNumber = false;
    const int volume = file.readAll().trimmed().toInt(&isNumber);
    return isNumber && volume >= 0 && volume <= 100 ? volume : kVolumeOfANewInstallation;
}

void VolumeFile::Write(int volume) const
{
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QByteArray::number(volume) + '\n');
        file.commit();
    }
}
