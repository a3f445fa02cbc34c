// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/TextBox.h"

#include <memory>

class RegionalSettings;

/// The text box of an angle, which shows the stored angle and nothing else. A text that is not numeric, as
/// "-" on the way to "-16.5", is kept unseen as a draft, and the next key edits the draft. Once the draft is
/// numeric it becomes the text of the box. A draft ends when the box loses the focus, when the mouse is
/// pressed in the box, since the mouse points at what is shown, and when the text of the box changes
/// otherwise.
/// "." and "," that the user types or pastes become the locale's decimal sign, U+2212 becomes "-".
class AngleBox final : public TextBox
{
    Q_OBJECT

public:
    AngleBox(const RegionalSettings& region, QWidget* parent);
    ~AngleBox() override;

    /// Keeps the text, which is not numeric, as the draft and shows @p stored. For the handler of Change.
    void Refuse(const QString& stored);

protected:
    void Changed() override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void UseLocaleSigns(QLineEdit& line) const;
    [[nodiscard]] std::unique_ptr<QLineEdit> MakeDraft() const;
    void EditDraft(QEvent& event);
    void AdoptDraft();
    void ShowDraftSelection();

    const RegionalSettings& m_region;
    /// Never shown; null if there is no draft.
    std::unique_ptr<QLineEdit> m_draft;
};
