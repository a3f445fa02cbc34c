// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Icon.h"

#include "Buildings.h"
#include "Canvas.h"

#include <QDataStream>
#include <QIODevice>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>
#include <numbers>
#include <vector>

namespace art {

namespace {

/// A filled path. With one stop the fill is plain, with more it is a gradient: from the top of the path down,
/// or, where `radius` is not zero, around `centre`.
struct Shape
{
    QPainterPath path;
    std::vector<Stop> stops;
    QPointF centre;
    double radius = 0;
};

struct Drawing
{
    double side;
    std::vector<Shape> shapes;
};

constexpr QRgb WithAlpha(QRgb colour, unsigned alpha)
{
    return (colour & 0x00ffffffU) | (alpha << 24U);
}

QPainterPath Rectangle(const QRectF& rect, double corner = 0)
{
    QPainterPath path;
    path.addRoundedRect(rect, corner, corner);
    return path;
}

/// Lighter than the ink of the banner, to be visible on a dark panel.
constexpr QRgb kIconInk = 0xff1e2058;

/// The sky of the tile down to `ground`, and ink below. A sky behind the ground would be visible along the
/// rounded corners.
std::vector<Stop> TileSky(double ground)
{
    return {{0.00, 0xff4a45a0},
            {ground * 0.36, 0xff6d4b9c},
            {ground * 0.66, 0xffb8588a},
            {ground * 0.88, 0xfff0875f},
            {ground, 0xffffc46b},
            {ground + 0.02, kIconInk},
            {1.00, kIconInk}};
}

Shape Glow(const QPainterPath& tile, QPointF centre, double radius)
{
    return {tile,
            {{0.0, WithAlpha(kLantern, 0xff)},
             {0.25, WithAlpha(kLantern, 0xc0)},
             {0.60, WithAlpha(kEmber, 0x40)},
             {1.0, WithAlpha(kEmber, 0x00)}},
            centre,
            radius};
}

/// A crescent that opens to the right and a little upwards: a disc without a smaller one. Made of the arcs of
/// the two circles, since subtracting one path from the other would turn them into polygons.
QPainterPath Crescent(QPointF centre, double radius)
{
    constexpr double kTilt = 32;
    constexpr double kDegrees = 180 / std::numbers::pi;
    const double bite = radius * 0.84;
    const double shift = radius * 0.52;
    const double along = (shift * shift + radius * radius - bite * bite) / (2 * shift);
    const double outer = std::acos(along / radius) * kDegrees;
    const double inner = std::acos((along - shift) / bite) * kDegrees;
    const QPointF middle = centre + shift * QPointF(std::cos(kTilt / kDegrees), -std::sin(kTilt / kDegrees));
    const QRectF outerBox(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
    const QRectF innerBox(middle - QPointF(bite, bite), QSizeF(2 * bite, 2 * bite));
    QPainterPath path;
    path.arcMoveTo(outerBox, kTilt + outer);
    path.arcTo(outerBox, kTilt + outer, 360 - 2 * outer);
    path.arcTo(innerBox, kTilt - inner, -(360 - 2 * inner));
    path.closeSubpath();
    return path;
}

Shape Plain(const QPainterPath& path, QRgb colour)
{
    return {path, {{0, colour}}, {}, 0};
}

/// The ground of a tile, down to its rounded lower corners; between the two sides it rises by about `rise`.
QPainterPath Ground(const QRectF& tile, double corner, double leftY, double rightY, double rise)
{
    constexpr double kDegrees = 180 / std::numbers::pi;
    const double cornerY = tile.bottom() - corner;
    const double left = 180 + std::asin((leftY - cornerY) / corner) * kDegrees;
    const double right = -std::asin((rightY - cornerY) / corner) * kDegrees;
    const QSizeF box(2 * corner, 2 * corner);
    const QRectF leftBox(QPointF(tile.left(), tile.bottom() - box.height()), box);
    const QRectF rightBox(tile.bottomRight() - QPointF(box.width(), box.height()), box);
    QPainterPath ground;
    ground.arcMoveTo(rightBox, right);
    const QPointF start = ground.currentPosition();
    ground.arcTo(rightBox, right, -90 - right);
    ground.arcTo(leftBox, 270, left - 270);
    ground.cubicTo(tile.left() + tile.width() * 0.25, leftY - rise, tile.left() + tile.width() * 0.63,
                   leftY - rise, start.x(), start.y());
    ground.closeSubpath();
    return ground;
}

QPainterPath FullGate()
{
    QPainterPath gate(QPointF(18, 52));
    gate.lineTo(18, 48);
    gate.quadTo(18, 45.5, 22, 43.8);
    gate.quadTo(26, 45.5, 26, 48);
    gate.lineTo(26, 52);
    gate.closeSubpath();
    return gate;
}

Drawing FullDrawing()
{
    constexpr QRectF kTile(2, 2, 60, 60);
    constexpr double kCorner = 13;
    const QPainterPath tile = Rectangle(kTile, kCorner);
    const QPointF foot(45, 54);
    constexpr double kHeight = 44;
    const QPointF lantern = foot - QPointF(0, kHeight * 0.755);
    return {64,
            {{tile, TileSky(0.88), {}, 0},
             Glow(tile, lantern, 22),
             Plain(Crescent(QPointF(15, 15), 5.4), kCream),
             Plain(DomeOutline(QPointF(22, 42.2), 12.5), kIconInk),
             Plain(Rectangle(QRectF(21.2, 18.5, 1.6, 6)), kIconInk),
             Plain(Rectangle(QRectF(9, 42, 30, 12)), kIconInk),
             Plain(MinaretOutline(foot, kHeight, 7.5), kIconInk),
             Plain(Rectangle(QRectF(foot.x() - 0.7, foot.y() - kHeight - 2, 1.4, 4)), kIconInk),
             Plain(Ground(kTile, kCorner, 52.6, 54.6, 3), kIconInk),
             Plain(FullGate(), kLantern),
             Plain(Rectangle(QRectF(lantern - QPointF(2, 4), QSizeF(4, 8)), 1.8), 0xfffff6d0)}};
}

/// One dome, one tower, one light, on whole units of a square of 16.
Drawing SimplifiedDrawing()
{
    constexpr QRectF kTile(0, 0, 16, 16);
    constexpr double kCorner = 3.2;
    const QPainterPath tile = Rectangle(kTile, kCorner);
    QPainterPath cap(QPointF(10.5, 3));
    cap.lineTo(12, 1);
    cap.lineTo(13.5, 3);
    cap.closeSubpath();
    return {16,
            {{tile, TileSky(0.81), {}, 0},
             Glow(tile, QPointF(12, 4.5), 6),
             Plain(DomeOutline(QPointF(5.5, 10.4), 3.0), kIconInk),
             Plain(Rectangle(QRectF(5, 4.6, 1, 3)), kIconInk),
             Plain(Rectangle(QRectF(2, 10, 7, 4)), kIconInk),
             Plain(Rectangle(QRectF(11, 6, 2, 8)), kIconInk),
             Plain(Rectangle(QRectF(10, 6, 4, 1)), kIconInk),
             Plain(cap, kIconInk),
             Plain(Ground(kTile, kCorner, 13, 13, 0), kIconInk),
             Plain(Rectangle(QRectF(11, 3, 2, 3)), 0xfffff6d0)}};
}

void Paint(QPainter& painter, const Shape& shape)
{
    if (shape.stops.size() == 1) {
        painter.fillPath(shape.path, QColor::fromRgba(shape.stops.front().colour));
        return;
    }
    const QRectF box = shape.path.boundingRect();
    QLinearGradient linear(box.topLeft(), box.bottomLeft());
    QRadialGradient radial(shape.centre, shape.radius);
    QGradient& gradient = shape.radius > 0 ? static_cast<QGradient&>(radial) : linear;
    for (const Stop& stop : shape.stops) {
        gradient.setColorAt(stop.position, QColor::fromRgba(stop.colour));
    }
    painter.fillPath(shape.path, gradient);
}

QByteArray Number(double value)
{
    return QByteArray::number(qRound(value * 1000) / 1000.0, 'g', 8);
}

QByteArray PathAsSvg(const QPainterPath& path)
{
    QByteArray text;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo()) {
            text += text.isEmpty() ? "M" : "Z M";
        } else if (element.isLineTo()) {
            text += " L";
        } else {
            text += element.isCurveTo() ? " C" : " ";
        }
        text += Number(element.x) + ',' + Number(element.y);
    }
    return text + 'Z';
}

QByteArray GradientAsSvg(const Shape& shape, const QByteArray& name)
{
    const QRectF box = shape.path.boundingRect();
    const QByteArray kind = shape.radius > 0 ? "radialGradient" : "linearGradient";
    QByteArray text = "    <" + kind + " id=\"" + name + "\" gradientUnits=\"userSpaceOnUse\" ";
    if (shape.radius > 0) {
        text += "cx=\"" + Number(shape.centre.x()) + "\" cy=\"" + Number(shape.centre.y()) + "\" r=\"" +
                Number(shape.radius) + "\">\n";
    } else {
        text += "x1=\"0\" y1=\"" + Number(box.top()) + "\" x2=\"0\" y2=\"" + Number(box.bottom()) + "\">\n";
    }
    for (const Stop& stop : shape.stops) {
        const QColor colour = QColor::fromRgba(stop.colour);
        text += "      <stop offset=\"" + Number(stop.position) + "\" stop-color=\"" +
                colour.name().toLatin1() + "\" stop-opacity=\"" + Number(colour.alphaF()) + "\"/>\n";
    }
    return text + "    </" + kind + ">\n";
}

} // namespace

