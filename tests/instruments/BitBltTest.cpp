// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/BitBlt.h"

#include <QImage>

#include <gtest/gtest.h>

namespace {

QImage Plain(int width, int height, QRgb colour)
{
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

TEST(BitBlt, eachOperation_combinesEachBit)
{
    const std::pair<RasterOperation, QRgb> results[]{{RasterOperation::SRCCOPY, 0xff0ff0aa},
                                                     {RasterOperation::SRCAND, 0xff00f088},
                                                     {RasterOperation::SRCPAINT, 0xff0ff0ee}};
    for (const auto& [operation, result] : results) {
        QImage destination = Plain(2, 2, 0xff00f0cc);
        BitBlt(destination, 0, 0, Plain(2, 2, 0xff0ff0aa), operation);
        EXPECT_EQ(destination, Plain(2, 2, result)) << std::hex << result;
    }
}

TEST(BitBlt, codes_areThoseOfTheWindowSystem)
{
    EXPECT_EQ(static_cast<quint32>(RasterOperation::SRCCOPY), 0xCC0020U);
    EXPECT_EQ(static_cast<quint32>(RasterOperation::SRCAND), 0x8800C6U);
    EXPECT_EQ(static_cast<quint32>(RasterOperation::SRCPAINT), 0xEE0086U);
}

TEST(BitBlt, maskThenPicture_replacesTheShapeOnly)
{
    QImage mask = Plain(3, 1, 0xffffffff);
    mask.setPixel(1, 0, 0xff000000);
    QImage picture = Plain(3, 1, 0xff000000);
    picture.setPixel(1, 0, 0xffabcdef);
    QImage destination = Plain(3, 1, 0xff123456);
    BitBlt(destination, 0, 0, mask, RasterOperation::SRCAND);
    BitBlt(destination, 0, 0, picture, RasterOperation::SRCPAINT);
    EXPECT_EQ(destination.pixel(0, 0), 0xff123456);
    EXPECT_EQ(destination.pixel(1, 0), 0xffabcdef);
    EXPECT_EQ(destination.pixel(2, 0), 0xff123456);
}

TEST(BitBlt, source_isCutOffAtTheEdges)
{
    struct Row
    {
        const char* name;
        QPoint corner;
        QRect covered;
    };
    const Row rows[]{{"inside", {3, 2}, {3, 2, 4, 3}},
                     {"left top", {-2, -1}, {0, 0, 2, 2}},
                     {"right bottom", {8, 6}, {8, 6, 2, 2}},
                     {"just left", {-4, 0}, {}},
                     {"just below", {0, 8}, {}},
                     {"far away", {-32768, 32767}, {}}};
    // Each source pixel differs, so that a shifted row shows.
    QImage source(4, 3, QImage::Format_RGB32);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            source.setPixel(x, y, qRgb(10 * x + 1, 10 * y + 1, 200));
        }
    }
    for (const auto& [name, corner, covered] : rows) {
        QImage destination = Plain(10, 8, 0xff000000);
        BitBlt(destination, corner.x(), corner.y(), source, RasterOperation::SRCCOPY);
        for (int y = 0; y < 8; ++y) {
            for (int x = 0; x < 10; ++x) {
                const QRgb expected =
                    covered.contains(x, y) ? source.pixel(QPoint(x, y) - corner) : 0xff000000;
                ASSERT_EQ(destination.pixel(x, y), expected) << name << ' ' << x << ',' << y;
            }
        }
    }
}

TEST(BitBlt, missingPicture_changesNothing)
{
    QImage destination = Plain(2, 2, 0xff123456);
    BitBlt(destination, 0, 0, QImage(), RasterOperation::SRCCOPY);
    EXPECT_EQ(destination, Plain(2, 2, 0xff123456));
}

} // namespace
