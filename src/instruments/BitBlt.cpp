// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/BitBlt.h"

#include <QImage>

#include <algorithm>
#include <cstddef>

namespace {

template <typename Combine>
void CombineRows(QImage& destination, const QRect& part, const QImage& source, QPoint corner, Combine combine)
{
    for (int row = part.top(); row <= part.bottom(); ++row) {
        auto* const to = reinterpret_cast<QRgb*>(destination.scanLine(row)) + part.left();
        const auto* const from = reinterpret_cast<const QRgb*>(source.constScanLine(row - corner.y())) +
                                 (part.left() - corner.x());
        std::transform(from, from + part.width(), to, to, combine);
    }
}

} // namespace

void BitBlt(QImage& destination, int left, int top, const QImage& source, RasterOperation operation)
{
    Q_ASSERT(destination.format() == QImage::Format_RGB32);
    Q_ASSERT(source.isNull() || source.format() == QImage::Format_RGB32);
    const QPoint corner(left, top);
    const QRect part = destination.rect() & QRect(corner, source.size());
    if (part.isEmpty()) {
        return;
    }
    // The unused byte is 255 in both, and stays so under each operation.
    switch (operation) {
    case RasterOperation::SRCCOPY:
        CombineRows(destination, part, source, corner, [](QRgb from, QRgb /*to*/) { return from; });
        break;
    case RasterOperation::SRCAND:
        CombineRows(destination, part, source, corner, [](QRgb from, QRgb to) { return from & to; });
        break;
    case RasterOperation::SRCPAINT:
        CombineRows(destination, part, source, corner, [](QRgb from, QRgb to) { return from | to; });
        break;
    }
}
