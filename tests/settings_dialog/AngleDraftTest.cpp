// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

#include <QInputMethodEvent>

namespace {

constexpr const char* kBox = "TxtSetFarjAngle";
constexpr const char* kBar = "VScroll2";
const QString kAngle1 = QStringLiteral("angle1");

/// Typing that passes through texts that are no numbers.
class AngleDraft : public DialogTest
{
protected:
    void OpenUserDefined(const char* angle, const char* locale = "en_US")
    {
        platform.region.locale = QLocale(QLatin1String(locale));
        WriteUserDefined(angle, "-15");
        Open();
        ASSERT_TRUE(IsOpen());
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
        Widget(kBox).setFocus();
    }
    /// Keys with spaces between them.
    void Press(const char* keys) const
    {
        for (const QString& key : QString::fromUtf8(keys).split(u' ')) {
            DialogTest::Press(kBox, key);
        }
    }
    void Type(const QString& text) const
    {
        for (const QChar character : text) {
            DialogTest::Press(kBox, QString(character));
        }
    }
    void Compose(const QString& preedit, const QString& commit) const
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(&Widget(kBox), &event);
    }
};

} // namespace

TEST_F(AngleDraft, angleEnteredInPlaceOfAnother_isStoredInEveryLocale)
{
    for (const char* const locale : {"en_US", "de_DE", "ar_EG", "sv_SE", "fa_IR"}) {
        for (const char* const stored : {"-18", "15", "0"}) {
            for (const char* const clear : {"Ctrl+A", "Backspace Backspace Backspace Backspace"}) {
                for (const char* const entered : {"-16.5", "\u221216,5"}) {
                    for (const bool paste : {false, true}) {
                        SCOPED_TRACE(testing::Message() << locale << ' ' << stored << ' ' << clear << ' '
                                                        << entered << (paste ? " pasted" : ""));
                        OpenUserDefined(stored, locale);
                        Press("End");
                        Press(clear);
                        if (paste) {
                            QGuiApplication::clipboard()->setText(QString::fromUtf8(entered));
                            Press("Ctrl+V");
                        } else {
                            Type(QString::fromUtf8(entered));
                        }
                        EXPECT_EQ(Stored(kAngle1), u"-16.5");
                        EXPECT_EQ(TextOf(kBox),
                                  QStringLiteral("-16%1").arg(QLocale(QLatin1String(locale)).decimalPoint()) +
                                      u'5');
                        EXPECT_EQ(Bar(kBar).Value(), -17);
                        dialog->Unload();
                    }
                }
            }
        }
    }
}

TEST_F(AngleDraft, keys_applyToTheDraft_andTheBoxShowsTheStoredAngle)
{
    const struct
    {
        const char* name;
        const char* keys;
        const char* shown;
        const char* saved;
    } rows[] = {
        {"minus over everything", "Ctrl+A -", "-18", "-18"},
        {"digit behind it", "Ctrl+A - 1", "-1", "-18|-1"},
        {"each number on the way", "Ctrl+A - 1 6 . 5", "-16.5", "-18|-1|-16|-16.|-16.5"},
        {"emptied", "Ctrl+A Backspace", "-18", "-18"},
        {"emptied one by one", "End Backspace Backspace Backspace Backspace", "-1", "-1|-1|-1"},
        {"letters", "Ctrl+A a b c", "-18", "-18|-18|-18"},
        {"letters taken back", "End x y Backspace Backspace", "-18", "-18|-18|-18|-18"},
        {"letter and digits", "End x . 5 Left Left Backspace", "-18.5", "-18|-18|-18|-18.5"},
        {"letter in the middle", "End Left x Del Backspace 2", "-12", "-18|-18|-1|-12"},
        {"caret of the number", "End Left x Backspace Del 2", "-12", "-18|-18|-1|-12"},
        {"sign in the middle", "End Left , 5", "-1.58", "-1.8|-1.58"},
        {"selected once more", "Ctrl+A - Ctrl+A 5", "5", "-18|5"},
        {"selected in part", "Ctrl+A 7 x y Shift+Left Shift+Left Del", "7", "7|7|7|7"},
        {"cut", "Ctrl+A x Ctrl+A Ctrl+X 9", "9", "-18|-18|9"},
        {"given up by undo", "Ctrl+A - x Ctrl+Z End . 5", "-18.5", "-18|-18|-18|-18.|-18.5"},
        {"emptied and given up by undo", "Ctrl+A Backspace Ctrl+Z End . 5", "-18.5", "-18|-18|-18.|-18.5"},
        {"number undone", "Ctrl+A - 1 6 Ctrl+Z", "-18", "-18|-1|-16|-18"},
        {"too low", "Ctrl+A - x 9 9 Left Left Backspace", "-30", "-18|-18|-18|-18|-30|-30"},
        {"too high", "Ctrl+A 9 9", "30", "9|30|30"},
        {"digits in place of others", "Home Right Del 1", "-18", "-8|-18"},
        {"a draft after a draft", "Ctrl+A - 5 Backspace 6 Backspace 7", "-7", "-18|-5|-5|-6|-6|-7"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        OpenUserDefined("-18");
        Press(row.keys);
        EXPECT_EQ(TextOf(kBox), QString::fromUtf8(row.shown));
        EXPECT_EQ(SavedValues(kAngle1), QString::fromUtf8(row.saved));
        dialog->Unload();
    }
}

TEST_F(AngleDraft, paste_goesIntoTheDraft)
{
    OpenUserDefined("-18");
    QGuiApplication::clipboard()->setText(QStringLiteral("16,5"));
    Press("Ctrl+A - Ctrl+V");
    EXPECT_EQ(Stored(kAngle1), u"-16.5");
}

TEST_F(AngleDraft, caretAndSelection_areShownWhereTheyCanBe)
{
    OpenUserDefined("-18");
    const struct
    {
        const char* keys;
        int caret;
    } rows[] = {{"Ctrl+A -", 1}, {"x y z", 3}, {"Home", 0}, {"Right Right", 2}};
    for (const auto& row : rows) {
        Press(row.keys);
        EXPECT_EQ(Box(kBox).cursorPosition(), row.caret) << row.keys;
    }
}

TEST_F(AngleDraft, copyAndCut_takeWhatIsSelectedInTheDraft)
{
    for (const char* const key : {"Ctrl+C", "Ctrl+X"}) {
        OpenUserDefined("-18");
        Press("Ctrl+A x y Shift+Left");
        Press(key);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), u"y") << key;
        EXPECT_EQ(TextOf(kBox), u"-18") << key;
        dialog->Unload();
    }
}

