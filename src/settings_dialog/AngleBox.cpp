// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/AngleBox.h"

#include "support/ModRegion.h"

#include <QInputMethodEvent>
#include <QLocale>
#include <QSignalBlocker>

#include <algorithm>
#include <cstdlib>
#include <utility>

AngleBox::AngleBox(QWidget* parent)
    : TextBox(parent)
{
    // textEdited is raised only by edits of the user, and before Change.
    connect(this, &QLineEdit::textEdited, this, &AngleBox::UseLocaleSigns);
}

void AngleBox::UseLocaleSigns()
{
    const QString decimalSign = GetDecimalSign(*m_region);
    const QString typed = AngleAsTyped(text(), decimalSign);
    if (typed != text()) {
        const QString beforeCaret = AngleAsTyped(text().left(cursorPosition()), decimalSign);
        const QSignalBlocker oneChange(this);
        setText(typed);
        setCursorPosition(static_cast<int>(beforeCaret.size()));
    }
}

AngleBox::Entry AngleBox::ReadEntry() const
{
    const int caret = cursorPosition();
    if (!hasSelectedText()) {
        return {text(), caret, caret};
    }
    return {text(), caret == selectionStart() ? selectionEnd() : selectionStart(), caret};
}

void AngleBox::ReplaceText(const QString& text)
{
    const QSignalBlocker noChange(this);
    // setText would clear the undo history.
    selectAll();
    insert(text);
}

void AngleBox::Refuse(const QString& stored)
{
    // SetText ends the previous draft, so that the new one is set after it.
    Entry refused = ReadEntry();
    SetText(stored);
    m_draft = std::move(refused);
    ShowDraftSelection();
}

void AngleBox::Changed()
{
    m_draft.reset();
    TextBox::Changed();
}

void AngleBox::Edit(const std::function<void()>& edit)
{
    if (!m_draft) {
        edit();
        return;
    }
    const QString shown = text();
    const Entry draft = *std::exchange(m_draft, std::nullopt);
    ReplaceText(draft.text);
    setSelection(draft.anchor, draft.caret - draft.anchor);
    edit();
    // If the text is new, it has raised Change, which has accepted or refused it.
    if (!m_draft && text() == draft.text) {
        m_draft = ReadEntry();
        ReplaceText(shown);
        ShowDraftSelection();
    }
}

void AngleBox::keyPressEvent(QKeyEvent* event)
{
    Edit([this, event] { TextBox::keyPressEvent(event); });
}

void AngleBox::inputMethodEvent(QInputMethodEvent* event)
{
    if (event->replacementStart() != 0 || event->replacementLength() != 0) {
        // The positions of the input method refer to the shown text.
        m_draft.reset();
        TextBox::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent endOfComposition(QString(), event->attributes());
    TextBox::inputMethodEvent(&endOfComposition);
    if (m_draft) {
        ShowDraftSelection();
    }
    if (!event->commitString().isEmpty()) {
        QInputMethodEvent commit;
        commit.setCommitString(event->commitString());
        Edit([this, &commit] { TextBox::inputMethodEvent(&commit); });
    }
    if (!event->preeditString().isEmpty()) {
        // The box shows the composition at its caret. It would delete a selected text at once, and refusing
        // the rest would cancel the composition: the draft keeps the selected text.
        if (!m_draft) {
            m_draft = ReadEntry();
        }
        deselect();
        QInputMethodEvent composition(event->preeditString(), event->attributes());
        TextBox::inputMethodEvent(&composition);
    }
}

void AngleBox::mousePressEvent(QMouseEvent* event)
{
    m_draft.reset();
    TextBox::mousePressEvent(event);
}

void AngleBox::focusOutEvent(QFocusEvent* event)
{
    m_draft.reset();
    TextBox::focusOutEvent(event);
}

void AngleBox::ShowDraftSelection()
{
    const auto last = static_cast<int>(text().size());
    const bool isAll = std::abs(m_draft->caret - m_draft->anchor) == m_draft->text.size();
    const auto shownAt = [last, isAll](int position) {
        return isAll && position > 0 ? last : std::min(position, last);
    };
    const int anchor = shownAt(m_draft->anchor);
    setSelection(anchor, shownAt(m_draft->caret) - anchor);
}

QString AngleForBox(QString stored, const QString& decimalSign)
{
    return stored.replace(u'.', decimalSign);
}

QString AngleAsTyped(const QString& text, const QString& decimalSign)
{
    QString typed;
    for (const QChar character : text) {
        if (character == u'.' || character == u',') {
            typed += decimalSign.isEmpty() ? QString(character) : decimalSign;
        } else if (character == u'\u2212') {
            typed += u'-';
        } else if (character != u'\u061c' && character != u'\u200e' && character != u'\u200f') {
            typed += character;
        }
    }
    return typed;
}

QString AngleForFile(QString typed, const QString& decimalSign, const QLocale& locale)
{
    // Replacing an empty sign would put a point between all characters.
    if (!decimalSign.isEmpty()) {
        typed.replace(decimalSign, QStringLiteral("."));
    }
    typed.replace(locale.negativeSign(), QStringLiteral("-"));
    typed.replace(locale.positiveSign(), QStringLiteral("+"));
    for (QChar& character : typed) {
        if (character.isDigit()) {
            character = QChar(u'0' + character.digitValue());
        }
    }
    return typed;
}
