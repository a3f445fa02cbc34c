// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/HijriDate.h"
#include "calculation/Place.h"
#include "calculation/PrayerDay.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

namespace calculation {

inline constexpr int kSlotCount = 10;

// The state behind the boundary: what the setters stored, and what the readings have worked out from it so
// far. Nothing is worked out twice, but for the sun more than a day from the date, and nothing before it is
// asked for. The meaning of each member function is that of the exported function of its name (see
// DuskBeaconDBN.h).
class Calculator final
{
public:
    void SetHorParams(const Place& place, std::int16_t offsetMinutes, std::int16_t day, std::int16_t month,
                      std::int16_t year);
    void SetHorTemkin(const std::array<std::int16_t, kSlotCount>& margins);
    void SetHorAngle(std::int16_t fajr, std::int16_t isha);

    [[nodiscard]] std::int16_t Horarium(std::int16_t slot);
    [[nodiscard]] std::int16_t QiblaDir();
    [[nodiscard]] std::int16_t SunElev(std::int16_t minute);
    [[nodiscard]] std::int16_t MoonElevation(std::int16_t minute);
    [[nodiscard]] HijriDate Hijri();

private:
    struct MoonReading
    {
        std::int16_t minute = 0;
        std::int16_t tenths = 0;
    };

    [[nodiscard]] PrayerDay& Day();
    [[nodiscard]] double UtNoon() const;
    [[nodiscard]] std::int32_t MinuteOfEvent(Event event);

    Place m_place;
    std::int16_t m_offsetMinutes = 0;
    std::int32_t m_daysSince2000 = 0;
    std::array<std::int16_t, kSlotCount> m_margins{};
    // The angles of the Muslim World League until others are set.
    std::int16_t m_fajrAngle = -1800;
    std::int16_t m_ishaAngle = -1700;

    PrayerDay m_day;
    bool m_isDayKnown = false;
    std::array<std::int16_t, kSlotCount> m_minutes{};
    std::bitset<kSlotCount> m_isMinuteKnown;
    std::optional<std::int16_t> m_qibla;
    std::optional<MoonReading> m_moon;
    // Zeros until a date is set, so that the program shows no date of the year 2000.
    std::optional<HijriDate> m_hijri = HijriDate{0, 0, 0};
};

} // namespace calculation
