// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaPlayer.h"
#include "platform/VolumeFile.h"

#include <QObject>

#include <memory>

class Playback;

/// Plays regular files in the formats of the system's player (SoundPipeline). Each sound has its own thread
/// for all calls that a file system or a sound server can block, so that no call here waits and a sound that
/// hangs does not delay the next one.
class SoundPlayer final : public MediaPlayer
{
public:
    SoundPlayer();
    ~SoundPlayer() override;
    SoundPlayer(const SoundPlayer&) = delete;
    SoundPlayer& operator=(const SoundPlayer&) = delete;

    void SetUrl(const QString& path) override;
    void Stop() override;
    void ClearPlaylist() override;
    [[nodiscard]] int Volume() const override { return m_volume; }
    /// Linear in amplitude. Values outside 0 to 100 become the nearest limit. A new value is on the disk when
    /// the call returns.
    void SetVolume(int volume) override;

private:
    void ReportStopped(quint64 playNumber);

    VolumeFile m_volumeFile;
    int m_volume = m_volumeFile.Read();
    /// Identifies the current sound, so that late reports of replaced ones are ignored.
    quint64 m_playNumber = 0;
    std::shared_ptr<Playback> m_playback;
    /// Context of the reports to the user-interface thread: its destruction discards them.
    QObject m_receiver;
};
