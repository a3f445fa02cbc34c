// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/VolumeFile.h"

#include "platform/SystemFileStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int kVolumeOfANewInstallation = 50;
constexpr qint64 kLongestVolumeFile = 16;

} // namespace

int VolumeFile::Read() const
{
    QFile file(m_path);
    // Opening a pipe would block.
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > kLongestVolumeFile) {
        return kVolumeOfANewInstallation;
    }
    bool isNumber = false;
    const int volume = file.readAll().trimmed().toInt(&isNumber);
    return isNumber && volume >= 0 && volume <= 100 ? volume : kVolumeOfANewInstallation;
}

void VolumeFile::Write(int volume) const
{
    QDir().mkpath(QFileInfo(m_path).path());
    // Forgotten on failure.
    static_cast<void>(SystemFileStore().Replace(m_path, QByteArray::number(volume) + '\n'));
}
