// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/GStreamerPlayer.h"

#include "platform/Playback.h"

#include <algorithm>
#include <utility>

GStreamerPlayer::GStreamerPlayer()
    : m_volume(m_volumeFile.Read())
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
    m_volumeFile.Write(m_volume);
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
