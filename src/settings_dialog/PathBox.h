// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Boxes.h"

class QCompleter;
class QFileSystemModel;

/// A text box for the path of a file. Typing, or the key Down, opens a list of the files whose paths begin
/// with the text, as soon as their folder has been read; a relative path begins in the working directory. The
/// text changes only when one of them is chosen. A chosen folder raises no Change: the list shows its files.
/// The path of a file that is dropped on the box replaces the text. A path that is wider than the box is
/// shown in a tooltip.
class PathBox final : public TextBox
{
    Q_OBJECT

public:
    explicit PathBox(QWidget* parent);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    /// The path that the text stands for.
    [[nodiscard]] QString AbsolutePath() const;
    void OfferFiles();
    /// Puts a path of the list into the box.
    void Choose(const QString& path);
    void CreateList();
    void ShowList();
    void HideList();
    [[nodiscard]] bool IsWiderThanBox() const;

    /// Created when files are first offered: the model has a thread and takes 4 MB.
    QFileSystemModel* m_files = nullptr;
    QCompleter* m_list = nullptr;
};
