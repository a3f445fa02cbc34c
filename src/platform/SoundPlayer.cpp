// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SoundPlayer.h"

#include "platform/Playback.h"

#include <algorithm>
#include <utility>

SoundPlayer::SoundPlayer() = default;

SoundPlayer::~SoundPlayer()
{
    if (m_playback) {
        m_playback->End();
        m_playback->WaitForEnd();
    }
}

void SoundPlayer::SetUrl(const QString& path)
{
    const std::shared_ptr<Playback> before = std::exchange(m_playback, nullptr);
    if (before) {
        before->End();
    }
    const quint64 playNumber = ++m_playNumber;
    m_playback = std::make_shared<Playback>(&m_receiver, [this, playNumber] { ReportStopped(playNumber); });
    m_playback->Start(path, m_volume, before);
}

void SoundPlayer::Stop()
{
    if (m_playback) {
        m_playback->End();
    }
    QMetaObject::invokeMethod(
        &m_receiver, [this, playNumber = m_playNumber] { ReportStopped(playNumber); }, Qt::QueuedConnection);
}

void SoundPlayer::ClearPlaylist()
{
    if (m_playback) {
        m_playback->End();
    }
}

void SoundPlayer::SetVolume(int volume)
{
    const int limited = std::clamp(volume, 0, 100);
    if (limited == m_volume) {
        return;
    }
    m_volume = limited;
    m_volumeFile.Write(m_volume);
    if (m_playback) {
        m_playback->SetVolume(m_volume);
    }
}

void SoundPlayer::ReportStopped(quint64 playNumber)
{
    if (playNumber == m_playNumber) {
        CallPlayStateHandler(kStopped);
    }
}
