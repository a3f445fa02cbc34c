// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Canvas.h"
#include "Icon.h"
#include "Pictures.h"

#include <QFile>
#include <QPainter>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

/// The mean difference of a channel, in steps of 255; a large number where the two cannot be compared.
double Difference(QImage one, QImage other)
{
    one.convertTo(QImage::Format_ARGB32_Premultiplied);
    other.convertTo(QImage::Format_ARGB32_Premultiplied);
    if (one.isNull() || one.size() != other.size()) {
        return 1000;
    }
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                   std::abs(qBlue(a) - qBlue(b)) + std::abs(qAlpha(a) - qAlpha(b));
        }
    }
    return sum / (4.0 * one.width() * one.height());
}

/// Room for another release of the font or of the painter, but not for a forgotten run of the generator.
constexpr double kSamePicture = 0.25;

TEST(Drawing, drawnTwice_isTheSame)
{
    const std::vector<art::Picture> first = art::PicturesAt(2);
    const std::vector<art::Picture> second = art::PicturesAt(2);
    ASSERT_EQ(first.size(), 11U);
    ASSERT_EQ(first.size(), second.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i].image, second[i].image) << first[i].name.toStdString();
    }
    EXPECT_EQ(art::Icon(48), art::Icon(48));
}

TEST(Drawing, shippedPictures_areWhatIsDrawn)
{
    for (const int scale : art::kScales) {
        for (const art::Picture& picture : art::PicturesAt(scale)) {
            const QString file = art::PictureFileName(picture.name, scale);
            EXPECT_LT(Difference(QImage(QStringLiteral(":/pictures/") + file), picture.image), kSamePicture)
                << file.toStdString();
        }
    }
}

TEST(Drawing, shippedIcons_areWhatIsDrawn)
{
    for (const int size : art::kIconSizes) {
        const QImage shipped(QStringLiteral(":/icons/duskbeacon-%1.png").arg(size));
        EXPECT_LT(Difference(shipped, art::Icon(size)), kSamePicture) << size;
    }
    for (const auto& [detail, name] :
         {std::pair{art::IconDetail::Full, ":/icons/duskbeacon.svg"},
          std::pair{art::IconDetail::Simplified, ":/icons/duskbeacon-small.svg"}}) {
        QFile file(QString::fromLatin1(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        EXPECT_EQ(file.readAll(), art::IconAsSvg(detail)) << name;
    }
}

TEST(Drawing, shippedIconFile_holdsTheShippedIcons)
{
    std::vector<QByteArray> pngFiles;
    for (const int size : art::kIconSizes) {
        QFile file(QStringLiteral(":/icons/duskbeacon-%1.png").arg(size));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << size;
        pngFiles.push_back(file.readAll());
    }
    QFile file(QStringLiteral(DUSKBEACON_ICON_FILE));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), art::IconFile(pngFiles));
}

// As https://learn.microsoft.com/previous-versions/ms997538(v=msdn.10) describes the file.
TEST(Drawing, iconFile_hasARowForEachPicture)
{
    const QByteArray small = QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x10", 20);
    const QByteArray large = QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\0\0", 21);
    const QByteArray expected = QByteArray("\0\0\1\0\2\0", 6) +
                                QByteArray("\x10\x10\0\0\1\0\x20\0\x14\0\0\0\x26\0\0\0", 16) +
                                QByteArray("\0\0\0\0\1\0\x20\0\x15\0\0\0\x3a\0\0\0", 16) + small + large;
    EXPECT_EQ(art::IconFile({small, large}), expected);
}

TEST(Drawing, pictureFileName_carriesTheScaleFromTwoOn)
{
    EXPECT_EQ(art::PictureFileName(QStringLiteral("PicSun"), 1), QStringLiteral("PicSun.png"));
    EXPECT_EQ(art::PictureFileName(QStringLiteral("PicSun"), 3), QStringLiteral("PicSun@3x.png"));
}

TEST(Drawing, cutOut_softensTheEdgeInThePictureOnly)
{
    // Columns 0 to 3 are empty, a tenth covered, half covered, wholly covered with white.
    const QImage shape = art::Render(QSize(4, 1), 1, [](QPainter& painter) {
        painter.fillRect(QRectF(1.9, 0, 0.1, 1), Qt::white);
        painter.fillRect(QRectF(2.5, 0, 1.5, 1), Qt::white);
    });
    QImage behind(shape.size(), QImage::Format_RGB32);
    behind.fill(QColor(0, 0, 100));
    const art::Sprite sprite = art::CutOut(shape, behind, 0.3);
    EXPECT_EQ(sprite.mask.pixel(0, 0), 0xffffffffU);
    EXPECT_EQ(sprite.mask.pixel(1, 0), 0xffffffffU);
    EXPECT_EQ(sprite.mask.pixel(2, 0), 0xff000000U);
    EXPECT_EQ(sprite.mask.pixel(3, 0), 0xff000000U);
    EXPECT_EQ(sprite.picture.pixel(0, 0), 0xff000000U);
    EXPECT_EQ(sprite.picture.pixel(1, 0), 0xff000000U);
    EXPECT_NEAR(qRed(sprite.picture.pixel(2, 0)), 128, 2);
    EXPECT_NEAR(qBlue(sprite.picture.pixel(2, 0)), 178, 2);
    EXPECT_EQ(sprite.picture.pixel(3, 0), 0xffffffffU);
}

TEST(Drawing, colourAt_answersTheStopsAndBetweenThem)
{
    constexpr std::array kGradient{art::Stop{0.25, 0xff000000}, art::Stop{0.75, 0xff6464c8}};
    EXPECT_EQ(art::ColourAt(kGradient, 0.0).rgb(), 0xff000000U);
    EXPECT_EQ(art::ColourAt(kGradient, 0.5).rgb(), 0xff323264U);
    EXPECT_EQ(art::ColourAt(kGradient, 0.75).rgb(), 0xff6464c8U);
    EXPECT_EQ(art::ColourAt(kGradient, 1.0).rgb(), 0xff6464c8U);
}

} // namespace
