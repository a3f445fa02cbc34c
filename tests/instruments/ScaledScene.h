// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/PlainPictures.h"
#include "instruments/VBSunAndMoon.h"

/// A midday scene in the pixels of the screen.
[[nodiscard]] inline QImage Scene(VBSunAndMoon& sky)
{
    sky.Setup(0, 273);
    sky.Update(450, 700, 50);
    QImage scene = sky.grab().toImage().convertToFormat(QImage::Format_RGB32);
    scene.setDevicePixelRatio(1.0);
    return scene;
}
