// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Boxes.h"

class QCompleter;
class QFileSystemModel;

/// A text box for the path of a file. Typing an absolute path opens a list of the files whose paths begin
/// with the text, as soon as their folder has been read; the text changes only when one of them is chosen.
/// The path of a file that is dropped on the box replaces the text. A path that is wider than the box is
/// shown in a tooltip.
class PathBox final : public TextBox
{
    Q_OBJECT

public:
    explicit PathBox(QWidget* parent);

protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void OfferFiles();
    void CreateList();
    void ShowList();
    void HideList();
    [[nodiscard]] bool IsWiderThanBox() const;

    /// Created when an absolute path is typed: the model has a thread and takes 4 MB.
    QFileSystemModel* m_files = nullptr;
    QCompleter* m_list = nullptr;
};
