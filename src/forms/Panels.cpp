// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Panels.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// Switches a painter to the pixels of the screen.
class ScreenPixels final
{
public:
    explicit ScreenPixels(QPainter& painter)
        : m_painter(painter)
        , m_toScreen(painter.deviceTransform())
    {
        m_painter.save();
        m_painter.setWorldTransform(m_toScreen.inverted() * m_painter.worldTransform());
        m_painter.setRenderHint(QPainter::Antialiasing);
    }
    ScreenPixels(const ScreenPixels&) = delete;
    ScreenPixels& operator=(const ScreenPixels&) = delete;
    ~ScreenPixels() { m_painter.restore(); }

    [[nodiscard]] double Scale() const { return m_toScreen.m11(); }
    [[nodiscard]] int LineWidth() const { return std::max(1, static_cast<int>(Scale())); }
    /// Rounds each edge, as Qt does for the region of a widget, so that no line lies outside of it.
    [[nodiscard]] QRect Rounded(const QRect& rect) const
    {
        const QRectF exact = m_toScreen.mapRect(QRectF(rect));
        const QPoint end(qRound(exact.right()), qRound(exact.bottom()));
        return {QPoint(qRound(exact.left()), qRound(exact.top())), end - QPoint(1, 1)};
    }

private:
    QPainter& m_painter;
    const QTransform m_toScreen;
};

} // namespace

void DrawPanel(QPainter& painter, const QRect& rect, const QBrush& fill, const QColor& line,
               double cornerRadius)
{
    const ScreenPixels screen(painter);
    const double inset = screen.LineWidth() / 2.0;
    const double radius = cornerRadius * screen.Scale() - inset;
    painter.setPen(QPen(line, screen.LineWidth()));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(screen.Rounded(rect)).adjusted(inset, inset, -inset, -inset), radius,
                            radius);
}

void DrawEdge(QPainter& painter, const QRect& rect, Qt::Edge edge, const QColor& line)
{
    const ScreenPixels screen(painter);
    QRect pixels = screen.Rounded(rect);
    if (edge == Qt::TopEdge) {
        pixels.setHeight(screen.LineWidth());
    } else {
        pixels.setWidth(screen.LineWidth());
    }
    painter.fillRect(pixels, line);
}

void DrawArrow(QPainter& painter, const QRect& rect, Qt::ArrowType direction, const QColor& colour)
{
    const ScreenPixels screen(painter);
    const bool isVertical = direction == Qt::UpArrow || direction == Qt::DownArrow;
    const double outwards = direction == Qt::UpArrow || direction == Qt::LeftArrow ? -1.0 : 1.0;
    const QPointF centre = QRectF(screen.Rounded(rect)).center();
    const double height = std::round(3.0 * screen.Scale());
    // The base lies on the edge of a pixel.
    const double base = std::round((isVertical ? centre.y() : centre.x()) - outwards * height / 2.0);
    const double tip = base + outwards * height;
    const double middle = isVertical ? centre.x() : centre.y();
    const auto at = [isVertical](double along, double across) {
        return isVertical ? QPointF(across, along) : QPointF(along, across);
    };
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(
        std::array{at(base, middle - height), at(base, middle + height), at(tip, middle)}.data(), 3);
}

void DrawCheckMark(QPainter& painter, const QRect& rect, const QColor& colour)
{
    const ScreenPixels screen(painter);
    const QRectF box(screen.Rounded(rect));
    const auto at = [&box](double across, double down) {
        return QPointF(box.left() + across * box.width(), box.top() + down * box.height());
    };
    painter.setPen(QPen(colour, 2.0 * screen.Scale(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(std::array{at(0.26, 0.52), at(0.43, 0.70), at(0.74, 0.30)}.data(), 3);
}
