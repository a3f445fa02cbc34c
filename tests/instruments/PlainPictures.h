// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <vector>

/// A folder of plain pictures of the sizes that the sky needs, with a colour for each layer, so that each
/// pixel of a scene shows what was drawn there last. Sun and moon are full rectangles, so that their edges
/// are the edges of their pictures; the landscape fills the lowest rows.
class PlainPictures final
{
public:
    static constexpr QRgb kDay = 0xff4080ff;
    static constexpr QRgb kNight = 0xff101030;
    static constexpr QRgb kDayLand = 0xff208020;
    static constexpr QRgb kNightLand = 0xff081808;
    static constexpr QRgb kSun = 0xffffff00;
    static constexpr QRgb kMoon = 0xff909090;
    static constexpr int kLandTop = 95;

    explicit PlainPictures(const std::vector<int>& scales = {1})
    {
        for (const int scale : scales) {
            Save(QStringLiteral("PicBackDay"), Plain(273, 125, scale, kDay), scale);
            Save(QStringLiteral("PicBackNight"), Plain(273, 125, scale, kNight), scale);
            Save(QStringLiteral("PicFrontDayMask"), Land(scale, 0xffffffff, 0xff000000), scale);
            Save(QStringLiteral("PicFrontDay"), Land(scale, 0xff000000, kDayLand), scale);
            Save(QStringLiteral("PicFrontNightMask"), Land(scale, 0xffffffff, 0xff000000), scale);
            Save(QStringLiteral("PicFrontNight"), Land(scale, 0xff000000, kNightLand), scale);
            Save(QStringLiteral("PicSunMask"), Plain(32, 33, scale, 0xff000000), scale);
            Save(QStringLiteral("PicSun"), Plain(32, 33, scale, kSun), scale);
            Save(QStringLiteral("PicMoonMask"), Plain(31, 32, scale, 0xff000000), scale);
            Save(QStringLiteral("PicMoon"), Plain(31, 32, scale, kMoon), scale);
        }
    }

    [[nodiscard]] QString Folder() const { return m_folder.path(); }
    [[nodiscard]] QString Path(const QString& name, int scale = 1) const
    {
        const QString suffix = scale == 1 ? QString() : QStringLiteral("@%1x").arg(scale);
        return m_folder.filePath(name + suffix + QStringLiteral(".png"));
    }
    void Save(const QString& name, const QImage& picture, int scale = 1) const
    {
        if (!picture.save(Path(name, scale))) {
            qFatal("a picture can't be written");
        }
    }

    [[nodiscard]] static QImage Plain(int width, int height, int scale, QRgb colour)
    {
        QImage picture(width * scale, height * scale, QImage::Format_RGB32);
        picture.fill(colour);
        return picture;
    }

private:
    [[nodiscard]] static QImage Land(int scale, QRgb above, QRgb below)
    {
        QImage picture = Plain(273, 125, scale, above);
        QPainter(&picture).fillRect(0, kLandTop * scale, picture.width(), picture.height(), QColor(below));
        return picture;
    }

    QTemporaryDir m_folder;
};

/// The layers of a scene, read from its pixels.
[[nodiscard]] inline QRect BoundsOf(const QImage& scene, QRgb colour)
{
    QRect bounds;
    for (int y = 0; y < scene.height(); ++y) {
        for (int x = 0; x < scene.width(); ++x) {
            if (scene.pixel(x, y) == colour) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}
