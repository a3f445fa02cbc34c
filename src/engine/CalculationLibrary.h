// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLibrary>
#include <QString>

#include <array>
#include <cstdint>

/// The interface of the calculation library: all numbers are signed 16-bit integers, degrees in hundredths,
/// north and east positive, angles below the horizon negative. The getters compute from what the setters
/// stored last.
class Calculation
{
public:
    Calculation() = default;
    Calculation(const Calculation&) = delete;
    Calculation& operator=(const Calculation&) = delete;
    virtual ~Calculation() = default;

    /// @param offset minutes that the local clock is ahead of universal time, daylight saving included
    virtual void SetHorParams(std::int16_t latitude, std::int16_t longitude, std::int16_t offset,
                              std::int16_t day, std::int16_t month, std::int16_t year) = 0;
    /// @param margins minutes, one for each slot
    virtual void SetHorTemkin(const std::array<std::int16_t, 10>& margins) = 0;
    virtual void SetHorAngle(std::int16_t angle1, std::int16_t angle2, std::int16_t angle3,
                             std::int16_t angle4) = 0;
    /// Minutes since local midnight of slot 1 to 10.
    [[nodiscard]] virtual std::int16_t Horarium(std::int16_t slot) = 0;
    /// Tenths of a degree, clockwise from north.
    [[nodiscard]] virtual std::int16_t QiblaDir() = 0;
    /// Tenths of a degree above the horizon at a minute of the day.
    [[nodiscard]] virtual std::int16_t SunElev(std::int16_t minute) = 0;
    [[nodiscard]] virtual std::int16_t MoonElevation(std::int16_t minute) = 0;
    [[nodiscard]] virtual std::int16_t Hday() = 0;
    [[nodiscard]] virtual std::int16_t Hmon() = 0;
    [[nodiscard]] virtual std::int16_t Hyear() = 0;
};

/// DuskBeacon.DBN beside the program, opened at the first call of a function. A missing file throws
/// kLibraryNotFound at each call, a missing function kFunctionNotFound at each call of it.
class CalculationLibrary final : public Calculation
{
public:
    /// @param folder where DuskBeacon.DBN lies, without a separator at the end
    explicit CalculationLibrary(const QString& folder);
    ~CalculationLibrary() override;

    void SetHorParams(std::int16_t latitude, std::int16_t longitude, std::int16_t offset, std::int16_t day,
                      std::int16_t month, std::int16_t year) override;
    void SetHorTemkin(const std::array<std::int16_t, 10>& margins) override;
    void SetHorAngle(std::int16_t angle1, std::int16_t angle2, std::int16_t angle3,
                     std::int16_t angle4) override;
    [[nodiscard]] std::int16_t Horarium(std::int16_t slot) override;
    [[nodiscard]] std::int16_t QiblaDir() override;
    [[nodiscard]] std::int16_t SunElev(std::int16_t minute) override;
    [[nodiscard]] std::int16_t MoonElevation(std::int16_t minute) override;
    [[nodiscard]] std::int16_t Hday() override;
    [[nodiscard]] std::int16_t Hmon() override;
    [[nodiscard]] std::int16_t Hyear() override;

private:
    template <typename Signature>
    [[nodiscard]] Signature* Function(const char* name);

    QString m_path;
    QLibrary m_module;
};
