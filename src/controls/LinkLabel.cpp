// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/LinkLabel.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace {

class LinkInterface final : public QAccessibleWidget
{
public:
    explicit LinkInterface(LinkLabel* label)
        : QAccessibleWidget(label, QAccessible::Link)
    {
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        // Left to the toolkit, a link inside a frame would be called by the frame's caption.
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

} // namespace

LinkLabel::LinkLabel(const QString& caption, QWidget* parent)
    : QLabel(parent)
{
    // The first text makes the screen reader ask what this is, which inside the base class would be a label.
    setText(caption);
    setTextFormat(Qt::PlainText);
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);
    ApplyColour();
}

void LinkLabel::ApplyColour()
{
    QPalette colours = palette();
    // Dark enough to read on a light window, light enough to tell from it when greyed.
    colours.setColor(QPalette::Active, QPalette::WindowText, QColor(0x00, 0x3c, 0xb4));
    colours.setColor(QPalette::Inactive, QPalette::WindowText, QColor(0x00, 0x3c, 0xb4));
    colours.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x62, 0x62, 0x68));
    setPalette(colours);
}

void LinkLabel::Click()
{
    if (isEnabled() && m_click) {
        m_click();
    }
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
    if (m_pressed && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        m_pressed = false;
        Click();
    }
}

void LinkLabel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space) {
        // A key held down would open page after page.
        if (!event->isAutoRepeat()) {
            Click();
        }
        return;
    }
    QLabel::keyPressEvent(event);
}

void LinkLabel::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        QStylePainter(this).drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }
}

void LinkLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        m_pressed = false;
    }
}

void InstallLinkAccessibility()
{
    QAccessible::installFactory(CreateLinkInterface);
}
