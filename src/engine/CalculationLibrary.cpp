// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CalculationLibrary.h"

#include "support/RuntimeError.h"

#include <QFile>

using Short = std::int16_t;

CalculationLibrary::CalculationLibrary(const QString& folder)
    : m_path(folder + QStringLiteral("/DuskBeacon.DBN"))
    , m_module(m_path)
{
    // Resolve all symbols at once, so that an incomplete module fails when it is opened and not in the middle
    // of a calculation.
    m_module.setLoadHints(QLibrary::ResolveAllSymbolsHint);
}

CalculationLibrary::~CalculationLibrary()
{
    m_module.unload();
}

template <typename Signature>
Signature* CalculationLibrary::Function(const char* name)
{
    // Where the file is missing, QLibrary would take one with a prefix or an ending added to the name.
    if (!m_module.isLoaded() && !QFile::exists(m_path)) {
        throw RuntimeError(ErrorNumber::kLibraryNotFound,
                           m_path +
                               QStringLiteral(": cannot open shared object file: No such file or directory"));
    }
    if (!m_module.load()) {
        // Otherwise the next call would not look for the file again.
        m_module.unload();
        throw RuntimeError(ErrorNumber::kLibraryNotFound, m_module.errorString());
    }
    const QFunctionPointer function = m_module.resolve(name);
    if (function == nullptr) {
        throw RuntimeError(ErrorNumber::kFunctionNotFound, m_module.errorString());
    }
    return reinterpret_cast<Signature*>(function);
}

void CalculationLibrary::SetHorParams(Short latitude, Short longitude, Short offset, Short day, Short month,
                                      Short year)
{
    Function<void(Short, Short, Short, Short, Short, Short)>("SetHorParams")(latitude, longitude, offset, day,
                                                                             month, year);
}

void CalculationLibrary::SetHorTemkin(const std::array<Short, 10>& margins)
{
    using Setter = void(Short, Short, Short, Short, Short, Short, Short, Short, Short, Short);
    Function<Setter>("SetHorTemkin")(margins[0], margins[1], margins[2], margins[3], margins[4], margins[5],
                                     margins[6], margins[7], margins[8], margins[9]);
}

void CalculationLibrary::SetHorAngle(Short angle1, Short angle2, Short angle3, Short angle4)
{
    Function<void(Short, Short, Short, Short)>("SetHorAngle")(angle1, angle2, angle3, angle4);
}

Short CalculationLibrary::Horarium(Short slot)
{
    return Function<Short(Short)>("Horarium")(slot);
}

Short CalculationLibrary::QiblaDir()
{
    return Function<Short()>("QiblaDir")();
}

Short CalculationLibrary::SunElev(Short minute)
{
    return Function<Short(Short)>("SunElev")(minute);
}

Short CalculationLibrary::MoonElevation(Short minute)
{
    return Function<Short(Short)>("MoonElevation")(minute);
}

Short CalculationLibrary::Hday()
{
    return Function<Short()>("Hday")();
}

Short CalculationLibrary::Hmon()
{
    return Function<Short()>("Hmon")();
}

Short CalculationLibrary::Hyear()
{
    return Function<Short()>("Hyear")();
}
