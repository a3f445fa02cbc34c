// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtDesktop.h"
#include "support/Conversions.h"
#include "support/RuntimeError.h"

#include <cstdio>

// Prints, by the regional settings of the environment, the decimal sign, the values of numbers of a file, and
// the text of one of them read again.
int main()
{
    const QtRegionalSettings region;
    const QString sign = GetDecimalSign(region);
    const QLocale locale = region.UserLocale();
    try {
        const double value = ToDouble(QStringLiteral("41.12").replace(u'.', sign), locale);
        const double negative = ToDouble(QStringLiteral("-87.65").replace(u'.', sign), locale);
        const int angle = ToInteger16(QStringLiteral("-17.5").replace(u'.', sign), locale);
        const double again = ToDouble(ToText(value, locale), locale);
        std::printf("[%s] %.2f %.2f %d %.2f\n", qUtf8Printable(sign), value, negative, angle, again);
    } catch (const RuntimeError& error) {
        std::printf("[%s] error %d\n", qUtf8Printable(sign), error.Number());
    }
}
