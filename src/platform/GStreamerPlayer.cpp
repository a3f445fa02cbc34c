// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/GStreamerPlayer.h"

#include "platform/Playback.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace {

constexpr int kVolumeOfANewInstallation = 50;
constexpr qint64 kLongestVolumeFile = 16;

// dusk-beacon/volume in XDG_STATE_HOME, or in ~/.local/state where that is unset or relative.
// Source: XDG Base Directory Specification 0.8.
QString VolumeFile()
{
    const QString named = qEnvironmentVariable("XDG_STATE_HOME");
    const QString folder =
        QDir::isAbsolutePath(named) ? named : QDir::homePath() + QStringLiteral("/.local/state");
    return folder + QStringLiteral("/dusk-beacon/volume");
}

// 0 to 100
int ReadVolume(const QString& path)
{
    QFile file(path);
    // Opening a pipe would block.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > kLongestVolumeFile) {
        return kVolumeOfANewInstallation;
    }
    bool isNumber = false;
    const int volume = file.readAll().trimmed().toInt(&isNumber);
    return isNumber && volume >= 0 && volume <= 100 ? volume : kVolumeOfANewInstallation;
}

// After a crash the old or the new volume is there. A volume that can't be written is forgotten, nothing
// more.
void WriteVolume(const QString& path, int volume)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QByteArray::number(volume) + '\n');
        file.commit();
    }
}

} // namespace

GStreamerPlayer::GStreamerPlayer()
    : m_volumeFile(VolumeFile())
    , m_volume(ReadVolume(m_volumeFile))
{
}

GStreamerPlayer::~GStreamerPlayer()
{
    if (m_playback) {
        m_playback->End();
        m_playback->WaitForEnd();
    }
}

void GStreamerPlayer::SetUrl(const QString& path)
{
    const std::shared_ptr<Playback> before = std::exchange(m_playback, nullptr);
    if (before) {
        before->End();
    }
    const quint64 playNumber = ++m_playNumber;
    m_playback = std::make_shared<Playback>(&m_receiver, [this, playNumber] { ReportStopped(playNumber); });
    m_playback->Start(path, m_volume, before);
}

void GStreamerPlayer::Stop()
{
    if (m_playback) {
        m_playback->End();
    }
    QMetaObject::invokeMethod(
        &m_receiver, [this, playNumber = m_playNumber] { ReportStopped(playNumber); }, Qt::QueuedConnection);
}

void GStreamerPlayer::ClearPlaylist()
{
    if (m_playback) {
        m_playback->End();
    }
}

void GStreamerPlayer::SetVolume(int volume)
{
    const int limited = std::clamp(volume, 0, 100);
    if (limited == m_volume) {
        return;
    }
    m_volume = limited;
    WriteVolume(m_volumeFile, m_volume);
    if (m_playback) {
        m_playback->SetVolume(m_volume);
    }
}

void GStreamerPlayer::ReportStopped(quint64 playNumber)
{
    if (playNumber == m_playNumber) {
        CallPlayStateHandler(kStopped);
    }
}
