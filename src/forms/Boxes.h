// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QStyledItemDelegate>

#include <functional>

/// A check box that raises Click only when its value changes, by the user or inside the setter.
class CheckBox final : public QCheckBox
{
    Q_OBJECT

public:
    explicit CheckBox(QWidget* parent);

    /// 1 ticked, 0 clear
    [[nodiscard]] int Value() const { return isChecked() ? 1 : 0; }
    void SetValue(int value) { setChecked(value != 0); }
    /// @param handler must not let an exception out
    void OnClick(std::function<void()> handler) { m_click = std::move(handler); }

private:
    std::function<void()> m_click;
};

/// A radio button. Raises Click when it becomes selected, by the user or inside the setter, but not when it
/// is selected already. The Tab key reaches only the selected option of a group.
class OptionButton final : public QRadioButton
{
    Q_OBJECT

public:
    explicit OptionButton(QWidget* parent);

    [[nodiscard]] bool Value() const { return isChecked(); }
    void Select() { setChecked(true); }
    /// @param handler must not let an exception out
    void OnClick(std::function<void()> handler) { m_click = std::move(handler); }

protected:
    void focusInEvent(QFocusEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void TakeTabStop();

    std::function<void()> m_click;
};

/// A one-line text box that raises Change when its text changes, by an edit of the user or inside the setter.
class TextBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget* parent);

    [[nodiscard]] QString Text() const { return text(); }
    void SetText(const QString& value) { setText(value); }
    /// @param handler must not let an exception out
    void OnChange(std::function<void()> handler) { m_change = std::move(handler); }
    /// Sets the handler of the Enter key.
    /// @param handler must not let an exception out
    void OnEnter(std::function<void()> handler) { m_enter = std::move(handler); }

protected:
    /// Raises Change.
    virtual void Changed();

private:
    std::function<void()> m_change;
    std::function<void()> m_enter;
};

/// The lines of all lists: of one height, as wide as their list.
class LineDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// A list of text lines of which at most one is selected. The user can't clear the selection, neither by a
/// click below the lines nor by keys. A line that is too long ends in dots.
class ListBox final : public QListWidget
{
    Q_OBJECT

public:
    explicit ListBox(QWidget* parent);

    /// Row of the selected line, or -1.
    [[nodiscard]] int ListIndex() const;
    /// Selects the line and brings it into view.
    void SetListIndex(int row);
    /// The text of a line; empty for a row that does not exist, such as -1.
    [[nodiscard]] QString List(int row) const;
    /// A double click with the left button, on a line or on the empty part below the lines.
    /// @param handler must not let an exception out
    void OnDoubleClick(std::function<void()> handler) { m_doubleClick = std::move(handler); }

protected:
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                       const QEvent* event) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    std::function<void()> m_doubleClick;
};
