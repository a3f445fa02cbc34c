// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtRegionalSettings.h"

namespace {

// One locale is known here: the user's own.
constexpr std::uint32_t kUserLocale = 0x400;

} // namespace

std::uint32_t QtRegionalSettings::GetUserDefaultLCID() const
{
    return kUserLocale;
}

int QtRegionalSettings::GetLocaleInfo(std::uint32_t lcid, std::uint32_t lctype, QChar* buffer,
                                      int length) const
{
    if (lcid != kUserLocale || lctype != LOCALE_SDECIMAL) {
        return 0;
    }
    const QString sign = UserLocale().decimalPoint();
    const int needed = static_cast<int>(sign.size()) + 1;
    if (length == 0) {
        return needed;
    }
    if (length < needed) {
        return 0;
    }
    for (const QChar character : sign) {
        *buffer++ = character;
    }
    *buffer = QChar();
    return needed;
}

QLocale QtRegionalSettings::UserLocale() const
{
    return QLocale::system();
}
