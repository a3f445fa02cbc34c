// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtDesktop.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

TEST(QtProcessTest, sleep_takesItsTime)
{
    QElapsedTimer time;
    time.start();
    QtProcess().Sleep(120);
    EXPECT_GE(time.elapsed(), 120);
}

TEST(QtProcessTest, end_isAtOnceAndAFailure)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::atexit([] { std::_Exit(77); });
            QtProcess().End();
        },
        testing::ExitedWithCode(EXIT_FAILURE), "");
}

TEST(QtProcessTest, folders_areTheProgramsOwnAndTheUsers)
{
    const QtProcess process;
    EXPECT_EQ(process.ApplicationFolder(), QCoreApplication::applicationDirPath());
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", "/somewhere/else");
    EXPECT_EQ(process.UserDataFolder(), QStringLiteral("/somewhere/else/dusk-beacon"));
    before.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", before);
}

} // namespace
