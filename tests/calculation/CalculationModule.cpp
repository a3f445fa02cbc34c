// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/CalculationModule.h"

#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

template <typename Function>
void Find(void* module, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(::dlsym(module, name));
    if (function == nullptr) {
        throw std::runtime_error(std::string("no function ") + name);
    }
}

} // namespace

CalculationModule::CalculationModule()
{
    std::string copy = std::filesystem::temp_directory_path() / "DuskBeaconXXXXXX";
    const int file = ::mkstemp(copy.data());
    if (file < 0) {
        throw std::runtime_error("no temporary file");
    }
    ::close(file);
    std::filesystem::copy_file(DUSKBEACON_MODULE, copy, std::filesystem::copy_options::overwrite_existing);
    m_module = ::dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
    std::filesystem::remove(copy);
    if (m_module == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    Find(m_module, "SetHorParams", SetHorParams);
    Find(m_module, "SetHorTemkin", SetHorTemkin);
    Find(m_module, "SetHorAngle", SetHorAngle);
    Find(m_module, "Horarium", Horarium);
    Find(m_module, "QiblaDir", QiblaDir);
    Find(m_module, "SunElev", SunElev);
    Find(m_module, "MoonElevation", MoonElevation);
    Find(m_module, "Hday", Hday);
    Find(m_module, "Hmon", Hmon);
    Find(m_module, "Hyear", Hyear);
}

CalculationModule::~CalculationModule()
{
    ::dlclose(m_module);
}
