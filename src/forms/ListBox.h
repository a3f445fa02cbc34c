// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListWidget>

#include <functional>

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
