// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/VBSunAndMoon.h"

#include "instruments/QuietEnd.h"
#include "platform/FileStore.h"
#include "support/Conversions.h"

#include <QBuffer>
#include <QLabel>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// Elevations are tenths of a degree; the top of the picture stands for 90 degrees.
constexpr double kFullHeight = 900.0;
constexpr int kLargestScale = 3;

std::int16_t Half(int length)
{
    return ToInteger16(Int(length / 2.0));
}

} // namespace

VBSunAndMoon::VBSunAndMoon(FileStore& files, const QString& pictures, QWidget* parent)
    : QWidget(parent)
    , m_files(files)
    , m_folder(pictures)
{
    resize(273, 129);
    // A note for developers, hidden in the window.
    auto* const label1 = new QLabel(QStringLiteral("These are the images being used.. "), this);
    label1->setObjectName(QStringLiteral("Label1"));
    label1->move(0, height());
    label1->hide();
    m_boxes.emplace_back(m_folder, 1);
    MatchScreen();
    setAccessibleName(QStringLiteral("Sky"));
}

void VBSunAndMoon::Setup(std::int16_t TodaysSunRise, std::int16_t TodaysSunSet)
{
    m_sunrise = TodaysSunRise;
    m_sunset = TodaysSunSet;
}

void VBSunAndMoon::Update(std::int16_t SunElevation, std::int16_t MoonElevation, std::int16_t MTime)
{
    EndQuietly([&] {
        MatchScreen();
        ClearPicBox();
        DrawBackground(MTime);
        DrawSun(SunElevation, MTime);
        DrawMoon(MoonElevation, MTime);
        // Last, so that sun and moon set behind the landscape.
        DrawForeground(MTime);
        Describe(SunElevation, MoonElevation, MTime);
    });
}

void VBSunAndMoon::DrawSun(std::int16_t elevation, std::int16_t Currtime)
{
    EndQuietly([&] {
        EnsurePicture();
        const QSize sun = m_boxes.front().Stored(PictureBoxes::PicSun).size();
        const std::int16_t halfWidth = Half(sun.width());
        const std::int16_t halfHeight = Half(sun.height());
        const double width = PictureBoxes::kWidth;
        const double height = PictureBoxes::kHeight;
        const std::int16_t y = ToInteger16(height - elevation / kFullHeight * height);
        // A day of length 0 has no place for the sun; moon and landscape are still drawn.
        if (m_sunset == m_sunrise) {
            throw RuntimeError(ErrorNumber::kDivisionByZero, QStringLiteral("Division by zero"));
        }
        const double elapsed = AddInteger16(Currtime, -m_sunrise);
        const double day = AddInteger16(m_sunset, -m_sunrise);
        // At night this is outside the picture.
        const std::int16_t x = ToInteger16(elapsed / day * width);
        const int left = AddInteger16(x, -halfWidth);
        const int top = AddInteger16(y, -halfHeight);
        Transfer(PictureBoxes::PicSunMask, left, top, RasterOperation::SRCAND);
        Transfer(PictureBoxes::PicSun, left, top, RasterOperation::SRCPAINT);
    });
}

void VBSunAndMoon::DrawMoon(std::int16_t elevation, std::int16_t /*Currtime*/)
{
    EndQuietly([&] {
        EnsurePicture();
        const QSize moon = m_boxes.front().Stored(PictureBoxes::PicMoon).size();
        const std::int16_t halfWidth = Half(moon.width());
        const std::int16_t halfHeight = Half(moon.height());
        const double height = PictureBoxes::kHeight;
        const std::int16_t y = ToInteger16(Int(height - elevation / kFullHeight * height));
        const std::int16_t x = Half(PictureBoxes::kWidth);
        // Intended: half the width is subtracted twice, so that the moon stands left of the middle.
        const int left = x - halfWidth - halfWidth;
        const int top = AddInteger16(y, -halfHeight);
        Transfer(PictureBoxes::PicMoonMask, left, top, RasterOperation::SRCAND);
        Transfer(PictureBoxes::PicMoon, left, top, RasterOperation::SRCPAINT);
    });
}

