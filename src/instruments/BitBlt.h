// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class QImage;

/// The operation on each destination pixel; the values are the codes of the window system's raster
/// operations.
enum class RasterOperation : quint32 {
    SRCCOPY = 0xCC0020,  ///< destination = source
    SRCAND = 0x8800C6,   ///< destination = destination AND source
    SRCPAINT = 0xEE0086, ///< destination = destination OR source
};

/// Copies the source to the destination with its top left corner at @p left, @p top; parts outside are
/// clipped. Colours are combined bit by bit, in memory: some paint engines lack these operations, and none of
/// them promises them for pictures with an alpha channel.
/// @param destination,source of QImage::Format_RGB32; two different pictures
/// @param left,top pixels, also negative
void BitBlt(QImage& destination, int left, int top, const QImage& source, RasterOperation operation);
