// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SystemProcess.h"

#include <QCoreApplication>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

TEST(SystemProcess, preparation_leavesPluginsBesideTheProgramOnly)
{
    const QStringList before = QCoreApplication::libraryPaths();
    constexpr const char* kOfAnotherInstaller[]{"QT_PLUGIN_PATH", "QT_QPA_PLATFORM_PLUGIN_PATH"};
    for (const char* const name : kOfAnotherInstaller) {
        qputenv(name, "C:\\windows");
    }
    PrepareProcess();
    EXPECT_EQ(QCoreApplication::libraryPaths(), QStringList{QCoreApplication::applicationDirPath()});
    for (const char* const name : kOfAnotherInstaller) {
        EXPECT_FALSE(qEnvironmentVariableIsSet(name)) << name;
        qunsetenv(name);
    }
    QCoreApplication::setLibraryPaths(before);
}

} // namespace
