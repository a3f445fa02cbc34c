// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/BesideBox.h"

#include <QSize>

#include <gtest/gtest.h>

namespace {

// A popup and a question in their frames, with the buttons that they have.
WindowOutline Popup(const QPoint& corner)
{
    return {QRect(corner, QSize(209, 117)), QRect(corner + QPoint(81, 92), QSize(49, 17))};
}

WindowOutline Question(const QPoint& corner, const QSize& size)
{
    const QSize buttons(166, 24);
    return {QRect(corner, size), QRect(corner + QPoint(size.width() - 178, size.height() - 36), buttons)};
}

struct PlaceRow
{
    const char* title;
    QSize screen;
    QPoint popup;
    QPoint box;
    QSize boxSize = QSize(219, 107);
    bool hasRoomForBoth = true;
};

class ClearPlaceRows : public testing::TestWithParam<PlaceRow>
{
protected:
    [[nodiscard]] static QRect Area() { return {QPoint(), GetParam().screen}; }
    [[nodiscard]] static WindowOutline PlacedBeside(const WindowOutline& other, WindowOutline window)
    {
        const QPoint offset = ClearPlace(window, {other}, Area()) - window.frame.topLeft();
        window.frame.translate(offset);
        window.buttons.translate(offset);
        return window;
    }
    static void ExpectUsable(const WindowOutline& popup, const WindowOutline& box)
    {
        EXPECT_TRUE(Area().contains(popup.frame));
        EXPECT_TRUE(Area().contains(box.frame));
        EXPECT_FALSE(popup.frame.intersects(box.buttons)) << "the popup lies over the box";
        EXPECT_EQ(popup.frame.intersects(box.frame), !GetParam().hasRoomForBoth);
    }
};

TEST_P(ClearPlaceRows, popupAndBox_keepEachOthersButtonsFree)
{
    const WindowOutline popup = Popup(GetParam().popup);
    const WindowOutline box = Question(GetParam().box, GetParam().boxSize);
    {
        SCOPED_TRACE("the popup was first");
        ExpectUsable(popup, PlacedBeside(popup, box));
    }
    {
        SCOPED_TRACE("the box was first");
        ExpectUsable(PlacedBeside(box, popup), box);
    }
}

const PlaceRow kPlaceRows[] = {
    {"atTheSamePlace", {1024, 768}, {408, 326}, {403, 331}},
    {"apartAlready", {1024, 768}, {408, 326}, {10, 10}},
    {"topLeftCorner", {1024, 768}, {0, 0}, {20, 5}},
    {"bottomRightCorner", {1024, 768}, {815, 651}, {805, 661}},
    {"smallScreen", {320, 240}, {56, 120}, {50, 130}, {219, 107}},
    {"tooSmallForBoth", {320, 200}, {56, 42}, {50, 46}, {219, 107}, false},
    {"tooLongForBoth", {640, 480}, {216, 182}, {10, 10}, {620, 440}, false},
};
INSTANTIATE_TEST_SUITE_P(Places, ClearPlaceRows, testing::ValuesIn(kPlaceRows),
                         [](const auto& row) { return std::string(row.param.title); });

TEST(ClearPlace, withRoomWhereItWouldBe_isThatPlace)
{
    EXPECT_EQ(ClearPlace(Popup({408, 326}), {Question({10, 10}, {219, 107})}, {0, 0, 1024, 768}),
              QPoint(408, 326));
}

TEST(ClearPlace, aLittleInTheWay_isTheNearestPlaceBeside)
{
    EXPECT_EQ(ClearPlace(Popup({408, 326}), {Question({403, 431}, {219, 107})}, {0, 0, 1024, 768}),
              QPoint(408, 431 - 117));
}

TEST(ClearPlace, largerThanTheArea_beginsAtItsCorner)
{
    EXPECT_EQ(ClearPlace(Question({-50, -60}, {400, 300}), {Popup({56, 60})}, {0, 24, 320, 240}),
              QPoint(0, 24));
}

} // namespace
