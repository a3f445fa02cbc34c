// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>

// Conversions between text and number. Text is read by the rules of the user's locale (decimal sign, digits,
// sign, group separators in their places), surrounding white space is ignored. A text that is not a number
// throws the RuntimeError kTypeMismatch, a number out of range kOverflow.

[[nodiscard]] bool IsNumeric(const QString& text, const QLocale& locale);
[[nodiscard]] double ToDouble(const QString& text, const QLocale& locale);

/// Rounds to the nearest whole number, a half to the even neighbour; range -32768 to 32767.
[[nodiscard]] std::int16_t ToInteger16(double value);
[[nodiscard]] std::int16_t ToInteger16(const QString& text, const QLocale& locale);

/// "true" and "false" in any case, and numbers (0 is false).
[[nodiscard]] bool ToBoolean(const QString& text, const QLocale& locale);

/// The whole number at or below @p value.
[[nodiscard]] double Int(double value);

/// Arithmetic that throws kOverflow when the result leaves the 16-bit range.
[[nodiscard]] std::int16_t MultiplyInteger16(int left, int right);
[[nodiscard]] std::int16_t AddInteger16(int left, int right);

/// A number as text in up to 15 significant digits, which are Latin on every locale, with the locale's
/// decimal sign and without group separators.
[[nodiscard]] QString ToText(double value, const QLocale& locale);
