// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtClock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

class QtClockTest : public testing::Test
{
protected:
    ~QtClockTest() override
    {
        qputenv("TZ", m_before);
        ::tzset();
    }

private:
    const QByteArray m_before = qgetenv("TZ");
};

TEST_F(QtClockTest, zoneChangedUnderTheProgram_isFollowed)
{
    const QtClock clock;
    qputenv("TZ", "XST-3");
    EXPECT_EQ(clock.Now().offsetFromUtc(), 3 * 3600);
    qputenv("TZ", "XST5:30");
    const QDateTime now = clock.Now();
    EXPECT_EQ(now.offsetFromUtc(), -(5 * 3600 + 1800));
    EXPECT_EQ(QDateTime(now.date(), now.time(), Qt::UTC).toSecsSinceEpoch() - now.toSecsSinceEpoch(),
              now.offsetFromUtc());
}

} // namespace
