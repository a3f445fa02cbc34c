// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/PathBox.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QDir>
#include <QDropEvent>
#include <QFileSystemModel>
#include <QMimeData>
#include <QStyleOptionFrame>
#include <QUrl>

namespace {

// The path of the one file in @p event; empty if there is no file, or more than one.
QString FileIn(const QDropEvent& event)
{
    const QList<QUrl> urls = event.mimeData()->urls();
    return urls.size() == 1 ? QDir::toNativeSeparators(urls.front().toLocalFile()) : QString();
}

// As a copy: after a move the file manager would delete the file.
void AcceptCopy(QDropEvent& event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

} // namespace

PathBox::PathBox(QWidget* parent)
    : TextBox(parent)
{
    connect(this, &QLineEdit::textEdited, this, &PathBox::OfferFiles);
}

void PathBox::CreateList()
{
    m_files = new QFileSystemModel(this);
    m_files->setOptions(QFileSystemModel::DontWatchForChanges |
                        QFileSystemModel::DontUseCustomDirectoryIcons);
    m_files->setRootPath(QString());
    m_files->sort(0);
    // Folders are read in the background.
    connect(m_files, &QFileSystemModel::directoryLoaded, this, [this] {
        if (hasFocus() && m_list->completionPrefix() == text() && m_list->completionCount() == 0) {
            ShowList();
        }
    });
    m_list = new QCompleter(m_files, this);
    // Not setCompleter(): that would put each path into the box, and so store it, while the user moves
    // through the list.
    m_list->setWidget(this);
    connect(m_list, qOverload<const QString&>(&QCompleter::activated), this, &PathBox::SetText);
}

void PathBox::OfferFiles()
{
    if (!QDir::isAbsolutePath(text())) {
        HideList();
        return;
    }
    if (m_list == nullptr) {
        CreateList();
    }
    if (const QModelIndex folder = m_files->index(QFileInfo(text()).path()); m_files->canFetchMore(folder)) {
        m_files->fetchMore(folder);
    }
    ShowList();
}

void PathBox::ShowList()
{
    m_list->setCompletionPrefix(text());
    m_list->complete();
}

void PathBox::HideList()
{
    if (m_list != nullptr) {
        m_list->popup()->hide();
    }
}

bool PathBox::IsWiderThanBox() const
{
    // Inside the frame QLineEdit keeps these pixels free at both ends.
    constexpr int kMargin = 2;
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect contents = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    return fontMetrics().horizontalAdvance(text()) > contents.width() - 2 * kMargin;
}

bool PathBox::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        // Rich text, since a tooltip breaks only that into lines.
        setToolTip(
            IsWiderThanBox()
                ? QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(text().toHtmlEscaped())
                : QString());
    }
    return TextBox::event(event);
}

void PathBox::hideEvent(QHideEvent* event)
{
    // A dialog that is closed is destroyed only when its last handler has ended.
    HideList();
    TextBox::hideEvent(event);
}

void PathBox::dragEnterEvent(QDragEnterEvent* event)
{
    if (FileIn(*event).isEmpty()) {
        TextBox::dragEnterEvent(event);
    } else {
        AcceptCopy(*event);
    }
}

void PathBox::dragMoveEvent(QDragMoveEvent* event)
{
    if (FileIn(*event).isEmpty()) {
        TextBox::dragMoveEvent(event);
    } else {
        AcceptCopy(*event);
    }
}

void PathBox::dropEvent(QDropEvent* event)
{
    if (const QString file = FileIn(*event); !file.isEmpty()) {
        AcceptCopy(*event);
        SetText(file);
    } else {
        TextBox::dropEvent(event);
    }
}
