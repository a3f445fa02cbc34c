// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QMimeData>
#include <QTextDocument>
#include <QUrl>

namespace {

constexpr QChar kLineBreakAllowed = u'\u200b';
const QStringList kTwo{QStringLiteral("adhan one.wav"), QStringLiteral("adhan two.wav")};
const QString kFolder = QStringLiteral("sounds") + QDir::separator();
const QStringList kAll = kTwo + QStringList(QStringLiteral("other.wav"));

/// The page of Fajr, whose alert is on, and a folder with three files.
class PathBoxTest : public DialogTest
{
protected:
    PathBoxTest()
    {
        QDir().mkdir(QStringLiteral("sounds"));
        for (const char* const name : {"adhan one.wav", "adhan two.wav", "other.wav"}) {
            EXPECT_TRUE(QFile(Path(name)).open(QIODevice::WriteOnly));
        }
        Open(3);
        Widget("TxtPath").setFocus();
    }

    /// As the list stores it: with the separators of the system.
    [[nodiscard]] QString Path(const char* name) const
    {
        return QDir::toNativeSeparators(platform.folder.filePath(QStringLiteral("sounds/"))) +
               QLatin1String(name);
    }
    void Type(const QString& text) const { QTest::keyClicks(&Widget("TxtPath"), text); }
    /// The list, when it shows these names; null if it never does.
    QAbstractItemView* ListOf(const QStringList& names) const
    {
        const auto list = [] { return qobject_cast<QAbstractItemView*>(QApplication::activePopupWidget()); };
        const auto shown = [&list] {
            QStringList texts;
            for (int row = 0; list() != nullptr && row < list()->model()->rowCount(); ++row) {
                texts << list()->model()->index(row, 0).data().toString();
            }
            return texts;
        };
        constexpr int kMostMilliseconds = 5000;
        if (!QTest::qWaitFor([&] { return shown() == names; }, kMostMilliseconds)) {
            ADD_FAILURE() << "shown: " << shown().join(u'|').toStdString();
            return nullptr;
        }
        // The offscreen platform activates each window that is shown, even a list.
        QApplication::setActiveWindow(dialog);
        return list();
    }
    /// Types the path of the two files that begin with "adhan", and counts from there on.
    QAbstractItemView* OfferTwo()
    {
        Type(Path("adhan"));
        QAbstractItemView* const list = ListOf(kTwo);
        Forget();
        return list;
    }
    void ExpectNothingStored(const QString& shown) const
    {
        EXPECT_EQ(Saves(), 0U);
        EXPECT_EQ(TextOf("TxtPath"), shown);
        EXPECT_EQ(Stored("audioFile", "fajr"), shown);
    }

