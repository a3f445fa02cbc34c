// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/ErrorOf.h"
#include "forms/Bars.h"

#include <QAccessible>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <numeric>

namespace {

class SpinBarControl : public testing::Test
{
protected:
    SpinBarControl()
    {
        bar.setRange(-30, 30);
        bar.setValue(5);
        bar.OnChange([this] { changes.push_back(bar.Value()); });
        bar.show();
    }
    [[nodiscard]] QPoint Top() const { return {bar.width() / 2, 2}; }
    [[nodiscard]] QPoint Bottom() const { return {bar.width() / 2, bar.height() - 3}; }
    void Click(const QPoint& arrow) { QTest::mouseClick(&bar, Qt::LeftButton, {}, arrow); }
    void Press(const QPoint& arrow) { QTest::mousePress(&bar, Qt::LeftButton, {}, arrow); }
    void Release(const QPoint& arrow) { QTest::mouseRelease(&bar, Qt::LeftButton, {}, arrow); }
    void MoveHeld(const QPoint& place)
    {
        QMouseEvent move(QEvent::MouseMove, place, bar.mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&bar, &move);
    }
    /// Long enough for a bar that were still held to have moved on.
    static void WaitForRepeatsElsewhere()
    {
        SpinBar witness(nullptr);
        witness.setRange(0, 100);
        witness.show();
        QTest::mousePress(&witness, Qt::LeftButton, {}, QPoint(witness.width() / 2, 2));
        ASSERT_TRUE(QTest::qWaitFor([&witness] { return witness.Value() >= 4; }, 10'000));
    }

    SpinBar bar{nullptr};
    std::vector<int> changes;
};

} // namespace

TEST_F(SpinBarControl, arrowsAndKeys_moveByOne)
{
    Click(Top());
    Click(Bottom());
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown}) {
        QTest::keyClick(&bar, key);
    }
    EXPECT_EQ(changes, std::vector<int>({6, 5, 6, 5, 6, 5}));
}

TEST_F(SpinBarControl, homeAndEnd_doNothing)
{
    QTest::keyClick(&bar, Qt::Key_Home);
    QTest::keyClick(&bar, Qt::Key_End);
    EXPECT_TRUE(changes.empty()) << "each change is stored at once";
}

TEST_F(SpinBarControl, atItsLimits_staysSilently)
{
    bar.SetValue(30);
    bar.SetValue(-30);
    changes.clear();
    Click(Bottom());
    EXPECT_TRUE(changes.empty());
    bar.SetValue(30);
    changes.clear();
    Click(Top());
    EXPECT_TRUE(changes.empty());
    EXPECT_EQ(bar.Value(), 30);
}

TEST_F(SpinBarControl, setValue_raisesChangeInsideTheSetterOnlyOnAChange)
{
    bar.SetValue(9);
    EXPECT_EQ(changes, std::vector<int>({9}));
    bar.SetValue(9);
    EXPECT_EQ(changes.size(), 1U);
}

TEST_F(SpinBarControl, setValue_outsideTheLimits_throwsAndChangesNothing)
{
    for (const int value : {-31, 31, 1000}) {
        EXPECT_EQ(ErrorOf([&] { bar.SetValue(value); }), ErrorNumber::kInvalidPropertyValue) << value;
    }
    EXPECT_EQ(bar.Value(), 5);
    EXPECT_TRUE(changes.empty());
}

TEST_F(SpinBarControl, wheel_doesNothing)
{
    for (const int turn : {120, -120}) {
        QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, turn), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&bar, &wheel);
        EXPECT_FALSE(wheel.isAccepted());
    }
    EXPECT_TRUE(changes.empty());
}

