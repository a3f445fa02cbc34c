// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/BesideBox.h"

#include <QPushButton>
#include <QSize>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

// The outlines of a popup and of a box with two buttons.
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

WindowOutline PlacedBeside(const WindowOutline& other, WindowOutline window, const QRect& area)
{
    const QPoint offset = ClearPlace(window, {other}, area) - window.frame.topLeft();
    window.frame.translate(offset);
    window.buttons.translate(offset);
    return window;
}

TEST(ClearPlace, popupAndBox_keepEachOthersButtonsFree)
{
    const PlaceRow rows[] = {
        {"at the same place", {1024, 768}, {408, 326}, {403, 331}},
        {"apart already", {1024, 768}, {408, 326}, {10, 10}},
        {"top left corner", {1024, 768}, {0, 0}, {20, 5}},
        {"bottom right corner", {1024, 768}, {815, 651}, {805, 661}},
        {"small screen", {320, 240}, {56, 120}, {50, 130}, {219, 107}},
        {"too small for both", {320, 200}, {56, 42}, {50, 46}, {219, 107}, false},
        {"too long for both", {640, 480}, {216, 182}, {10, 10}, {620, 440}, false},
    };
    for (const PlaceRow& row : rows) {
        const QRect area(QPoint(), row.screen);
        const auto expectUsable = [&](const WindowOutline& popup, const WindowOutline& box,
                                      const char* first) {
            SCOPED_TRACE(testing::Message() << row.title << ", first the " << first);
            EXPECT_TRUE(area.contains(popup.frame));
            EXPECT_TRUE(area.contains(box.frame));
            EXPECT_FALSE(popup.frame.intersects(box.buttons)) << "the popup covers a button of the box";
            EXPECT_EQ(popup.frame.intersects(box.frame), !row.hasRoomForBoth);
        };
        const WindowOutline popup = Popup(row.popup);
        const WindowOutline box = Question(row.box, row.boxSize);
        expectUsable(popup, PlacedBeside(popup, box, area), "popup");
        expectUsable(PlacedBeside(box, popup, area), box, "box");
    }
}

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

TEST(MoveClear, withRoomInTheMiddle_standsThere)
{
    QWidget window;
    window.resize(100, 60);
    MoveClear(window, {200, 100, 300, 200}, {}, {0, 0, 800, 600});
    EXPECT_EQ(window.geometry(), QRect(300, 170, 100, 60));
}

TEST(MoveClear, withoutRoomForBoth_leavesTheVisibleButtonsFree)
{
    QWidget box;
    box.setGeometry(50, 50, 300, 120);
    QPushButton visible(&box);
    visible.setGeometry(200, 90, 90, 20);
    QPushButton hidden(&box);
    hidden.setGeometry(200, 10, 90, 20);
    hidden.hide();
    box.show();
    const QRect all = box.windowHandle()->frameGeometry();
    QWidget window;
    window.resize(100, 40);
    MoveClear(window, {all.bottomRight(), QSize(1, 1)}, {&box}, all);
    const QRect frame = window.geometry().marginsAdded(box.windowHandle()->frameMargins());
    EXPECT_EQ(frame.topRight(), all.topRight()) << "the nearest corner but for the button";
}

} // namespace
