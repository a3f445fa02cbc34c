// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ModRegion.h"

QString GetLocaleText(const RegionalSettings& region, std::uint32_t lcid, std::uint32_t lctype)
{
    const int needed = region.GetLocaleInfo(lcid, lctype, nullptr, 0);
    if (needed == 0) {
        return {};
    }
    QString buffer(needed, u' ');
    const int written = region.GetLocaleInfo(lcid, lctype, buffer.data(), needed);
    if (written == 0) {
        return {};
    }
    return buffer.left(written - 1);
}

QString GetDecimalSign(const RegionalSettings& region)
{
    return GetLocaleText(region, region.GetUserDefaultLCID(), LOCALE_SDECIMAL);
}
