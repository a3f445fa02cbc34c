// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractSlider>
#include <QScrollBar>

#include <functional>

/// A horizontal scroll bar. Raises Change at each step, when the thumb is released, and inside the setter,
/// but not while the thumb is dragged.
class LevelBar final : public QScrollBar
{
    Q_OBJECT

public:
    explicit LevelBar(QWidget* parent);

    [[nodiscard]] int Value() const { return value(); }
    /// Throws kInvalidPropertyValue for a value outside the closed interval of the limits.
    void SetValue(int value);
    /// @param handler must not let an exception out
    void OnChange(std::function<void()> handler) { m_change = std::move(handler); }

private:
    std::function<void()> m_change;
};

/// A small vertical bar with two arrows: the top one raises the value by a step, the bottom one lowers it,
/// and the arrow keys do the same, also in the text box beside the bar. A held arrow repeats. The mouse
/// wheel, Home and End do nothing. Raises Change when the value changes, by the user or inside the setter.
class SpinBar final : public QAbstractSlider
{
    Q_OBJECT

public:
    explicit SpinBar(QWidget* parent);

    [[nodiscard]] int Value() const { return value(); }
    /// Throws kInvalidPropertyValue for a value outside the closed interval of the limits.
    void SetValue(int value);
    /// @param handler must not let an exception out
    void OnChange(std::function<void()> handler) { m_change = std::move(handler); }
    /// From now on the keys Up and Down in @p box, without a modifier, change the value by a step.
    void StepByKeysOf(QWidget& box) { box.installEventFilter(this); }

    [[nodiscard]] QSize sizeHint() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] QRect ArrowRect(SliderAction action) const;
    void Press(SliderAction action);
    void Release();

    std::function<void()> m_change;
    SliderAction m_pressed = SliderNoAction;
};
