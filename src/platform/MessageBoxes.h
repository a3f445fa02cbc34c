// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Modal message boxes, which block all windows but the popup and the tray icon; the texts are plain. A box
/// without a title of its own is titled kDefaultTitle.
class MessageBoxes
{
public:
    static inline const QString kDefaultTitle = QStringLiteral("Dusk Beacon");

    MessageBoxes() = default;
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;
    virtual ~MessageBoxes() = default;

    // Neither returns from a box that the end of the program closes: it has no answer.

    /// One OK button.
    virtual void Show(const QString& text, const QString& title = kDefaultTitle) = 0;
    /// Yes and No buttons; true for Yes.
    [[nodiscard]] virtual bool Ask(const QString& text, const QString& title = kDefaultTitle) = 0;
};