QImage Icon(int size)
{
    const Drawing drawing = size > kLargestSimplified ? FullDrawing() : SimplifiedDrawing();
    return Render(QSize(size, size), 1, [&](QPainter& painter) {
        painter.scale(size / drawing.side, size / drawing.side);
        for (const Shape& shape : drawing.shapes) {
            Paint(painter, shape);
        }
    });
}

QByteArray IconAsSvg(IconDetail detail)
{
    const Drawing drawing = detail == IconDetail::Full ? FullDrawing() : SimplifiedDrawing();
    QByteArray gradients;
    QByteArray paths;
    for (const Shape& shape : drawing.shapes) {
        QByteArray fill = QColor::fromRgba(shape.stops.front().colour).name().toLatin1();
        if (shape.stops.size() > 1) {
            const QByteArray name = shape.radius > 0 ? "glow" : "sky";
            gradients += GradientAsSvg(shape, name);
            fill = "url(#" + name + ")";
        }
        paths += "  <path fill=\"" + fill + "\" d=\"" + PathAsSvg(shape.path) + "\"/>\n";
    }
    const QByteArray side = Number(drawing.side);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!-- SPDX-FileCopyrightText: 2026 Dusk Beacon contributors -->\n"
           "<!-- SPDX-License-Identifier: GPL-3.0-or-later -->\n"
           "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
           side + "\" height=\"" + side + "\" viewBox=\"0 0 " + side + " " + side +
           "\">\n  <title>Dusk Beacon</title>\n  <defs>\n" + gradients + "  </defs>\n" + paths + "</svg>\n";
}

// A header, a row of 16 bytes for each picture, and the PNG files, which Windows reads since Vista. All
// numbers are little-endian.
QByteArray IconFile(const std::vector<QByteArray>& pngFiles)
{
    constexpr int kHeaderBytes = 6;
    constexpr int kRowBytes = 16;
    constexpr int kWidthInPng = 19; // last byte of the width, which is 0 for 256 pixels, as in a row
    constexpr quint16 kTypeIcon = 1;
    constexpr quint16 kPlanes = 1;
    constexpr quint16 kBitsOfAPixel = 32;
    QByteArray file;
    QDataStream out(&file, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    const auto count = static_cast<quint16>(pngFiles.size());
    out << quint16{0} << kTypeIcon << count;
    quint32 offset = kHeaderBytes + quint32{count} * kRowBytes;
    for (const QByteArray& png : pngFiles) {
        const auto width = static_cast<quint8>(png.at(kWidthInPng));
        const auto length = static_cast<quint32>(png.size());
        out << width << width << quint16{0} << kPlanes << kBitsOfAPixel << length << offset;
        offset += length;
    }
    for (const QByteArray& png : pngFiles) {
        out.writeRawData(png.constData(), static_cast<int>(png.size()));
    }
    return file;
}

} // namespace art
