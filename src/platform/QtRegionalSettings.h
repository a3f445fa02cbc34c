// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/ModRegion.h"

/// The locale that the user's environment names.
class QtRegionalSettings final : public RegionalSettings
{
public:
    [[nodiscard]] std::uint32_t GetUserDefaultLCID() const override;
    int GetLocaleInfo(std::uint32_t lcid, std::uint32_t lctype, QChar* buffer, int length) const override;
    [[nodiscard]] QLocale UserLocale() const override;
};
