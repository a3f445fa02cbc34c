// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Bars.h"

#include "forms/Panels.h"
#include "support/RuntimeError.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace {

constexpr int kRepeatDelay = 400;   // milliseconds before a held arrow repeats
constexpr int kRepeatInterval = 60; // milliseconds between two repeats

void SetWithinLimits(QAbstractSlider& bar, int value)
{
    if (value < bar.minimum() || value > bar.maximum()) {
        throw RuntimeError(ErrorNumber::kInvalidPropertyValue, QStringLiteral("Invalid property value"));
    }
    bar.setValue(value);
}

} // namespace

LevelBar::LevelBar(QWidget* parent)
    : QScrollBar(Qt::Horizontal, parent)
{
    setTracking(false);
    // QScrollBar inverts its keys by default: the right arrow would lower the level.
    setInvertedControls(false);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QScrollBar::valueChanged, this, [this] {
        if (m_change) {
            m_change();
        }
    });
}

void LevelBar::SetValue(int value)
{
    SetWithinLimits(*this, value);
}

SpinBar::SpinBar(QWidget* parent)
    : QAbstractSlider(parent)
{
    setOrientation(Qt::Vertical);
    setSingleStep(1);
    setPageStep(1);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractSlider::valueChanged, this, [this] {
        if (m_change) {
            m_change();
        }
    });
}

void SpinBar::SetValue(int value)
{
    SetWithinLimits(*this, value);
}

QSize SpinBar::sizeHint() const
{
    return {17, 22};
}

QRect SpinBar::ArrowRect(SliderAction action) const
{
    const int half = height() / 2;
    return action == SliderSingleStepAdd ? QRect(0, 0, width(), half)
                                         : QRect(0, half, width(), height() - half);
}

void SpinBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QPalette& colours = palette();
    const QRect lower = ArrowRect(SliderSingleStepSub);
    const QColor line = colours.color(hasFocus() ? QPalette::Highlight : QPalette::Mid);
    DrawPanel(painter, rect(), colours.button(), line);
    if (m_pressed != SliderNoAction) {
        painter.setClipRect(ArrowRect(m_pressed));
        DrawPanel(painter, rect(), colours.midlight(), line);
        painter.setClipping(false);
    }
    DrawEdge(painter, lower, Qt::TopEdge, line);
    DrawArrow(painter, ArrowRect(SliderSingleStepAdd), Qt::UpArrow, colours.color(QPalette::ButtonText));
    DrawArrow(painter, lower, Qt::DownArrow, colours.color(QPalette::ButtonText));
}

void SpinBar::Press(SliderAction action)
{
    m_pressed = action;
    update();
    setRepeatAction(action, kRepeatDelay, kRepeatInterval);
    triggerAction(action);
}

void SpinBar::Release()
{
    m_pressed = SliderNoAction;
    setRepeatAction(SliderNoAction);
    update();
}

void SpinBar::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() == Qt::LeftButton) {
        const QPoint place = event->position().toPoint();
        Press(ArrowRect(SliderSingleStepAdd).contains(place) ? SliderSingleStepAdd : SliderSingleStepSub);
    }
}

void SpinBar::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
    if (m_pressed != SliderNoAction && !ArrowRect(m_pressed).contains(event->position().toPoint())) {
        Release();
    }
}

void SpinBar::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() == Qt::LeftButton) {
        Release();
    }
}

void SpinBar::wheelEvent(QWheelEvent* event)
{
    // Each change is stored at once: a turn of the wheel by accident must change nothing.
    event->ignore();
}

void SpinBar::keyPressEvent(QKeyEvent* event)
{
    // Home and End would set the value to a limit, which is stored at once.
    if (event->key() == Qt::Key_Home || event->key() == Qt::Key_End) {
        event->ignore();
    } else {
        QAbstractSlider::keyPressEvent(event);
    }
}

bool SpinBar::eventFilter(QObject* /*watched*/, QEvent* event)
{
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto& press = *static_cast<QKeyEvent*>(event);
    const int key = press.key();
    const bool isModified = (press.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier;
    if (isModified || (key != Qt::Key_Up && key != Qt::Key_Down)) {
        return false;
    }
    triggerAction(key == Qt::Key_Up ? SliderSingleStepAdd : SliderSingleStepSub);
    return true;
}

void SpinBar::changeEvent(QEvent* event)
{
    QAbstractSlider::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        Release();
    }
}

void SpinBar::hideEvent(QHideEvent* event)
{
    Release();
    QAbstractSlider::hideEvent(event);
}
