// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Appearance.h"

#include <QImage>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionButton>
#include <QStyleOptionSlider>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

QStyleOptionButton ButtonIn(const QColor& colour)
{
    QStyleOptionButton option;
    option.rect = QRect(0, 0, 80, 24);
    option.state = QStyle::State_Enabled;
    option.palette = QPalette(colour);
    return option;
}

QImage Drawn(const WindowStyle& style, const QStyleOptionButton& option)
{
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    style.drawControl(QStyle::CE_PushButtonBevel, &option, &painter, nullptr);
    return image;
}

QImage DrawnPrimitive(QStyle::PrimitiveElement element, QStyle::State state)
{
    const WindowStyle style;
    QStyleOptionButton option = ButtonIn(Qt::yellow);
    option.rect = QRect(0, 0, 14, 14);
    option.state |= state;
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    style.drawPrimitive(element, &option, &painter, nullptr);
    return image;
}

QImage DrawnBar(QStyle::SubControl part, QStyle::State state)
{
    const WindowStyle style;
    QStyleOptionSlider option;
    option.rect = QRect(0, 0, 80, 16);
    option.state = QStyle::State_Enabled | QStyle::State_Horizontal | state;
    option.orientation = Qt::Horizontal;
    option.maximum = 10;
    option.activeSubControls = part;
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    style.drawComplexControl(QStyle::CC_ScrollBar, &option, &painter, nullptr);
    return image;
}

/// A style on a desktop that wants icons on the buttons of boxes.
class StyleWithIcons final : public QProxyStyle
{
public:
    int styleHint(StyleHint /*hint*/, const QStyleOption* /*option*/, const QWidget* /*widget*/,
                  QStyleHintReturn* /*data*/) const override
    {
        return 1;
    }
};

TEST(WindowStyle, buttonsOfABox_haveNoIcons)
{
    WindowStyle style;
    style.setBaseStyle(new StyleWithIcons);
    EXPECT_EQ(style.styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, nullptr, nullptr), 0);
}

TEST(WindowStyle, controlThatCanBePressed_showsTheMouseAndThePress)
{
    const std::function<QImage(QStyle::State)> controls[] = {
        [](QStyle::State state) { return DrawnPrimitive(QStyle::PE_PanelButtonCommand, state); },
        [](QStyle::State state) { return DrawnPrimitive(QStyle::PE_IndicatorCheckBox, state); },
        [](QStyle::State state) { return DrawnPrimitive(QStyle::PE_IndicatorRadioButton, state); },
        [](QStyle::State state) { return DrawnBar(QStyle::SC_ScrollBarSlider, state); },
        [](QStyle::State state) { return DrawnBar(QStyle::SC_ScrollBarAddLine, state); },
    };
    for (const auto& drawn : controls) {
        const auto row = &drawn - controls;
        const QImage usual = drawn(QStyle::State_None);
        const QImage underMouse = drawn(QStyle::State_MouseOver);
        EXPECT_NE(underMouse, usual) << row;
        EXPECT_NE(drawn(QStyle::State_Sunken), usual) << row;
        EXPECT_NE(drawn(QStyle::State_Sunken | QStyle::State_MouseOver), underMouse) << row;
    }
}

TEST(WindowStyle, groupBox_showsItsCaption)
{
    QStyleOptionGroupBox option;
    option.rect = QRect(0, 0, 80, 40);
    option.state = QStyle::State_Enabled;
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    option.text = QStringLiteral("Fajr");
    option.palette.setColor(QPalette::WindowText, Qt::red);
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    WindowStyle().drawComplexControl(QStyle::CC_GroupBox, &option, &painter, nullptr);
    int red = 0;
    for (int y = 0; y < option.fontMetrics.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            red += colour.red() - colour.green() > 100 ? 1 : 0;
        }
    }
    EXPECT_GT(red, 10);
}

TEST(WindowStyle, tooltip_hasTheLineAndTheCornersOfABox)
{
    const QImage tip = DrawnPrimitive(QStyle::PE_PanelTipLabel, QStyle::State_None);
    const QPalette colours(Qt::yellow);
    EXPECT_EQ(tip.pixelColor(7, 0), colours.color(QPalette::Mid));
    EXPECT_EQ(tip.pixelColor(7, 7), colours.color(QPalette::ToolTipBase));
    EXPECT_NE(tip.pixelColor(0, 0), colours.color(QPalette::Mid));
}

TEST(WindowStyle, equalColours_shareOnePalette_soThatDrawingsDoNotPileUp)
{
    const WindowStyle style;
    // Not const: the style sets the shared palette on them.
    QStyleOptionButton one = ButtonIn(Qt::yellow);
    QStyleOptionButton equal = ButtonIn(Qt::yellow);
    QStyleOptionButton other = ButtonIn(Qt::red);
    ASSERT_NE(one.palette.cacheKey(), equal.palette.cacheKey());
    const QImage first = Drawn(style, one);
    EXPECT_EQ(Drawn(style, equal), first);
    EXPECT_NE(Drawn(style, other), first);
    EXPECT_EQ(one.palette.cacheKey(), equal.palette.cacheKey());
    EXPECT_NE(one.palette.cacheKey(), other.palette.cacheKey());
    EXPECT_EQ(other.palette, QPalette(Qt::red));
}

TEST(WindowStyle, moreColoursThanAreKept_areDrawnRight)
{
    const WindowStyle style;
    std::vector<QImage> images;
    for (int round = 0; round < 2; ++round) {
        for (int hue = 0; hue < 40; ++hue) {
            QStyleOptionButton option = ButtonIn(QColor::fromHsv(hue * 9, 200, 200));
            option.palette.setCurrentColorGroup(QPalette::Inactive);
            const QImage image = Drawn(style, option);
            EXPECT_EQ(option.palette.currentColorGroup(), QPalette::Inactive);
            if (round == 0) {
                images.push_back(image);
            } else {
                EXPECT_EQ(image, images.at(static_cast<std::size_t>(hue))) << hue;
            }
        }
    }
    EXPECT_NE(images.front(), images.at(20));
}

} // namespace
