// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CalculationLibrary.h"
#include "support/RuntimeError.h"

#include <QString>
#include <QStringList>

/// A calculation whose answers a test sets and whose calls it can read.
class FakeCalculation final : public Calculation
{
public:
    void SetHorParams(std::int16_t latitude, std::int16_t longitude, std::int16_t offset, std::int16_t day,
                      std::int16_t month, std::int16_t year) override
    {
        Fail();
        calls << QStringLiteral("SetHorParams %1 %2 %3 %4 %5 %6")
                     .arg(latitude)
                     .arg(longitude)
                     .arg(offset)
                     .arg(day)
                     .arg(month)
                     .arg(year);
    }
    void SetHorTemkin(const std::array<std::int16_t, 10>& margins) override
    {
        QString call = QStringLiteral("SetHorTemkin");
        for (const std::int16_t margin : margins) {
            call += u' ' + QString::number(margin);
        }
        calls << call;
    }
    void SetHorAngle(std::int16_t angle1, std::int16_t angle2, std::int16_t angle3,
                     std::int16_t angle4) override
    {
        calls << QStringLiteral("SetHorAngle %1 %2 %3 %4").arg(angle1).arg(angle2).arg(angle3).arg(angle4);
    }
    [[nodiscard]] std::int16_t Horarium(std::int16_t slot) override
    {
        calls << QStringLiteral("Horarium %1").arg(slot);
        return slots_.at(static_cast<std::size_t>(slot - 1));
    }
    [[nodiscard]] std::int16_t QiblaDir() override { return qibla; }
    [[nodiscard]] std::int16_t SunElev(std::int16_t minute) override
    {
        if (failsInTheSky) {
            throw RuntimeError(ErrorNumber::kFunctionNotFound, QStringLiteral("no SunElev"));
        }
        calls << QStringLiteral("SunElev %1").arg(minute);
        return sun;
    }
    [[nodiscard]] std::int16_t MoonElevation(std::int16_t minute) override
    {
        calls << QStringLiteral("MoonElevation %1").arg(minute);
        return moon;
    }
    [[nodiscard]] std::int16_t Hday() override { return hijriDay; }
    [[nodiscard]] std::int16_t Hmon() override { return hijriMonth; }
    [[nodiscard]] std::int16_t Hyear() override { return hijriYear; }

    /// Slots 1 to 10. The name without the underscore is a keyword of Qt.
    std::array<std::int16_t, 10> slots_{300, 390, -1, -1, 750, 945, 1000, -1, 1122, 1215};
    std::int16_t qibla = 584;
    std::int16_t sun = 450;
    std::int16_t moon = -100;
    std::int16_t hijriDay = 12;
    std::int16_t hijriMonth = 7;
    std::int16_t hijriYear = 1429;
    /// The next SetHorParams throws, as it does without a library.
    bool fails = false;
    /// Each SunElev throws, as it does with a library without this function.
    bool failsInTheSky = false;
    QStringList calls;

private:
    void Fail() const
    {
        if (fails) {
            throw RuntimeError(ErrorNumber::kLibraryNotFound, QStringLiteral("no library"));
        }
    }
};