TEST_F(AngleDraft, refusedKey_showsWhatIsStoredByThen)
{
    OpenUserDefined("-18");
    Press("Ctrl+A -");
    WriteUserDefined("-12", "-15");
    Press("x");
    EXPECT_EQ(TextOf(kBox), u"-12");
    EXPECT_EQ(Bar(kBar).Value(), -12);
}

TEST_F(AngleDraft, inputMethod_isHandledAsTyping)
{
    OpenUserDefined("-18");
    Press("Ctrl+A");
    Compose(QStringLiteral("\u2212"), QString());
    EXPECT_EQ(Saves(), 0U) << "composing alone changes nothing";
    Compose(QString(), QStringLiteral("\u2212"));
    EXPECT_EQ(TextOf(kBox), u"-18");
    for (const char* const commit : {"1", "6", ",", "5"}) {
        Compose(QString(), QString::fromLatin1(commit));
    }
    EXPECT_EQ(Stored(kAngle1), u"-16.5");
    EXPECT_EQ(TextOf(kBox), u"-16.5");
}

TEST_F(AngleDraft, inputMethodThatComposesAndCommitsAtOnce_losesNothing)
{
    OpenUserDefined("-18");
    Press("Ctrl+A");
    Compose(QStringLiteral("1"), QString());
    Compose(QStringLiteral("6"), QStringLiteral("1"));
    Compose(QString(), QStringLiteral("6"));
    EXPECT_EQ(SavedValues(kAngle1), u"1|16");
}

TEST_F(AngleDraft, inputMethodCancelled_showsTheSelectionAgain)
{
    OpenUserDefined("-18");
    Press("Ctrl+A");
    Compose(QStringLiteral("x"), QString());
    Compose(QString(), QString());
    EXPECT_EQ(Box(kBox).selectedText(), u"-18");
    Press("5");
    EXPECT_EQ(Stored(kAngle1), u"5");
}

TEST_F(AngleDraft, end_leavesTheAngleThatIsSeen)
{
    const struct
    {
        const char* name;
        std::function<void()> end;
        const char* stored;
    } rows[] = {
        {"focus", [this] { Widget("OptISNA").setFocus(); }, "-18.5"},
        {"spin bar", [this] { ClickArrow(kBar, true); }, "-17.5"},
        {"spin bar of a screen reader", [this] { Bar(kBar).SetValue(-16); }, "-16.5"},
        {"page load", [this] { dialog->SelectTab(1); }, "-18.5"},
        {"option",
         [this] {
             Click("OptISNA");
             WriteUserDefined("-12", "-12");
             Click("OptSetByUser");
         },
         "-12.5"},
        {"mouse", [this] { QTest::mouseClick(&Widget(kBox), Qt::LeftButton); }, "-18.5"},
        {"replacement by an input method",
         [this] {
             QInputMethodEvent event;
             event.setCommitString(QStringLiteral("4"), 1, 1);
             QCoreApplication::sendEvent(&Widget(kBox), &event);
         },
         "-14.5"},
        {"assistive program", [this] { Box(kBox).setText(QStringLiteral("-14")); }, "-14.5"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        OpenUserDefined("-18");
        Press("Ctrl+A x");
        row.end();
        Widget(kBox).setFocus();
        Press("End . 5");
        EXPECT_EQ(Stored(kAngle1), QString::fromUtf8(row.stored));
        dialog->Unload();
    }
}