    /// Moves the mouse with these addresses over the box, and releases them there if the box accepts them.
    bool Drop(const QList<QUrl>& urls) const
    {
        // File managers send the paths as text too.
        QMimeData data;
        data.setUrls(urls);
        data.setText(urls.front().toLocalFile());
        const auto actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(QPoint(5, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QDragMoveEvent move(QPoint(6, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QDropEvent drop(QPointF(6, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
        for (QDropEvent* const event :
             {static_cast<QDropEvent*>(&enter), static_cast<QDropEvent*>(&move), &drop}) {
            // The action of a file manager in the same file system.
            event->setDropAction(Qt::MoveAction);
            event->ignore();
            QCoreApplication::sendEvent(&Widget("TxtPath"), event);
            if (!event->isAccepted()) {
                return false;
            }
            EXPECT_EQ(event->dropAction(), Qt::CopyAction) << "the file stays in its folder";
        }
        return true;
    }
    /// The tooltip as the user reads it.
    [[nodiscard]] QString Tip() const
    {
        QHelpEvent asked(QEvent::ToolTip, QPoint(5, 5), QPoint());
        QCoreApplication::sendEvent(&Widget("TxtPath"), &asked);
        QTextDocument document;
        document.setHtml(Widget("TxtPath").toolTip());
        return document.toPlainText().remove(kLineBreakAllowed);
    }
};

TEST_F(PathBoxTest, typing_offersTheFilesThatBeginWithTheText)
{
    EXPECT_NE(OfferTwo(), nullptr);
    ExpectNothingStored(Path("adhan"));
}

TEST_F(PathBoxTest, slashAfterAFolder_offersItsFiles)
{
    Type(Path(""));
    EXPECT_NE(ListOf(kAll), nullptr);
}

TEST_F(PathBoxTest, list_showsWholeRowsOfTheHeightOfTheOtherLists)
{
    QStringList names;
    for (int number = 1; number <= 9; ++number) {
        names << QStringLiteral("many %1.wav").arg(number);
        EXPECT_TRUE(QFile(Path("") + names.back()).open(QIODevice::WriteOnly));
    }
    Type(Path("many"));
    QAbstractItemView* const list = ListOf(names);
    ASSERT_NE(list, nullptr);
    ListBox other(nullptr);
    other.addItem(names.front());
    EXPECT_EQ(list->sizeHintForRow(0), other.sizeHintForRow(0));
    EXPECT_EQ(list->viewport()->height(), 7 * list->sizeHintForRow(0));
}

TEST_F(PathBoxTest, movingThroughTheList_storesNothing_enterStoresTheChosenFileOnce)
{
    QAbstractItemView* const list = OfferTwo();
    ASSERT_NE(list, nullptr);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Down}) {
        QTest::keyClick(list, key);
        ExpectNothingStored(Path("adhan"));
    }
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(TextOf("TxtPath"), Path("adhan two.wav"));
    EXPECT_EQ(SavedValues("audioFile", "fajr"), Path("adhan two.wav"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(IsOpen());
}

TEST_F(PathBoxTest, clickInTheList_storesTheFileOnce)
{
    QAbstractItemView* const list = OfferTwo();
    ASSERT_NE(list, nullptr);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualRect(list->model()->index(0, 0)).center());
    EXPECT_EQ(SavedValues("audioFile", "fajr"), Path("adhan one.wav"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(PathBoxTest, folderChosen_offersItsFiles_andStoresNothing)
{
    for (const bool byMouse : {false, true}) {
        Box("TxtPath").SetText(QString());
        const QString typed = platform.folder.filePath(QStringLiteral("sou"));
        Type(typed);
        QAbstractItemView* const list = ListOf({kFolder});
        ASSERT_NE(list, nullptr);
        Forget();
        if (byMouse) {
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualRect(list->model()->index(0, 0)).center());
        } else {
            QTest::keyClick(list, Qt::Key_Down);
            QTest::keyClick(list, Qt::Key_Return);
        }
        EXPECT_NE(ListOf(kAll), nullptr);
        EXPECT_EQ(TextOf("TxtPath"), Path(""));
        EXPECT_EQ(Saves(), 0U);
        EXPECT_EQ(Stored("audioFile", "fajr"), typed);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Return);
        EXPECT_EQ(SavedValues("audioFile", "fajr"), Path("adhan one.wav"));
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
}

// A sound is played from the path relative to the folder of settings.xml.
TEST_F(PathBoxTest, relativeName_offersTheFilesBesideTheSettings)
{
    Type(QStringLiteral("sounds/ad"));
    QAbstractItemView* const list = ListOf(kTwo);
    ASSERT_NE(list, nullptr);
    Forget();
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(SavedValues("audioFile", "fajr"),
              QDir::toNativeSeparators(QDir::currentPath() + QStringLiteral("/sounds/adhan one.wav")));
}

// On Windows a path that begins with a separator is one of the current drive.
TEST_F(PathBoxTest, pathWithoutADrive_offersTheFilesOfTheCurrentOne)
{
    const QString path = Path("adhan");
    Type(path.mid(path.indexOf(QDir::separator())));
    EXPECT_NE(ListOf(kTwo), nullptr);
}

TEST_F(PathBoxTest, slashes_areAcceptedOnEverySystem)
{
    Type(QDir::fromNativeSeparators(Path("adhan")));
    EXPECT_NE(ListOf(kTwo), nullptr);
}

TEST_F(PathBoxTest, keyDown_offersFiles)
{
    QTest::keyClick(&Widget("TxtPath"), Qt::Key_Down);
    EXPECT_NE(ListOf({kFolder, QStringLiteral("settings.xml")}), nullptr)
        << "beside the settings for an empty box";
    EXPECT_EQ(Saves(), 0U);
    Box("TxtPath").SetText(Path("adhan"));
    Forget();
    QTest::keyClick(&Widget("TxtPath"), Qt::Key_Down);
    EXPECT_NE(ListOf(kTwo), nullptr);
    EXPECT_EQ(Saves(), 0U);
}

TEST_F(PathBoxTest, listLeftWithoutAChoice_storesNothing)
{
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Tab}) {
        SCOPED_TRACE(key);
        Box("TxtPath").SetText(QString());
        Widget("TxtPath").setFocus();
        QAbstractItemView* const list = OfferTwo();
        ASSERT_NE(list, nullptr);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, key);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        ExpectNothingStored(Path("adhan"));
        EXPECT_TRUE(IsOpen());
    }
}

TEST_F(PathBoxTest, typingOnUnderTheList_storesEachKeystroke)
{
    QAbstractItemView* const list = OfferTwo();
    ASSERT_NE(list, nullptr);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Space, Qt::NoModifier);
    QTest::keyClicks(list, QStringLiteral("t"));
    EXPECT_EQ(SavedValues("audioFile", "fajr"), Path("adhan ") + u'|' + Path("adhan t"));
    EXPECT_NE(ListOf({QStringLiteral("adhan two.wav")}), nullptr);
    QTest::keySequence(list, QKeySequence(QStringLiteral("Ctrl+A")));
    QTest::keyClick(list, Qt::Key_Backspace);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "no list for an empty box";
    EXPECT_EQ(Stored("audioFile", "fajr"), QString());
}

TEST_F(PathBoxTest, dialogClosedUnderTheList_takesTheListAlong)
{
    ASSERT_NE(OfferTwo(), nullptr);
    // While one of its handlers runs, an unloaded window is hidden and not destroyed.
    dialog->Handle([this] {
        dialog->Unload();
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    });
}

TEST_F(PathBoxTest, droppedFile_replacesTheTextInOneSave)
{
    Type(QStringLiteral("before.wav"));
    Forget();
    EXPECT_TRUE(Drop({QUrl::fromLocalFile(Path("adhan two.wav"))}));
    EXPECT_EQ(TextOf("TxtPath"), Path("adhan two.wav"));
    EXPECT_EQ(SavedValues("audioFile", "fajr"), Path("adhan two.wav"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(PathBoxTest, dropOtherThanOneFile_isRefused)
{
    const QUrl file = QUrl::fromLocalFile(Path("adhan two.wav"));
    EXPECT_FALSE(Drop({file, file}));
    EXPECT_FALSE(Drop({QUrl(QStringLiteral("http://example.org/a.wav"))}));
    EXPECT_FALSE(Drop({QUrl::fromLocalFile(Path(""))})) << "a folder";
    EXPECT_EQ(Saves(), 0U);
}

TEST_F(PathBoxTest, longPath_isWholeInTheTooltip)
{
    const QString start = QStringLiteral("/home/<b>a & b</b>/two  blanks/");
    const QFontMetrics metrics(Widget("TxtPath").font());
    QString path = start;
    while (metrics.horizontalAdvance(path) < Widget("TxtPath").width()) {
        EXPECT_TRUE(Tip().isEmpty() || metrics.horizontalAdvance(path) > Widget("TxtPath").width() - 20);
        path += u'x';
        Box("TxtPath").SetText(path);
    }
    EXPECT_EQ(Tip(), path);
    dialog->SelectTab(4);
    dialog->SelectTab(3);
    EXPECT_EQ(Tip(), path) << "also one from the file";
    Box("TxtPath").SetText(QStringLiteral("short.wav"));
    EXPECT_EQ(Tip(), QString());
}

TEST_F(PathBoxTest, tooltipOfALongName_fitsTheScreen)
{
    for (const QString& letter :
         {QStringLiteral("W"), QStringLiteral("\u0645"), QStringLiteral("\U0001f54c")}) {
        const QString path = u'/' + letter.repeated(200);
        Box("TxtPath").SetText(path);
        EXPECT_EQ(Tip(), path);
        const auto isTip = [](const QWidget* window) { return window->inherits("QTipLabel"); };
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto tip = std::find_if(windows.begin(), windows.end(), isTip);
        ASSERT_NE(tip, windows.end());
        EXPECT_LT((*tip)->width(), (*tip)->screen()->size().width());
    }
}

} // namespace
