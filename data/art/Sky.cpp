// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Sky.h"

#include "Canvas.h"
#include "Landscape.h"

#include <QPainter>

namespace art {

namespace {

void DrawStars(QPainter& painter)
{
    constexpr int kCount = 120;
    unsigned state = 20260;
    const auto lot = [&state] {
        state = state * 1103515245U + 12345U;
        return ((state >> 8U) & 0xffffU) / 65536.0;
    };
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < kCount; ++i) {
        const QPointF place(lot() * kScene.width(), lot() * 96.0);
        const double brightness = lot();
        // Stars are fainter near the bright horizon, and most stars are small.
        QColor colour(kStar);
        colour.setAlphaF(
            static_cast<float>((0.35 + 0.65 * brightness * brightness) * (1.0 - place.y() / 104.0)));
        painter.setBrush(colour);
        const double radius = 0.38 + 0.42 * brightness * brightness * brightness;
        painter.drawEllipse(place, radius, radius);
    }
}

} // namespace

QImage DaySky(int scale)
{
    return VerticalGradient(kScene, scale, kDaySky);
}

QImage NightSky(int scale)
{
    QImage sky = VerticalGradient(kScene, scale, kNightSky);
    QPainter painter(&sky);
    painter.drawImage(0, 0, Render(kScene, scale, DrawStars));
    return sky;
}

} // namespace art
