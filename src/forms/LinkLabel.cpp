// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/LinkLabel.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include <utility>

namespace {

class LinkInterface final : public QAccessibleWidget
{
public:
    explicit LinkInterface(LinkLabel* label)
        : QAccessibleWidget(label)
    {
    }
    [[nodiscard]] QAccessible::Role role() const override
    {
        return Label()->IsPageTab() ? QAccessible::PageTab : QAccessible::Link;
    }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = Label()->IsPageTab();
        state.selected = Label()->IsSelected();
        return state;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        // Qt would give a link inside a group box the name of the box.
        const bool isUnnamed = kind == QAccessible::Name && Label()->accessibleName().isEmpty();
        return isUnnamed ? Label()->text() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override
    {
        if (name == pressAction()) {
            Label()->Click();
        }
    }

private:
    [[nodiscard]] LinkLabel* Label() const { return static_cast<LinkLabel*>(widget()); }
};

QAccessibleInterface* CreateLinkInterface(const QString& /*className*/, QObject* object)
{
    auto* const label = qobject_cast<LinkLabel*>(object);
    return label != nullptr ? new LinkInterface(label) : nullptr;
}

// Whether the widget or a frame around it is disabled itself; a disabled window does not count.
bool IsDisabledInItsWindow(const QWidget& widget)
{
    return !widget.isWindow() &&
           (widget.testAttribute(Qt::WA_ForceDisabled) ||
            (widget.parentWidget() != nullptr && IsDisabledInItsWindow(*widget.parentWidget())));
}

} // namespace

LinkLabel::LinkLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);
    ApplyColour();
}

void LinkLabel::ApplyColour()
{
    // These roles have the same colour in each state of the window, so that only the label's own state shows.
    setForegroundRole(IsDisabledInItsWindow(*this) ? QPalette::PlaceholderText : QPalette::Link);
}

void LinkLabel::Click()
{
    if (isEnabled() && m_click) {
        m_click();
    }
}

void LinkLabel::setEnabled(bool enabled)
{
    QLabel::setEnabled(enabled);
    ApplyColour();
}

void LinkLabel::SetSelected(bool selected)
{
    if (m_selected == selected) {
        return;
    }
    m_selected = selected;
    QFont marked = font();
    marked.setBold(selected);
    setFont(marked);
    // Not QAccessibleStateChangeEvent: Qt sends no signal of AT-SPI for its state "selected".
    QAccessibleEvent event(this, selected ? QAccessible::Selection : QAccessible::SelectionRemove);
    QAccessible::updateAccessibility(&event);
}

void LinkLabel::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
    if (m_move) {
        m_move();
    }
}

void LinkLabel::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->button() == Qt::LeftButton;
    event->accept();
}

void LinkLabel::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    const bool wasPressed = std::exchange(m_pressed, false);
    if (wasPressed && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        Click();
    }
}

void LinkLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    // QWidget would handle the second press as another click, which would open a second page.
    event->accept();
}

void LinkLabel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space) {
        // A held key would open one page after another.
        if (!event->isAutoRepeat()) {
            Click();
        }
        return;
    }
    QLabel::keyPressEvent(event);
}

void LinkLabel::paintEvent(QPaintEvent* /*event*/)
{
    QStylePainter painter(this);
    // The base class draws a label in a disabled window as disabled.
    QPalette colours = palette();
    colours.setCurrentColorGroup(QPalette::Active);
    constexpr bool kIsEnabled = true;
    painter.drawItemText(contentsRect(), static_cast<int>(alignment()), colours, kIsEnabled, text(),
                         foregroundRole());
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = style()->itemTextRect(fontMetrics(), contentsRect(), static_cast<int>(alignment()),
                                            kIsEnabled, text());
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }
}

void LinkLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        m_pressed = false;
        ApplyColour();
    }
}

void InstallLinkAccessibility()
{
    QAccessible::installFactory(CreateLinkInterface);
}
