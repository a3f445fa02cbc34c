// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// True if no frame of a GIF unpacks to more than @p mostPixels; those that its place in the picture can't
/// hold count too, since a decoder goes through them all. A file that ends early is judged by what is there.
/// Source of the format: GIF89a, appendix F.
[[nodiscard]] bool HasModestFrames(const QByteArray& gif, qint64 mostPixels);
