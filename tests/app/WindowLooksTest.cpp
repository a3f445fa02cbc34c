// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowViews.h"
#include "forms/Bars.h"
#include "forms/Boxes.h"

#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QPushButton>
#include <QRegularExpression>

#include <cmath>
#include <set>

namespace {

/// The pixels of a control in a picture of its window.
QImage PixelsOf(const QWidget& control, const QImage& window)
{
    const double scale = control.devicePixelRatioF();
    const QRect rect(control.mapTo(control.window(), QPoint()), control.size());
    const auto at = [scale](int edge) { return qRound(edge * scale); };
    const QPoint first(at(rect.x()), at(rect.y()));
    const QPoint end(at(rect.x() + rect.width()), at(rect.y() + rect.height()));
    return window.copy(QRect(first, end - QPoint(1, 1)));
}

bool IsBox(const QWidget& control)
{
    const auto* const frame = qobject_cast<const QFrame*>(&control);
    return qobject_cast<const TextBox*>(&control) != nullptr ||
           qobject_cast<const SpinBar*>(&control) != nullptr ||
           qobject_cast<const LevelBar*>(&control) != nullptr ||
           qobject_cast<const QPushButton*>(&control) != nullptr ||
           qobject_cast<const QComboBox*>(&control) != nullptr ||
           (frame != nullptr && frame->frameShape() == QFrame::StyledPanel);
}

std::vector<const QWidget*> VisibleBoxes(const QWidget& window)
{
    std::vector<const QWidget*> boxes;
    for (const QWidget* const control : window.findChildren<QWidget*>()) {
        if (control->isVisible() && IsBox(*control)) {
            boxes.push_back(control);
        }
    }
    return boxes;
}

/// The colours along each of the four edges from the edge inwards, at a third of the edge.
std::vector<std::vector<QRgb>> EdgesOf(const QImage& box)
{
    constexpr int kDepth = 5;
    // Not in the middle, where a spin bar has a line and a scroll bar its thumb.
    const int x = box.width() / 3;
    const int y = box.height() / 3;
    std::vector<std::vector<QRgb>> edges(4);
    for (int depth = 0; depth < kDepth; ++depth) {
        edges[0].push_back(box.pixel(depth, y));
        edges[1].push_back(box.pixel(box.width() - 1 - depth, y));
        edges[2].push_back(box.pixel(x, depth));
        edges[3].push_back(box.pixel(x, box.height() - 1 - depth));
    }
    return edges;
}

/// The number of pixels of a control that have the colour of the focus.
int FocusPixels(QWidget& control)
{
    const QImage picture = control.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRgb colour = control.palette().color(QPalette::Highlight).rgb();
    int pixels = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            pixels += picture.pixel(x, y) == colour ? 1 : 0;
        }
    }
    return pixels;
}

class WindowLooks : public WindowViews
{
protected:
    /// Activates each window, so that its controls can have the focus, which is drawn as after a Tab key.
    void ForEachActiveView(const Check& check)
    {
        ForEachView([&check](QWidget& window) {
            window.activateWindow();
            if (window.isEnabled() && QTest::qWaitForWindowActive(&window)) {
                window.setAttribute(Qt::WA_KeyboardFocusChange);
                check(window);
            }
        });
    }
};

} // namespace

TEST_F(WindowLooks, boxes_haveOneLineOnWholePixels)
{
    std::set<std::string> kinds;
    ForEachView([&kinds](QWidget& window) {
        for (auto* const list : window.findChildren<ListBox*>()) {
            list->clear(); // A selected line would touch the edge.
        }
        const QImage picture = window.grab().toImage();
        const QRgb usual = window.palette().color(QPalette::Mid).rgb();
        const QRgb focused = window.palette().color(QPalette::Highlight).rgb();
        const auto width = static_cast<std::size_t>(window.devicePixelRatioF());
        for (const QWidget* const box : VisibleBoxes(window)) {
            kinds.insert(box->metaObject()->className());
            for (const std::vector<QRgb>& edge : EdgesOf(PixelsOf(*box, picture))) {
                const QRgb line = edge[0] == focused ? focused : usual;
                std::size_t covered = 0;
                while (covered < edge.size() && edge[covered] == line) {
                    ++covered;
                }
                EXPECT_EQ(covered, width)
                    << box->objectName().toStdString() << std::hex << ' ' << edge[0] << ' ' << edge[1];
                EXPECT_EQ(edge[width], edge[width + 1])
                    << box->objectName().toStdString() << ": no blurred pixel beside the line";
            }
        }
    });
    EXPECT_EQ(kinds.size(), 9U);
}

