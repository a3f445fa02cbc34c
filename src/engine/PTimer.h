// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"

#include <QString>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

class Calculation;
struct Platform;

/// The scheduler: holds the minutes of the ten slots of one day at one place and raises an event when the
/// clock reaches one.
class PTimer final
{
public:
    /// Event handlers. They run synchronously; an exception ends the tick that called the handler.
    struct Events
    {
        std::function<void(std::int16_t PrayerID)> Alarm;
        std::function<void(std::int16_t PrayerID)> AdvAlarm;
        std::function<void()> Started;
        std::function<void()> Stopped;
        /// Declared for completeness; never raised.
        std::function<void()> error;
        std::function<void()> Tick;
        /// The first second of a day, after the day has been computed.
        std::function<void()> Midnight;
    };

    PTimer(const Platform& platform, Calculation& calculation);
    PTimer(const PTimer&) = delete;
    PTimer& operator=(const PTimer&) = delete;
    ~PTimer() = default;

    Events events;

    /// @param latitude,longitude hundredths of a degree, north and east positive
    /// @param zone whole hours ahead of universal time
    /// @param angle1,angle2 twilight angles of Fajr and Isha in hundredths of a degree, negative below the
    /// horizon
    /// @param useAdvWarn -1 turns advance warnings on, any other value off; likewise @p dayLightSaving
    /// @param reCalc -1 computes the day at once
    /// @param minutesBeyondZone added to the zone: -30 with a zone of 6 is UTC+5:30
    void SetupPTimer(std::int16_t latitude, std::int16_t longitude, std::int16_t zone,
                     std::int16_t dayLightSaving, std::int16_t angle1, std::int16_t angle2,
                     std::int16_t useAdvWarn, std::int16_t advWarnInMin, std::int16_t reCalc,
                     std::int16_t minutesBeyondZone = 0);
    void StartTimer();
    void StopTimer();

    /// Slot 1 to 10 in minutes since local midnight; 0 for any other number.
    [[nodiscard]] std::int16_t GetPrayerTime(std::int16_t PrayerID) const;
    /// Degrees clockwise from north, for the place of the last recalculation.
    [[nodiscard]] double QDir() const;
    /// Hundredths of a degree.
    [[nodiscard]] std::int16_t GetLat() const { return Lat; }
    [[nodiscard]] std::int16_t GetLng() const { return Lng; }
    /// Whole hours, without the minutes beyond them and without the daylight-saving hour.
    [[nodiscard]] std::int16_t GetTimeZone() const { return TimeZone; }
    [[nodiscard]] std::int16_t GetTwighlightAngle1() const { return TwighlightAngle1; }
    [[nodiscard]] std::int16_t GetTwighlightAngle2() const { return TwighlightAngle2; }
    /// -1 after creation, 0 set up or stopped, 1 running.
    [[nodiscard]] std::int16_t GetStatus() const { return PTimerStatus; }
    /// Tenths of a degree, now.
    [[nodiscard]] std::int16_t GetSunElev() const;
    [[nodiscard]] std::int16_t GetMoonElev() const;
    /// Such as "12 Rajab, 1429".
    [[nodiscard]] QString GetHDate() const;

private:
    void RecalculateDay();
    void OnTimer();
    void RunTick();
    void RaiseFirstMatch(int minute, const std::function<void(std::int16_t)>& event) const;
    [[nodiscard]] std::int16_t MinuteNow() const;

    const Platform& m_platform;
    Calculation& m_calculation;
    std::unique_ptr<Timer> Timer1;

    std::int16_t Lat = 0;
    std::int16_t Lng = 0;
    std::int16_t TimeZone = 0;
    std::int16_t MinutesBeyondZone = 0;
    std::int16_t DayLightSaving = 0;
    std::int16_t TwighlightAngle1 = 0;
    std::int16_t TwighlightAngle2 = 0;
    std::int16_t UseAdvWarn = 0;
    std::int16_t AdvWarnInMin = 0;
    std::int16_t PTimerStatus = -1;
    std::array<std::int16_t, 10> PrayerMinutes{};
};
