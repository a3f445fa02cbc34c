// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Contrast.h"

#include <QFile>
#include <QImage>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <string>

namespace {

QImage LoadIcon(int size)
{
    return QImage(QStringLiteral(":/icons/duskbeacon-%1.png").arg(size))
        .convertToFormat(QImage::Format_ARGB32);
}

/// The share of the icon's pixels that stand off from a panel by 3 to 1, the least for a graphical object.
double ShareStandingOff(const QImage& icon, QRgb panel)
{
    int count = 0;
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x) {
            const QRgb colour = icon.pixel(x, y);
            count += qAlpha(colour) > 200 && Contrast(colour, panel) >= 3.0 ? 1 : 0;
        }
    }
    return static_cast<double>(count) / (icon.width() * icon.height());
}

class ShippedIcon : public testing::TestWithParam<int>
{
};

TEST_P(ShippedIcon, fromResource_hasSizeAndTransparentCorners)
{
    const int size = GetParam();
    const QImage icon = LoadIcon(size);
    ASSERT_EQ(icon.size(), QSize(size, size));
    for (const QPoint corner :
         {QPoint(0, 0), QPoint(size - 1, 0), QPoint(0, size - 1), QPoint(size - 1, size - 1)}) {
        EXPECT_LT(qAlpha(icon.pixel(corner)), 100);
    }
    EXPECT_EQ(qAlpha(icon.pixel(size / 2, size / 2)), 255);
}

TEST_P(ShippedIcon, onLightAndDarkPanel_standsOff)
{
    const QImage icon = LoadIcon(GetParam());
    ASSERT_FALSE(icon.isNull());
    EXPECT_GT(ShareStandingOff(icon, 0xffeff0f1), 0.5);
    EXPECT_GT(ShareStandingOff(icon, 0xff232629), 0.2);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedIcon, testing::Values(16, 22, 24, 32, 48, 64, 128, 256),
                         [](const auto& row) { return "at" + std::to_string(row.param); });

TEST(ShippedVectorIcon, fromResource_isAWellFormedDrawing)
{
    for (const char* const name : {":/icons/duskbeacon.svg", ":/icons/duskbeacon-small.svg"}) {
        QFile file(QString::fromLatin1(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        QXmlStreamReader reader(&file);
        ASSERT_TRUE(reader.readNextStartElement()) << name;
        EXPECT_EQ(reader.name(), u"svg");
        EXPECT_EQ(reader.namespaceUri(), u"http://www.w3.org/2000/svg");
        int paths = 0;
        while (!reader.atEnd()) {
            reader.readNext();
            paths += reader.isStartElement() && reader.name() == u"path" ? 1 : 0;
        }
        EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
        EXPECT_GE(paths, 4) << name;
    }
}

TEST(ShippedBanner, name_isReadableOnTheSky)
{
    constexpr QRgb kLettering = 0xfffff4dc;
    for (const int scale : {1, 2, 3}) {
        const QString suffix = scale == 1 ? QString() : QStringLiteral("@%1x").arg(scale);
        const QImage banner = QImage(QStringLiteral(":/pictures/Picture2%1.png").arg(suffix));
        ASSERT_FALSE(banner.isNull()) << scale;
        int lettering = 0;
        for (int y = 16 * scale; y < 60 * scale; ++y) {
            // The third column lies beside the name, so that it shows the sky of its rows.
            EXPECT_GE(Contrast(banner.pixel(3 * scale, y), kLettering), 4.5) << scale << ' ' << y;
            for (int x = 0; x < banner.width(); ++x) {
                lettering += banner.pixel(x, y) == kLettering ? 1 : 0;
            }
        }
        EXPECT_GT(lettering, banner.width() * banner.height() / 20) << scale;
    }
}

} // namespace
