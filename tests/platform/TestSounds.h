// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Writes a sine tone of half amplitude into a file, in the format that its ending names: wav, mp3, ogg or
/// flac. False if an encoder is missing.
[[nodiscard]] bool WriteTone(const QString& path, double hertz, double seconds);
