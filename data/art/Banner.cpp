// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Banner.h"

#include "Buildings.h"
#include "Canvas.h"

#include <QFont>
#include <QFontInfo>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace art {

namespace {

constexpr QSize kBanner{129, 89};
constexpr QPointF kTowerFoot{108, 80};
constexpr double kTowerHeight = 62;
constexpr double kTowerWidth = 6.4;

QPointF LanternPlace()
{
    return kTowerFoot - QPointF(0, kTowerHeight * 0.755);
}

void DrawStarsOfBanner(QPainter& painter)
{
    unsigned state = 88;
    const auto lot = [&state] {
        state = state * 1103515245U + 12345U;
        return ((state >> 8U) & 0xffffU) / 65536.0;
    };
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 34; ++i) {
        const QPointF place(lot() * kBanner.width(), lot() * 46.0);
        const double brightness = lot();
        QColor colour(kStar);
        colour.setAlphaF(static_cast<float>((0.25 + 0.6 * brightness) * (1.0 - place.y() / 52.0)));
        painter.setBrush(colour);
        const double radius = 0.3 + 0.35 * brightness * brightness;
        painter.drawEllipse(place, radius, radius);
    }
}

void DrawGlow(QPainter& painter)
{
    QRadialGradient glow(LanternPlace(), 40);
    for (const auto& [position, alpha] :
         {std::pair{0.0, 235}, {0.10, 150}, {0.30, 70}, {0.60, 22}, {1.0, 0}}) {
        QColor light = Mix(QColor(kLantern), QColor(kEmber), std::min(1.0, position * 2.5));
        light.setAlpha(alpha);
        glow.setColorAt(position, light);
    }
    painter.fillRect(QRectF(QPointF(0, 0), QSizeF(kBanner)), glow);
}

void DrawSilhouettes(QPainter& painter)
{
    const auto fillBelow = [&painter](QRgb colour, const auto& ridge) {
        painter.fillPath(BelowRidge(kBanner, ridge), QColor(colour));
    };
    fillBelow(0xff6b3f78,
              [](double x) { return 72 + 3.0 * std::sin(x / 17.0) + 1.4 * std::sin(x / 7.0 + 1.0); });
    fillBelow(0xff3a2a5e, [](double x) { return 77 + 2.0 * std::sin(x / 23.0 + 2.0); });
    painter.fillPath(DomeOutline(QPointF(91, 74), 6.5), QColor(kInk));
    painter.fillRect(QRectF(90.6, 61, 0.8, 5), QColor(kInk));
    painter.fillRect(QRectF(84, 74, 26, 10), QColor(kInk));
    painter.fillPath(MinaretOutline(kTowerFoot, kTowerHeight, kTowerWidth), QColor(kInk));
    painter.fillRect(QRectF(kTowerFoot.x() - 0.4, kTowerFoot.y() - kTowerHeight - 3, 0.8, 4), QColor(kInk));
    fillBelow(kInk, [](double x) { return 80.5 + 1.3 * std::sin(x / 19.0 + 0.5); });

    QPainterPath lantern;
    lantern.addRoundedRect(QRectF(LanternPlace() - QPointF(1.5, 3.4), QSizeF(3.0, 6.8)), 1.4, 1.4);
    painter.fillPath(lantern, QColor(0xff, 0xf6, 0xd0));
}

void DrawName(QPainter& painter)
{
    QFont font(QString::fromLatin1(kBannerFamily));
    font.setBold(true);
    font.setPixelSize(25);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (QFontInfo(font).family() != font.family()) {
        throw std::runtime_error("the font family of the banner is not installed");
    }
    QPainterPath name;
    name.addText(QPointF(8, 34), font, QStringLiteral("Dusk"));
    name.addText(QPointF(8, 59), font, QStringLiteral("Beacon"));
    painter.fillPath(name.translated(0.5, 1.0), QColor(0x12, 0x14, 0x3a, 120));
    painter.fillPath(name, QColor(kCream));
}

} // namespace

QImage Banner(int scale)
{
    QImage banner = VerticalGradient(kBanner, scale, kDuskSky);
    QPainter painter(&banner);
    painter.drawImage(0, 0, Render(kBanner, scale, [](QPainter& scene) {
                          DrawStarsOfBanner(scene);
                          DrawGlow(scene);
                          DrawSilhouettes(scene);
                          DrawName(scene);
                      }));
    return banner;
}

} // namespace art
