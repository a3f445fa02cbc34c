// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaPlayer.h"

/// Playback by GStreamer's playbin.
class GStreamerPlayer final : public MediaPlayer
{
public:
    void SetUrl(const QString& path) override;
    void Stop() override;
    void ClearPlaylist() override;
    [[nodiscard]] int Volume() const override { return m_volume; }
    void SetVolume(int volume) override { m_volume = volume; }

private:
    int m_volume = 50;
};
