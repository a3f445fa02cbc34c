// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Calendar.h"
#include "calculation/Place.h"
#include "calculation/PrayerDay.h"

#include <array>
#include <cstdint>
#include <optional>

namespace calculation {

inline constexpr int kSlotCount = 10;

// The state of the module. Each member function does the work of the exported function of the same name (see
// DuskBeaconDBN.h).
class Calculator final
{
public:
    Calculator();

    void SetHorParams(const Place& place, std::int16_t offsetMinutes, std::int16_t day, std::int16_t month,
                      std::int16_t year);
    void SetHorTemkin(const std::array<std::int16_t, kSlotCount>& margins);
    void SetHorAngle(std::int16_t fajr, std::int16_t isha);

    [[nodiscard]] std::int16_t Horarium(std::int16_t slot);
    [[nodiscard]] std::int16_t QiblaDir() const;
    [[nodiscard]] std::int16_t SunElev(std::int16_t minute) const;
    [[nodiscard]] std::int16_t MoonElevation(std::int16_t minute) const;
    [[nodiscard]] HijriDate Hijri();

private:
    [[nodiscard]] std::int32_t MinuteOf(Event event);

    Place m_place;
    std::int32_t m_daysSince2000 = 0;
    double m_utNoon = 0.0; // the date's local noon in days of UT from 2000 January 1, 12h
    std::array<std::int16_t, kSlotCount> m_margins{};
    PrayerDay m_day;
    // Cached: it is read three times for each date, and the table of its years is read from the start.
    std::optional<HijriDate> m_hijri;
};

} // namespace calculation
