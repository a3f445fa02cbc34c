// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLocale;

// An angle is kept in the file with a point as decimal sign on every locale, and shown with the user's sign.

/// The stored text as the user reads it: every "." replaced by @p decimalSign.
[[nodiscard]] QString AngleForBox(QString stored, const QString& decimalSign);

/// A text that the user has typed or pasted, with @p decimalSign for "." and ",", since an angle needs no
/// group separators, "-" for U+2212, and without the direction marks that some locales write before a sign.
[[nodiscard]] QString AngleAsTyped(const QString& text, const QString& decimalSign);

/// The typed text as everyone can read it: every @p decimalSign replaced by ".", and digits and signs of the
/// user's own script by Latin ones, for the file may be read under another locale than it was written under.
[[nodiscard]] QString AngleForFile(QString typed, const QString& decimalSign, const QLocale& locale);
