// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/DuskBeaconDBN.h"

// The module's functions, found as the program finds them. Each object opens a copy of the file of its own,
// and so has a state of its own that no setter has touched yet.
class CalculationModule final
{
public:
    // Throws std::runtime_error when the file or a function is missing.
    CalculationModule();
    ~CalculationModule();
    CalculationModule(const CalculationModule&) = delete;
    CalculationModule& operator=(const CalculationModule&) = delete;

private:
    void* m_module = nullptr;

public:
    decltype(&::SetHorParams) SetHorParams = nullptr;
    decltype(&::SetHorTemkin) SetHorTemkin = nullptr;
    decltype(&::SetHorAngle) SetHorAngle = nullptr;
    decltype(&::Horarium) Horarium = nullptr;
    decltype(&::QiblaDir) QiblaDir = nullptr;
    decltype(&::SunElev) SunElev = nullptr;
    decltype(&::MoonElevation) MoonElevation = nullptr;
    decltype(&::Hday) Hday = nullptr;
    decltype(&::Hmon) Hmon = nullptr;
    decltype(&::Hyear) Hyear = nullptr;
};
