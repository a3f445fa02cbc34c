// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QProcess>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

// The names that nm lists with this option in the module's dynamic table, without their versions.
std::set<std::string> Symbols(const char* option)
{
    QProcess nm;
    nm.start(QStringLiteral(DUSKBEACON_NM),
             {QStringLiteral("-D"), QLatin1String(option), QStringLiteral(DUSKBEACON_MODULE)});
    EXPECT_TRUE(nm.waitForFinished());
    EXPECT_EQ(nm.exitCode(), 0);
    std::set<std::string> names;
    for (const QByteArray& line : nm.readAllStandardOutput().trimmed().split('\n')) {
        names.insert(line.mid(line.lastIndexOf(' ') + 1).split('@').first().toStdString());
    }
    return names;
}

TEST(ModuleSymbols, dynamicTable_definesTheTenFunctionsAndNothingElse)
{
    const std::set<std::string> expected{"SetHorParams", "SetHorTemkin", "SetHorAngle",   "Horarium",
                                         "QiblaDir",     "SunElev",      "MoonElevation", "Hday",
                                         "Hmon",         "Hyear"};
    EXPECT_EQ(Symbols("--defined-only"), expected);
}

// No C++ function of another library: those of Qt and of the standard library might allocate.
TEST(ModuleSymbols, neededFunctions_areOfCAndNoneAllocates)
{
    const std::set<std::string> needed = Symbols("--undefined-only");
    for (const std::string& name : needed) {
        EXPECT_FALSE(name.starts_with("_Z")) << name;
        EXPECT_FALSE(name == "malloc" || name == "calloc" || name == "realloc") << name;
    }
    EXPECT_TRUE(needed.contains("lround")) << "the table was read";
}

} // namespace
