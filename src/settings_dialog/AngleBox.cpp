// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/AngleBox.h"

#include "settings_dialog/AngleText.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>

namespace {

constexpr int kLongestDraft = 64;

} // namespace

AngleBox::AngleBox(const RegionalSettings& region, QWidget* parent)
    : TextBox(parent)
    , m_region(region)
{
    // Raised by edits of the user only, and before Change.
    connect(this, &QLineEdit::textEdited, this, [this] { UseLocaleSigns(*this); });
}

AngleBox::~AngleBox() = default;

void AngleBox::UseLocaleSigns(QLineEdit& line) const
{
    const QString decimalSign = GetDecimalSign(m_region);
    const QString text = AngleAsTyped(line.text(), decimalSign);
    if (text != line.text()) {
        const QString beforeCaret = AngleAsTyped(line.text().left(line.cursorPosition()), decimalSign);
        const QSignalBlocker oneChange(line);
        line.setText(text);
        line.setCursorPosition(static_cast<int>(beforeCaret.size()));
    }
}

std::unique_ptr<QLineEdit> AngleBox::MakeDraft() const
{
    auto draft = std::make_unique<QLineEdit>(text());
    draft->setMaxLength(kLongestDraft);
    if (hasSelectedText()) {
        draft->setSelection(selectionStart(), selectionLength());
    } else {
        draft->setCursorPosition(cursorPosition());
    }
    return draft;
}

void AngleBox::Refuse(const QString& stored)
{
    // The setter ends the draft that there was.
    std::unique_ptr<QLineEdit> draft = MakeDraft();
    SetText(stored);
    m_draft = std::move(draft);
    ShowDraftSelection();
}

void AngleBox::Changed()
{
    m_draft.reset();
    TextBox::Changed();
}

void AngleBox::keyPressEvent(QKeyEvent* event)
{
    if (m_draft && !event->matches(QKeySequence::Copy)) {
        EditDraft(*event);
    } else {
        TextBox::keyPressEvent(event);
    }
}

void AngleBox::inputMethodEvent(QInputMethodEvent* event)
{
    if (event->preeditString().isEmpty() && event->commitString().isEmpty()) {
        TextBox::inputMethodEvent(event);
        return;
    }
    // The box shows the text under composition at its caret. With a selection it would drop the selected text
    // at once, and a refusal of what remains would cancel the composition: the draft keeps the selection.
    if (!m_draft) {
        m_draft = MakeDraft();
    }
    deselect();
    QInputMethodEvent composition(event->preeditString(), event->attributes());
    TextBox::inputMethodEvent(&composition);
    if (!event->commitString().isEmpty()) {
        QInputMethodEvent commit;
        commit.setCommitString(event->commitString(), event->replacementStart(), event->replacementLength());
        EditDraft(commit);
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

void AngleBox::EditDraft(QEvent& event)
{
    const QString before = m_draft->text();
    m_draft->event(&event);
    UseLocaleSigns(*m_draft);
    if (m_draft->text() != before && IsNumeric(m_draft->text(), m_region.UserLocale())) {
        AdoptDraft();
    } else {
        ShowDraftSelection();
    }
}

void AngleBox::AdoptDraft()
{
    // Ended by the Change that the insertion raises.
    const QString text = m_draft->text();
    const int caret = m_draft->cursorPosition();
    // setText would tell a screen reader of this text after that of a Change that cuts it.
    selectAll();
    insert(text);
    if (this->text() == text) {
        setCursorPosition(caret);
    }
}

void AngleBox::ShowDraftSelection()
{
    const auto last = static_cast<int>(text().size());
    if (m_draft->hasSelectedText()) {
        const bool isWhole = m_draft->selectedText() == m_draft->text();
        const int start = std::min(m_draft->selectionStart(), last);
        setSelection(start, (isWhole ? last : std::min(m_draft->selectionEnd(), last)) - start);
    } else {
        setCursorPosition(std::min(m_draft->cursorPosition(), last));
    }
}
