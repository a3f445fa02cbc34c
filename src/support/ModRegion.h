// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>

/// The regional settings of the user, supplied by the platform.
class RegionalSettings
{
public:
    RegionalSettings() = default;
    RegionalSettings(const RegionalSettings&) = delete;
    RegionalSettings& operator=(const RegionalSettings&) = delete;
    virtual ~RegionalSettings() = default;

    [[nodiscard]] virtual std::uint32_t GetUserDefaultLCID() const = 0;

    /// Fills @p buffer with the locale's text of kind @p lctype and a terminator.
    /// Returns the number of characters written, terminator included; with @p length 0 the number needed;
    /// 0 for an unknown locale or kind.
    virtual int GetLocaleInfo(std::uint32_t lcid, std::uint32_t lctype, QChar* buffer, int length) const = 0;

    /// The locale for conversions between text and numbers.
    [[nodiscard]] virtual QLocale UserLocale() const = 0;
};

constexpr std::uint32_t LOCALE_SDECIMAL = 14;

/// The text of kind @p lctype of a locale; empty for an unknown locale or kind.
[[nodiscard]] QString GetLocaleText(const RegionalSettings& region, std::uint32_t lcid, std::uint32_t lctype);

/// The user's decimal sign.
[[nodiscard]] QString GetDecimalSign(const RegionalSettings& region);