TEST_F(WindowLooks, linesOfThePrayerPage_haveTheWidthOfTheFrames)
{
    int lines = 0;
    ForEachView([&lines](QWidget& window) {
        const QImage picture = window.grab().toImage();
        const QRgb colour = window.palette().color(QPalette::Mid).rgb();
        const double scale = window.devicePixelRatioF();
        for (const auto* const line :
             window.findChildren<QFrame*>(QRegularExpression(QStringLiteral("^Line[1-4]$")))) {
            if (!line->isVisible()) {
                continue;
            }
            const QPoint middle = line->mapTo(&window, line->rect().center());
            const bool isVertical = line->frameShape() == QFrame::VLine;
            int covered = 0;
            for (int beside = -4; beside <= 4; ++beside) {
                const QPoint pixel(qRound(middle.x() * scale) + (isVertical ? beside : 0),
                                   qRound(middle.y() * scale) + (isVertical ? 0 : beside));
                covered += picture.pixel(pixel) == colour ? 1 : 0;
            }
            EXPECT_EQ(covered, static_cast<int>(scale)) << line->objectName().toStdString();
            ++lines;
        }
    });
    EXPECT_EQ(lines, 8);
}

TEST_F(WindowLooks, disabledTextBox_hasTheColourOfThePage)
{
    int enabled = 0;
    int disabled = 0;
    ForEachView([&](QWidget& window) {
        const QImage picture = window.grab().toImage();
        for (const auto* const box : window.findChildren<TextBox*>()) {
            if (!box->isVisible()) {
                continue;
            }
            const QImage pixels = PixelsOf(*box, picture);
            const QPalette& colours = window.palette();
            const QPalette::ColorRole fill = box->isEnabled() ? QPalette::Base : QPalette::Window;
            ++(box->isEnabled() ? enabled : disabled);
            EXPECT_EQ(pixels.pixel(pixels.width() - 6, 6), colours.color(fill).rgb())
                << box->objectName().toStdString();
            EXPECT_NE(colours.color(QPalette::Base), colours.color(QPalette::Window));
        }
    });
    EXPECT_GT(enabled, 5);
    EXPECT_GT(disabled, 5);
}

TEST_F(WindowLooks, controlWithTheFocus_hasALineInItsColour)
{
    std::set<std::string> kinds;
    ForEachActiveView([&kinds](QWidget& window) {
        for (QWidget* const control : window.findChildren<QWidget*>()) {
            const bool isReached = control->isVisible() && control->isEnabled() &&
                                   (control->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
            // The strip marks the link that has the focus.
            if (!isReached || control->inherits("WebAd")) {
                continue;
            }
            control->clearFocus();
            const int before = FocusPixels(*control);
            control->setFocus();
            EXPECT_GT(FocusPixels(*control), before) << control->objectName().toStdString();
            kinds.insert(control->metaObject()->className());
        }
    });
    EXPECT_EQ(kinds.size(), 11U);
}

TEST_F(WindowLooks, focusInAList_leavesTheSelectedLineAsItIs)
{
    int lists = 0;
    ForEachActiveView([&lists](QWidget& window) {
        for (auto* const list : window.findChildren<ListBox*>()) {
            list->addItem(QStringLiteral("Chicago"));
            list->setCurrentRow(0);
            list->clearFocus();
            const QImage before = list->viewport()->grab().toImage();
            list->setFocus();
            EXPECT_TRUE(list->viewport()->grab().toImage() == before);
            ++lists;
        }
    });
    EXPECT_GT(lists, 1);
}
