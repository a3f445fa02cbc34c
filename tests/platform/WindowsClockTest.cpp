// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProcessorTime.h"
#include "platform/QtClock.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(WindowsClock, now_isTheTimeOfTheTaskbar)
{
    // TestMain sets a zone for the tests.
    const QByteArray before = qgetenv("TZ");
    qunsetenv("TZ");
    const QDateTime now = QtClock().Now();
    SYSTEMTIME local = {};
    ::GetLocalTime(&local);
    qputenv("TZ", before);
    const QDateTime shown(QDate(local.wYear, local.wMonth, local.wDay),
                          QTime(local.wHour, local.wMinute, local.wSecond));
    EXPECT_LE(qAbs(QDateTime(now.date(), now.time()).secsTo(shown)), 1);
}

TEST(WindowsClock, processorTime_growsByWorkAndNotByWaiting)
{
    const double start = ProcessorMilliseconds();
    ::Sleep(200);
    EXPECT_LT(ProcessorMilliseconds() - start, 100);
    QElapsedTimer time;
    time.start();
    constexpr int kTooLong = 10'000;
    while (ProcessorMilliseconds() - start < 100 && time.elapsed() < kTooLong) {
    }
    EXPECT_LT(time.elapsed(), kTooLong);
}

} // namespace
