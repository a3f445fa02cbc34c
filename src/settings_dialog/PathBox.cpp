// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/PathBox.h"

#include <QCompleter>
#include <QDir>
#include <QDropEvent>
#include <QFileSystemModel>
#include <QKeyEvent>
#include <QListView>
#include <QMimeData>
#include <QSignalBlocker>
#include <QStyleOptionFrame>
#include <QTextBoundaryFinder>
#include <QUrl>

namespace {

// The files of the system; the name of a folder is shown with a separator at its end.
class FileModel final : public QFileSystemModel
{
public:
    using QFileSystemModel::QFileSystemModel;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        const QVariant value = QFileSystemModel::data(index, role);
        return role == Qt::DisplayRole && isDir(index) ? value.toString() + QDir::separator() : value;
    }
};

// The path of the dragged file; empty for a folder, for several files and for an address that is no file.
QString DraggedFile(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    const QString path = urls.size() == 1 ? urls.front().toLocalFile() : QString();
    return QFileInfo(path).isFile() ? QDir::toNativeSeparators(path) : QString();
}

// Accepts a dragged file, and refuses everything else that has addresses: QLineEdit would insert them as
// text. False if there are no addresses.
bool HandlesFiles(QDropEvent& event)
{
    event.setAccepted(!DraggedFile(*event.mimeData()).isEmpty());
    if (event.isAccepted()) {
        // As a copy: after a move the file manager would delete the file.
        event.setDropAction(Qt::CopyAction);
    }
    return event.mimeData()->hasUrls();
}

// The list of a QCompleter, which makes it 6 pixels higher than its rows: 4 more than for the frame.
class FileList final : public QListView
{
public:
    FileList()
    {
        setViewportMargins(0, 2, 0, 2);
        setEditTriggers(QAbstractItemView::NoEditTriggers);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
};

// The text with line breaks allowed after each separator and within long names.
QString WithLineBreaks(const QString& path)
{
    constexpr QChar kLineBreakAllowed = u'\u200b';
    constexpr int kLongestRun = 20; // characters; a line of a tooltip has about 80 of medium width
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, path);
    QString text;
    int run = 0;
    for (auto start = characters.position(); characters.toNextBoundary() > 0; start = characters.position()) {
        const QStringView character = QStringView(path).sliced(start, characters.position() - start);
        text += character;
        ++run;
        if (character == u'/' || character == QDir::separator() || run == kLongestRun) {
            text += kLineBreakAllowed;
            run = 0;
        }
    }
    return text;
}

} // namespace

PathBox::PathBox(QWidget* parent)
    : TextBox(parent)
{
    connect(this, &QLineEdit::textEdited, this, [this] { text().isEmpty() ? HideList() : OfferFiles(); });
}

QString PathBox::AbsolutePath() const
{
    // Not QFileInfo: it would drop a "/" at the end. On Windows "/" begins a path of the current drive.
    return text().isEmpty() ? QDir::currentPath() + u'/' : QDir().absoluteFilePath(text());
}

void PathBox::CreateList()
{
    m_files = new FileModel(this);
    m_files->setOptions(QFileSystemModel::DontWatchForChanges |
                        QFileSystemModel::DontUseCustomDirectoryIcons);
    m_files->setRootPath(QString());
    m_files->sort(0);
    // Folders are read in the background.
    connect(m_files, &QFileSystemModel::directoryLoaded, this, [this] {
        if (hasFocus() && m_list->completionPrefix() == AbsolutePath() && m_list->completionCount() == 0) {
            ShowList();
        }
    });
    m_list = new QCompleter(m_files, this);
    m_list->setPopup(new FileList);
    m_list->popup()->setItemDelegate(new LineDelegate(m_list->popup()));
    // Not setCompleter(): QLineEdit would set its text to each path on which the user moves in the list, and
    // each change is stored.
    m_list->setWidget(this);
    connect(m_list, qOverload<const QString&>(&QCompleter::activated), this, &PathBox::Choose);
}

void PathBox::OfferFiles()
{
    if (m_list == nullptr) {
        CreateList();
    }
    if (const QModelIndex folder = m_files->index(QFileInfo(AbsolutePath()).path());
        m_files->canFetchMore(folder)) {
        m_files->fetchMore(folder);
    }
    ShowList();
}

void PathBox::Choose(const QString& path)
{
    if (!QFileInfo(path).isDir()) {
        SetText(path);
        return;
    }
    {
        // Without a Change, which would store the folder as the sound.
        const QSignalBlocker blocker(this);
        SetText(path.endsWith(QDir::separator()) ? path : path + QDir::separator());
    }
    OfferFiles();
}

void PathBox::ShowList()
{
    m_list->setCompletionPrefix(AbsolutePath());
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
    // QLineEdit leaves these pixels empty at both ends of its contents.
    constexpr int kMargin = 2;
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect contents = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    return fontMetrics().horizontalAdvance(text()) > contents.width() - 2 * kMargin;
}

bool PathBox::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        // As rich text: a tooltip does not wrap the lines of plain text.
        setToolTip(IsWiderThanBox() ? QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>")
                                          .arg(WithLineBreaks(text()).toHtmlEscaped())
                                    : QString());
    }
    return TextBox::event(event);
}

void PathBox::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Down) {
        OfferFiles();
    } else {
        TextBox::keyPressEvent(event);
    }
}

void PathBox::hideEvent(QHideEvent* event)
{
    // A closed dialog is destroyed only after its last handler has ended: the list would remain until then.
    HideList();
    TextBox::hideEvent(event);
}

void PathBox::dragEnterEvent(QDragEnterEvent* event)
{
    if (!HandlesFiles(*event)) {
        TextBox::dragEnterEvent(event);
    }
}

void PathBox::dragMoveEvent(QDragMoveEvent* event)
{
    if (!HandlesFiles(*event)) {
        TextBox::dragMoveEvent(event);
    }
}

void PathBox::dropEvent(QDropEvent* event)
{
    if (!HandlesFiles(*event)) {
        TextBox::dropEvent(event);
    } else if (event->isAccepted()) {
        SetText(DraggedFile(*event->mimeData()));
    }
}
