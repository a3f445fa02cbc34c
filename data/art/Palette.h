// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <array>

namespace art {

/// One colour of a vertical gradient; `position` runs from 0 at the top to 1 at the bottom.
struct Stop
{
    double position;
    QRgb colour;
};

/// From here down the landscape covers the whole width, and the day sky is white.
inline constexpr double kCoveredFrom = 104.0 / 125.0;

inline constexpr std::array kDaySky{
    Stop{0.00, 0xff2f79c4}, Stop{0.32, 0xff66a8e2},         Stop{0.60, 0xffaed5f3},
    Stop{0.77, 0xffe3f1fa}, Stop{kCoveredFrom, 0xffffffff}, Stop{1.00, 0xffffffff},
};

inline constexpr std::array kNightSky{
    Stop{0.00, 0xff080c22}, Stop{0.32, 0xff111a40},         Stop{0.60, 0xff1f2a5a},
    Stop{0.77, 0xff323a6e}, Stop{kCoveredFrom, 0xff41457a}, Stop{1.00, 0xff41457a},
};

/// The sky of the banner and of the icon: indigo, violet, rose and amber.
inline constexpr std::array kDuskSky{
    Stop{0.00, 0xff171c4a}, Stop{0.34, 0xff3b3478}, Stop{0.58, 0xff7d4487},
    Stop{0.78, 0xffc9637a}, Stop{0.92, 0xfff0935a}, Stop{1.00, 0xfff9b868},
};

inline constexpr QRgb kStar = 0xfff4f1ff;
inline constexpr QRgb kInk = 0xff12143a;     ///< silhouettes against the dusk
inline constexpr QRgb kCream = 0xfffff4dc;   ///< lettering and light stone
inline constexpr QRgb kLantern = 0xffffd765; ///< the light of the beacon
inline constexpr QRgb kEmber = 0xffff8f4e;   ///< where that light fades

/// The colours of the landscape, the only difference between day and night.
struct LandscapeColours
{
    QRgb mountain;
    QRgb mountainFoot;
    QRgb hill;
    QRgb hillFoot;
    QRgb wall;
    QRgb wallShade;
    QRgb roofLight;
    QRgb dome;
    QRgb domeLight;
    QRgb domeShade;
    QRgb finial;
    QRgb window;
    QRgb litWindow;
    QRgb trunk;
    QRgb leaf;
    QRgb leafLight;
    QRgb grove;
    QRgb ground;
    QRgb groundFoot;
};

inline constexpr LandscapeColours kDayLandscape{
    .mountain = 0xff98b0cf,
    .mountainFoot = 0xffc3d0df,
    .hill = 0xffb6bf9c,
    .hillFoot = 0xffd9d3b0,
    .wall = 0xffecd7ae,
    .wallShade = 0xffc29f70,
    .roofLight = 0xfffbf0d6,
    .dome = 0xff2f8f94,
    .domeLight = 0xff8fd6cf,
    .domeShade = 0xff1a5d6b,
    .finial = 0xffd79a2b,
    .window = 0xff7b5f45,
    .litWindow = 0xff7b5f45,
    .trunk = 0xff7a5a3a,
    .leaf = 0xff3c6b35,
    .leafLight = 0xff6d9a48,
    .grove = 0xff5c8043,
    .ground = 0xff9aa75c,
    .groundFoot = 0xff5f7a3c,
};

inline constexpr LandscapeColours kNightLandscape{
    .mountain = 0xff181e40,
    .mountainFoot = 0xff141836,
    .hill = 0xff10142b,
    .hillFoot = 0xff0f1329,
    .wall = 0xff0f1329,
    .wallShade = 0xff080b1a,
    .roofLight = 0xff252c52,
    .dome = 0xff101732,
    .domeLight = 0xff3a4678,
    .domeShade = 0xff070a18,
    .finial = 0xff3c3a4a,
    .window = 0xff070a16,
    .litWindow = 0xffe9b454,
    .trunk = 0xff05070f,
    .leaf = 0xff060912,
    .leafLight = 0xff0d1222,
    .grove = 0xff070a16,
    .ground = 0xff090c1b,
    .groundFoot = 0xff04060e,
};

} // namespace art
