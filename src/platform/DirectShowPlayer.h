// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaPlayer.h"

/// Playback by DirectShow.
class DirectShowPlayer final : public MediaPlayer
{
public:
    void SetUrl(const QString& path) override;
    void Stop() override;
    void ClearPlaylist() override;
    [[nodiscard]] int Volume() const override;
    void SetVolume(int volume) override;
};
