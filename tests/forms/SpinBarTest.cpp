// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Bars.h"
#include "support/RuntimeError.h"

#include <QAccessible>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

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
    void ClickTop() { QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2)); }
    void ClickBottom()
    {
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, bar.height() - 3));
    }
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

TEST_F(SpinBarControl, built_hasStepsOfOne)
{
    EXPECT_EQ(bar.singleStep(), 1);
    EXPECT_EQ(bar.pageStep(), 1);
}

TEST_F(SpinBarControl, topArrow_raises)
{
    ClickTop();
    EXPECT_EQ(changes, std::vector<int>({6}));
}

TEST_F(SpinBarControl, bottomArrow_lowers)
{
    ClickBottom();
    EXPECT_EQ(changes, std::vector<int>({4}));
}

TEST_F(SpinBarControl, keys_moveByOne)
{
    const struct
    {
        Qt::Key key;
        int value;
    } rows[] = {{Qt::Key_Up, 6}, {Qt::Key_Down, 5}, {Qt::Key_PageUp, 6}, {Qt::Key_PageDown, 5}};
    for (const auto& row : rows) {
        QTest::keyClick(&bar, row.key);
        EXPECT_EQ(bar.Value(), row.value) << row.key;
    }
    EXPECT_EQ(changes.size(), 4U);
}

TEST_F(SpinBarControl, homeAndEnd_doNothing)
{
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_End}) {
        QTest::keyClick(&bar, key);
        EXPECT_EQ(bar.Value(), 5) << key;
    }
    EXPECT_TRUE(changes.empty()) << "each change is stored at once";
}

TEST_F(SpinBarControl, atItsLimits_staysSilently)
{
    bar.SetValue(30);
    bar.SetValue(-30);
    changes.clear();
    ClickBottom();
    EXPECT_TRUE(changes.empty());
    bar.SetValue(30);
    changes.clear();
    ClickTop();
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
        try {
            bar.SetValue(value);
            ADD_FAILURE() << value;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number(), ErrorNumber::kInvalidPropertyValue);
        }
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
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
    ASSERT_TRUE(QTest::qWaitFor([this] { return changes.size() >= 4; }, 10'000));
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
    // Each step once, in order.
    for (std::size_t i = 0; i < changes.size(); ++i) {
        EXPECT_EQ(changes[i], 6 + static_cast<int>(i));
    }
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
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, bar.height() - 3));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !bar.isEnabled(); }, 10'000));
    WaitForRepeatsElsewhere();
    EXPECT_EQ(changes, std::vector<int>({4, 3, 2}));
}

TEST_F(SpinBarControl, mouseLeavesTheHeldArrow_stops)
{
    for (const int y : {bar.height() - 3, -20}) {
        changes.clear();
        QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
        ASSERT_EQ(changes.size(), 1U);
        MoveHeld(QPoint(bar.width() / 2, 3));
        ASSERT_TRUE(QTest::qWaitFor([this] { return changes.size() >= 2; }, 10'000)) << "it is still on it";
        MoveHeld(QPoint(bar.width() / 2, y));
        const std::size_t count = changes.size();
        WaitForRepeatsElsewhere();
        MoveHeld(QPoint(bar.width() / 2, 2));
        EXPECT_EQ(changes.size(), count) << "nor does it go on when the mouse comes back";
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
    }
}

TEST_F(SpinBarControl, hiddenWhileHeld_stops)
{
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
    ASSERT_EQ(changes.size(), 1U);
    bar.hide();
    WaitForRepeatsElsewhere();
    bar.show();
    WaitForRepeatsElsewhere();
    EXPECT_EQ(changes, std::vector<int>({6}));
}

TEST_F(SpinBarControl, doubleClick_isTwoSteps)
{
    ClickTop();
    // The second press comes as this.
    QTest::mouseDClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 2));
    EXPECT_EQ(changes, std::vector<int>({6, 7})) << "who clicks fast loses no step";
}

TEST_F(SpinBarControl, otherButtonsAndDisabled_takeNothing)
{
    QTest::mouseClick(&bar, Qt::RightButton, {}, QPoint(5, 2));
    bar.setEnabled(false);
    ClickTop();
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
