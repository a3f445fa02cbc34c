// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Boxes.h"

#include <QMouseEvent>

QSize LineDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const
{
    // A line of width 0 gets the width of the list, and Qt measures one line instead of all.
    constexpr int kAboveAndBelow = 5;
    return {0, option.fontMetrics.height() + kAboveAndBelow};
}

CheckBox::CheckBox(QWidget* parent)
    : QCheckBox(parent)
{
    connect(this, &QCheckBox::toggled, this, [this] {
        if (m_click) {
            m_click();
        }
    });
}

OptionButton::OptionButton(QWidget* parent)
    : QRadioButton(parent)
{
    connect(this, &QRadioButton::toggled, this, [this](bool selected) {
        if (selected) {
            TakeTabStop();
        }
        if (selected && m_click) {
            m_click();
        }
    });
}

void OptionButton::TakeTabStop()
{
    for (OptionButton* const option :
         parentWidget()->findChildren<OptionButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        option->setFocusPolicy(option == this ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void OptionButton::focusInEvent(QFocusEvent* event)
{
    // QAbstractButton would let the Tab key reach the option that had the focus last, selected or not.
    QWidget::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
}

void OptionButton::showEvent(QShowEvent* event)
{
    QRadioButton::showEvent(event);
    // A .ui file selects an option before the later ones are made.
    if (Value()) {
        TakeTabStop();
    }
}

TextBox::TextBox(QWidget* parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textChanged, this, [this] { Changed(); });
    connect(this, &QLineEdit::returnPressed, this, [this] {
        if (m_enter) {
            m_enter();
        }
    });
}

void TextBox::Changed()
{
    if (m_change) {
        m_change();
    }
}

ListBox::ListBox(QWidget* parent)
    : QListWidget(parent)
{
    setItemDelegate(new LineDelegate(this));
    setUniformItemSizes(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    setTabKeyNavigation(false);
}

int ListBox::ListIndex() const
{
    // Not the current row: a list that takes the focus makes its first row current without selecting it.
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.front().row();
}

void ListBox::SetListIndex(int row)
{
    setCurrentRow(row);
    scrollToItem(item(row));
}

QString ListBox::List(int row) const
{
    const QListWidgetItem* const line = item(row);
    return line == nullptr ? QString() : line->text();
}

QItemSelectionModel::SelectionFlags ListBox::selectionCommand(const QModelIndex& index,
                                                              const QEvent* event) const
{
    // A click with the control key would deselect the line.
    const QItemSelectionModel::SelectionFlags command = QListWidget::selectionCommand(index, event);
    return command.testFlag(QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate : command;
}

void ListBox::mousePressEvent(QMouseEvent* event)
{
    if (indexAt(event->position().toPoint()).isValid()) {
        QListWidget::mousePressEvent(event);
    }
}

void ListBox::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (indexAt(event->position().toPoint()).isValid()) {
        QListWidget::mouseDoubleClickEvent(event);
    }
    if (event->button() == Qt::LeftButton && m_doubleClick) {
        m_doubleClick();
    }
}

void ListBox::showEvent(QShowEvent* event)
{
    QListWidget::showEvent(event);
    // If the list was filled before its height was set, the scroll position is wrong.
    if (const int row = ListIndex(); row >= 0) {
        scrollToItem(item(row));
    }
}
