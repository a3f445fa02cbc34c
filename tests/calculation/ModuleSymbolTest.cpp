// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

std::string OutputOf(const std::string& command)
{
    FILE* const pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string output;
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe) != nullptr) {
        output += buffer.data();
    }
    EXPECT_EQ(::pclose(pipe), 0) << command;
    return output;
}

TEST(ModuleSymbols, dynamicTable_definesTheTenFunctionsAndNothingElse)
{
    std::istringstream lines(OutputOf("'" DUSKBEACON_NM "' -D --defined-only '" DUSKBEACON_MODULE "'"));
    std::set<std::string> names;
    std::string address;
    std::string type;
    std::string name;
    while (lines >> address >> type >> name) {
        EXPECT_EQ(type, "T") << name;
        names.insert(name);
    }
    const std::set<std::string> expected{"SetHorParams", "SetHorTemkin", "SetHorAngle",   "Horarium",
                                         "QiblaDir",     "SunElev",      "MoonElevation", "Hday",
                                         "Hmon",         "Hyear"};
    EXPECT_EQ(names, expected);
}

TEST(ModuleSymbols, nothingOfQt_isNeeded)
{
    const std::string needed = OutputOf("'" DUSKBEACON_NM "' -D --undefined-only '" DUSKBEACON_MODULE "'");
    EXPECT_EQ(needed.find("Qt"), std::string::npos) << needed;
    EXPECT_NE(needed.find("ucal_open"), std::string::npos) << needed;
}

TEST(ModuleSymbols, noAllocation_isNeeded)
{
    std::istringstream lines(OutputOf("'" DUSKBEACON_NM "' -D --undefined-only '" DUSKBEACON_MODULE "'"));
    std::string word;
    while (lines >> word) {
        const std::string name = word.substr(0, word.find('@'));
        EXPECT_NE(name.substr(0, 4), "_Znw") << name;
        EXPECT_NE(name.substr(0, 4), "_Zna") << name;
        EXPECT_NE(name, "malloc");
        EXPECT_NE(name, "calloc");
        EXPECT_NE(name, "realloc");
    }
}

TEST(ModuleFile, name_isTheOneThatTheProgramLoads)
{
    EXPECT_EQ(std::filesystem::path(DUSKBEACON_MODULE).filename(), "DuskBeacon.DBN");
}

} // namespace
