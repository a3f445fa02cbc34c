// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/GStreamerPlayer.h"

void GStreamerPlayer::SetUrl(const QString& /*path*/) {}

void GStreamerPlayer::Stop()
{
    CallPlayStateHandler(kStopped);
}

void GStreamerPlayer::ClearPlaylist() {}