TEST_F(SpinBarControl, heldArrow_repeatsUntilItIsLetGo)
{
    Press(Top());
    ASSERT_TRUE(QTest::qWaitFor([this] { return changes.size() >= 4; }, 10'000));
    Release(Top());
    std::vector<int> inOrder(changes.size());
    std::iota(inOrder.begin(), inOrder.end(), 6);
    EXPECT_EQ(changes, inOrder);
    const int last = bar.Value();
    WaitForRepeatsElsewhere();
    EXPECT_EQ(bar.Value(), last);
}

TEST_F(SpinBarControl, disabledWhileHeld_stops)
{
    bar.OnChange([this] {
        changes.push_back(bar.Value());
        if (changes.size() == 3) {
            bar.setEnabled(false);
        }
    });
    Press(Bottom());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !bar.isEnabled(); }, 10'000));
    WaitForRepeatsElsewhere();
    EXPECT_EQ(changes, std::vector<int>({4, 3, 2}));
}

TEST_F(SpinBarControl, mouseLeavesTheHeldArrow_stops)
{
    for (const int y : {bar.height() - 3, -20}) {
        changes.clear();
        Press(Top());
        ASSERT_EQ(changes.size(), 1U);
        MoveHeld(QPoint(bar.width() / 2, 3));
        ASSERT_TRUE(QTest::qWaitFor([this] { return changes.size() >= 2; }, 10'000)) << "it is still on it";
        MoveHeld(QPoint(bar.width() / 2, y));
        const std::size_t count = changes.size();
        WaitForRepeatsElsewhere();
        MoveHeld(QPoint(bar.width() / 2, 2));
        EXPECT_EQ(changes.size(), count) << "nor does it go on when the mouse comes back";
        Release(Top());
    }
}

TEST_F(SpinBarControl, hiddenWhileHeld_stops)
{
    Press(Top());
    ASSERT_EQ(changes.size(), 1U);
    bar.hide();
    WaitForRepeatsElsewhere();
    bar.show();
    WaitForRepeatsElsewhere();
    EXPECT_EQ(changes, std::vector<int>({6}));
}

TEST_F(SpinBarControl, doubleClick_isTwoSteps)
{
    Click(Top());
    // The second press comes as this.
    QTest::mouseDClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
    Release(Top());
    EXPECT_EQ(changes, std::vector<int>({6, 7})) << "a fast second click counts";
}

TEST_F(SpinBarControl, otherButtonsAndDisabled_takeNothing)
{
    QTest::mouseClick(&bar, Qt::RightButton, {}, QPoint(5, 2));
    bar.setEnabled(false);
    Click(Top());
    QTest::keyClick(&bar, Qt::Key_Up);
    EXPECT_TRUE(changes.empty());
}

TEST_F(SpinBarControl, bothArrows_arePainted)
{
    bar.resize(17, 22);
    const QImage picture = bar.grab().toImage();
    // The widest row of each arrow lies towards the middle of the bar.
    const auto darkPixels = [&picture](int top, int bottom) {
        int dark = 0;
        for (int y = top; y < bottom; ++y) {
            for (int x = 4; x < 13; ++x) {
                dark += qGray(picture.pixel(x, y)) < 60 ? 1 : 0;
            }
        }
        return dark;
    };
    EXPECT_EQ(darkPixels(2, 9), 9);
    EXPECT_EQ(darkPixels(13, 20), 9);
}

TEST_F(SpinBarControl, pressedArrow_isPaintedOtherwiseUntilItIsLetGo)
{
    // The picture on the screen: grab() would paint the bar anew.
    const auto onScreen = [this] { return bar.screen()->grabWindow(bar.winId()).toImage(); };
    ASSERT_TRUE(QTest::qWaitForWindowActive(&bar));
    Click(Top());
    bar.repaint();
    const QImage idle = onScreen();
    Press(Top());
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() != idle; }));
    Release(Top());
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == idle; }));
}

TEST_F(SpinBarControl, screenReader_seesValueAndLimits)
{
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&bar);
    ASSERT_NE(seen, nullptr);
    ASSERT_NE(seen->valueInterface(), nullptr);
    EXPECT_EQ(seen->valueInterface()->currentValue().toInt(), 5);
    EXPECT_EQ(seen->valueInterface()->minimumValue().toInt(), -30);
    EXPECT_EQ(seen->valueInterface()->maximumValue().toInt(), 30);
    seen->valueInterface()->setCurrentValue(7);
    EXPECT_EQ(changes, std::vector<int>({7}));
}
