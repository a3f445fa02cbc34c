// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaPlayer.h"

#include <QObject>

#include <memory>

class Playback;

/// Playback by GStreamer's playbin; plays what its plugins can read from a regular file. A thread of its own
/// for each sound does everything that a file system or a sound server can hold up, so that no call for a
/// sound waits and one that hangs stands in nobody's way.
class GStreamerPlayer final : public MediaPlayer
{
public:
    GStreamerPlayer();
    ~GStreamerPlayer() override;
    GStreamerPlayer(const GStreamerPlayer&) = delete;
    GStreamerPlayer& operator=(const GStreamerPlayer&) = delete;

    void SetUrl(const QString& path) override;
    void Stop() override;
    void ClearPlaylist() override;
    [[nodiscard]] int Volume() const override { return m_volume; }
    /// Linear in amplitude. Values outside 0 to 100 are brought to the nearer limit. Waits until the disk has
    /// a new one: put off, it would be lost where the session ends the program at once.
    void SetVolume(int volume) override;

private:
    void ReportStopped(quint64 playNumber);

    QString m_volumeFile;
    int m_volume;
    /// Tells a report of the sound that plays from a late one of a sound that has been replaced.
    quint64 m_playNumber = 0;
    std::shared_ptr<Playback> m_playback;
    /// Reports to the user-interface thread go through it; none arrives once it is gone.
    QObject m_receiver;
};
