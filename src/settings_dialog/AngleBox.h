// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Boxes.h"

#include <functional>
#include <optional>

class QLocale;
class RegionalSettings;

/// The text box of an angle, which always shows a stored angle. A text that is not numeric, such as "-" at
/// the start of "-16.5", is kept as a hidden draft. Every key edits the draft; Copy and Cut use it too. Undo
/// discards the draft. A draft also ends when the box loses the focus, when the mouse is pressed in the box,
/// since the mouse points at the shown text, when an input method replaces a part of the shown text, and when
/// the text of the box changes in another way.
/// "." and "," that the user types or pastes become the locale's decimal sign, U+2212 becomes "-"; Undo does
/// not go back beyond such a replacement. A text that an assistive program sets is used as it is.
class AngleBox final : public TextBox
{
    Q_OBJECT

public:
    explicit AngleBox(QWidget* parent);

    /// Call before the first key.
    /// @param region gives the decimal sign; must outlive the box
    void SetRegion(const RegionalSettings& region) { m_region = &region; }

    /// Keeps the text, which is not numeric, as the draft and shows @p stored. To be called in the handler of
    /// Change.
    void Refuse(const QString& stored);

protected:
    void Changed() override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    /// A text with its selection, which is empty if anchor and caret are equal.
    struct Entry
    {
        QString text;
        int anchor = 0;
        int caret = 0;
    };

    void UseLocaleSigns();
    [[nodiscard]] Entry ReadEntry() const;
    void ReplaceText(const QString& text);
    void Edit(const std::function<void()>& edit);
    void ShowDraftSelection();

    const RegionalSettings* m_region = nullptr;
    std::optional<Entry> m_draft;
};

// An angle is kept in the file with a point as decimal sign on every locale, and shown with the user's sign.

/// The stored text as the user reads it: every "." replaced by @p decimalSign.
[[nodiscard]] QString AngleForBox(QString stored, const QString& decimalSign);

/// A text that the user has typed or pasted, with @p decimalSign for "." and ",", since an angle needs no
/// group separators, "-" for U+2212, and without the direction marks that some locales write before a sign.
[[nodiscard]] QString AngleAsTyped(const QString& text, const QString& decimalSign);

/// The typed text in the form of the file: every @p decimalSign replaced by ".", digits and signs of the
/// user's own script by Latin ones, since the file may be read under another locale.
[[nodiscard]] QString AngleForFile(QString typed, const QString& decimalSign, const QLocale& locale);