void VBSunAndMoon::SaveImage(const QString& fileName)
{
    EndQuietly([&] {
        EnsurePicture();
        QByteArray bitmap;
        QBuffer buffer(&bitmap);
        m_boxes.front().PicBox.convertToFormat(QImage::Format_RGB888).save(&buffer, "BMP");
        m_files.Write(fileName, bitmap);
    });
}

void VBSunAndMoon::paintEvent(QPaintEvent* /*event*/)
{
    EnsurePicture();
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(0, 0, PictureBoxes::kWidth, PictureBoxes::kHeight), m_boxes.back().PicBox);
}

void VBSunAndMoon::DrawBackground(std::int16_t MTime)
{
    EndQuietly([&] {
        Transfer(IsDay(MTime) ? PictureBoxes::PicBackDay : PictureBoxes::PicBackNight, 0, 0,
                 RasterOperation::SRCCOPY);
    });
}

void VBSunAndMoon::DrawForeground(std::int16_t MTime)
{
    EndQuietly([&] {
        const bool isDay = IsDay(MTime);
        Transfer(isDay ? PictureBoxes::PicFrontDayMask : PictureBoxes::PicFrontNightMask, 0, 0,
                 RasterOperation::SRCAND);
        Transfer(isDay ? PictureBoxes::PicFrontDay : PictureBoxes::PicFrontNight, 0, 0,
                 RasterOperation::SRCPAINT);
    });
}

void VBSunAndMoon::EnsurePicture()
{
    if (m_isDrawn) {
        return;
    }
    EndQuietly([&] {
        ClearPicBox();
        Transfer(PictureBoxes::PicBackDay, 0, 0, RasterOperation::SRCCOPY);
        Transfer(PictureBoxes::PicFrontDayMask, 0, 0, RasterOperation::SRCAND);
        Transfer(PictureBoxes::PicFrontDay, 0, 0, RasterOperation::SRCPAINT);
    });
}

void VBSunAndMoon::ClearPicBox()
{
    for (PictureBoxes& boxes : m_boxes) {
        boxes.PicBox.fill(Qt::white);
    }
    m_isDrawn = true;
}

// A window that moves to a screen of another scale shows its picture resized until the next update.
void VBSunAndMoon::MatchScreen()
{
    const int wanted = std::min(static_cast<int>(std::ceil(devicePixelRatioF())), kLargestScale);
    if (wanted == m_screenScale) {
        return;
    }
    m_screenScale = wanted;
    m_boxes.erase(m_boxes.begin() + 1, m_boxes.end());
    if (const int larger = PictureBoxes::LargestScale(m_folder, wanted); larger > 1) {
        m_boxes.emplace_back(m_folder, larger);
    }
}

bool VBSunAndMoon::IsDay(std::int16_t MTime) const
{
    return m_sunrise <= MTime && MTime <= m_sunset;
}

void VBSunAndMoon::Describe(std::int16_t SunElevation, std::int16_t MoonElevation, std::int16_t MTime)
{
    setAccessibleName(QStringLiteral("Sky: %1, sun %2 degrees, moon %3 degrees")
                          .arg(IsDay(MTime) ? QStringLiteral("day") : QStringLiteral("night"))
                          .arg(ToInteger16(SunElevation / 10.0))
                          .arg(ToInteger16(MoonElevation / 10.0)));
}

// Positions are whole pixels of scale 1 at every scale, so that a sharper picture shows the same scene.
void VBSunAndMoon::Transfer(QLatin1String source, int left, int top, RasterOperation operation)
{
    for (PictureBoxes& boxes : m_boxes) {
        BitBlt(boxes.PicBox, left * boxes.Scale(), top * boxes.Scale(), boxes.Stored(source), operation);
    }
    update();
}
