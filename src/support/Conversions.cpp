// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Conversions.h"

#include "support/RuntimeError.h"

#include <cmath>
#include <limits>
#include <optional>

namespace {

// Files have Latin digits on every locale, but QLocale reads only its own digits.
QString WithLatinDigits(const QString& text)
{
    QString latin = text;
    for (QChar& character : latin) {
        if (const int digit = character.digitValue(); digit >= 0 && character.isDigit()) {
            character = QChar(u'0' + digit);
        }
    }
    return latin;
}

// The number in the text; nothing if it is not a number of the locale, in its own or in Latin digits.
std::optional<double> Parse(const QString& text, const QLocale& locale)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    double value = locale.toDouble(trimmed, &ok);
    if (!ok) {
        QString plain = WithLatinDigits(trimmed);
        const QString point = locale.decimalPoint();
        if (point != u"." && plain.contains(u'.')) {
            return std::nullopt;
        }
        plain.replace(point, QStringLiteral("."));
        plain.replace(locale.negativeSign(), QStringLiteral("-"));
        plain.replace(locale.positiveSign(), QStringLiteral("+"));
        QLocale c = QLocale::c();
        c.setNumberOptions(QLocale::RejectGroupSeparator);
        value = c.toDouble(plain, &ok);
    }
    // Qt reads "inf" and "nan" as numbers: refuse them.
    if (!ok || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::int16_t Checked(double value)
{
    if (!(value >= std::numeric_limits<std::int16_t>::min() &&
          value <= std::numeric_limits<std::int16_t>::max())) {
        throw RuntimeError(ErrorNumber::kOverflow, QStringLiteral("Overflow"));
    }
    return static_cast<std::int16_t>(value);
}

} // namespace

bool IsNumeric(const QString& text, const QLocale& locale)
{
    return Parse(text, locale).has_value();
}

double ToDouble(const QString& text, const QLocale& locale)
{
    const std::optional<double> value = Parse(text, locale);
    if (!value) {
        throw RuntimeError(ErrorNumber::kTypeMismatch, QStringLiteral("Type mismatch"));
    }
    return *value;
}

std::int16_t ToInteger16(double value)
{
    double rounded = std::floor(value + 0.5);
    if (rounded - value == 0.5 && std::fmod(rounded, 2.0) != 0.0) {
        rounded -= 1.0;
    }
    return Checked(rounded);
}

std::int16_t ToInteger16(const QString& text, const QLocale& locale)
{
    return ToInteger16(ToDouble(text, locale));
}

bool ToBoolean(const QString& text, const QLocale& locale)
{
    if (text.compare(u"true", Qt::CaseInsensitive) == 0) {
        return true;
    }
    if (text.compare(u"false", Qt::CaseInsensitive) == 0) {
        return false;
    }
    return ToDouble(text, locale) != 0.0;
}

double Int(double value)
{
    return std::floor(value);
}

std::int16_t MultiplyInteger16(int left, int right)
{
    return Checked(static_cast<double>(left) * right);
}

std::int16_t AddInteger16(int left, int right)
{
    return Checked(static_cast<double>(left) + right);
}

QString ToText(double value, const QLocale& locale)
{
    // Only the decimal sign is the locale's. Dates, times and all other numbers of a window have Latin digits
    // too.
    return QString::number(value, 'g', 15).replace(u'.', locale.decimalPoint());
}
