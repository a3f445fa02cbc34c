// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DirectShowPlayer.h"

void DirectShowPlayer::SetUrl(const QString& /*path*/) {}

void DirectShowPlayer::Stop() {}

void DirectShowPlayer::ClearPlaylist() {}

int DirectShowPlayer::Volume() const
{
    return 100;
}

void DirectShowPlayer::SetVolume(int /*volume*/) {}
