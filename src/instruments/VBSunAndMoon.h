// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/BitBlt.h"
#include "instruments/PictureBoxes.h"

#include <QWidget>

#include <cstdint>
#include <vector>

class FileStore;

/// A small scene of the sky: sun and moon between a sky and a landscape, by day or by night. It contains no
/// astronomy. The last scene is kept and painted until the next update. A routine that fails ends quietly and
/// leaves the scene unfinished.
class VBSunAndMoon final : public QWidget
{
    Q_OBJECT

public:
    /// Shows the day without sun and moon.
    /// @param files where SaveImage writes; must outlive the control
    /// @param pictures folder of the ten stored pictures
    VBSunAndMoon(FileStore& files, const QString& pictures, QWidget* parent);

    /// @param TodaysSunRise,TodaysSunSet minutes since midnight; day is between them, both ends included
    void Setup(std::int16_t TodaysSunRise, std::int16_t TodaysSunSet);
    /// Composes a new scene.
    /// @param SunElevation,MoonElevation tenths of a degree above the horizon, 900 at the top of the picture
    /// @param MTime minutes since midnight
    void Update(std::int16_t SunElevation, std::int16_t MoonElevation, std::int16_t MTime);
    /// Puts the sun into the picture: from left to right between sunrise and sunset.
    void DrawSun(std::int16_t elevation, std::int16_t Currtime);
    /// Puts the moon into the picture, always in the same column.
    /// @param Currtime has no effect
    void DrawMoon(std::int16_t elevation, std::int16_t Currtime);
    /// Writes the scene at scale 1 as a bitmap file. A failure is not reported.
    void SaveImage(const QString& fileName);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void DrawBackground(std::int16_t MTime);
    void DrawForeground(std::int16_t MTime);
    /// Draws a day without sun and moon if nothing is drawn yet.
    void EnsurePicture();
    void ClearPicBox();
    void MatchScreen();
    [[nodiscard]] bool IsDay(std::int16_t MTime) const;
    void Describe(std::int16_t SunElevation, std::int16_t MoonElevation, std::int16_t MTime);
    void Transfer(QLatin1String source, int left, int top, RasterOperation operation);

    FileStore& m_files;
    QString m_folder;
    /// The first one is at scale 1 and gives the positions. A second one exists if the screen has a larger
    /// scale.
    std::vector<PictureBoxes> m_boxes;
    int m_screenScale = 1;
    /// False until a picture is needed: the program updates the sky before it is shown.
    bool m_isDrawn = false;
    std::int16_t m_sunrise = 0;
    std::int16_t m_sunset = 0;
};
