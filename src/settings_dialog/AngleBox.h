// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Boxes.h"

#include <functional>
#include <optional>

class QLocale;
class RegionalSettings;

/// The text box of an angle, which shows the stored angle and nothing else. A text that is not numeric, as
/// "-" on the way to "-16.5", is kept unseen as a draft, and every key edits the draft, also Copy and Cut.
/// Undo gives the draft up. A draft ends when the box loses the focus, when the mouse is pressed in the box,
/// since the mouse points at what is shown, when an input method replaces a part of what is shown, and when
/// the text of the box changes otherwise.
/// "." and "," that the user types or pastes become the locale's decimal sign, U+2212 becomes "-"; Undo does
/// not reach behind such a replacement. A text that an assistive program sets is taken as it is.
class AngleBox final : public TextBox
{
    Q_OBJECT

public:
    explicit AngleBox(QWidget* parent);

    /// To be called before the first key.
    /// @param region by whose signs the box reads; must outlive it
    void SetRegion(const RegionalSettings& region) { m_region = &region; }

    /// Keeps the text, which is not numeric, as the draft and shows @p stored. For the handler of Change.
    void Refuse(const QString& stored);

protected:
    void Changed() override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    /// A text with its selection, which is empty where the two ends are the same.
    struct Entry
    {
        QString text;
        int anchor = 0;
        int caret = 0;
    };

    void UseLocaleSigns();
    [[nodiscard]] Entry ReadEntry() const;
    void PutIn(const QString& text);
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

/// The typed text as everyone can read it: every @p decimalSign replaced by ".", and digits and signs of the
/// user's own script by Latin ones, for the file may be read under another locale than it was written under.
[[nodiscard]] QString AngleForFile(QString typed, const QString& decimalSign, const QLocale& locale);
