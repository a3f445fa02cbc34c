// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"

#include <sys/resource.h>

#include <csignal>

/// The service started by a caller that allows core files. Each guard is tested without the other one.
class CoreFileTest : public ServiceFixture
{
protected:
    static rlimit LimitOfTheCaller()
    {
        rlimit limit = {};
        ::getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_max;
        return limit;
    }
    ServiceProcess Start()
    {
        return ServiceProcess(Path(), serve, {}, [] {
            const rlimit limit = LimitOfTheCaller();
            ::setrlimit(RLIMIT_CORE, &limit);
        });
    }
};

TEST_F(CoreFileTest, limit_isLoweredToZero)
{
    if (LimitOfTheCaller().rlim_max == 0) {
        GTEST_SKIP() << "the caller of this test allows no core files";
    }
    ServiceProcess service = Start();
    ASSERT_NE(service.AwaitPort(), 0);
    rlimit limit = {};
    ASSERT_EQ(::prlimit(service.Id(), RLIMIT_CORE, nullptr, &limit), 0);
    EXPECT_EQ(limit.rlim_max, 0U);
}

TEST_F(CoreFileTest, crashWithoutALimit_leavesNone)
{
    ServiceProcess service = Start();
    ASSERT_NE(service.AwaitPort(), 0);
    const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
    if (::prlimit(service.Id(), RLIMIT_CORE, &unlimited, nullptr) != 0) {
        GTEST_SKIP() << "only root may raise the limit again";
    }
    service.Signal(SIGQUIT);
    const ProcessEnd end = service.Wait();
    EXPECT_EQ(end.status, 128 + SIGQUIT);
    EXPECT_FALSE(end.isCoreDumped);
}
