// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace {

rlimit LimitOfTheCaller()
{
    rlimit limit = {};
    ::getrlimit(RLIMIT_CORE, &limit);
    return limit;
}

} // namespace

/// Each protection is tested without the other one.
class CoreFileTest : public ServiceFixture
{
};

TEST_F(CoreFileTest, limit_isLoweredToZero)
{
    if (LimitOfTheCaller().rlim_max == 0) {
        GTEST_SKIP() << "the caller of this test allows no core files";
    }
    const unsigned short port = Serve([] {
        const rlimit limit = {LimitOfTheCaller().rlim_max, LimitOfTheCaller().rlim_max};
        ::setrlimit(RLIMIT_CORE, &limit);
    });
    ASSERT_NE(port, 0);
    rlimit limit = {};
    ASSERT_EQ(::prlimit(service->Id(), RLIMIT_CORE, nullptr, &limit), 0);
    EXPECT_EQ(limit.rlim_cur, 0U);
    EXPECT_EQ(limit.rlim_max, 0U);
}

// For a process that is not dumpable, /proc shows root as the owner of most of its files.
TEST_F(CoreFileTest, process_isNotDumpable)
{
    const unsigned short port = Serve([] {
        constexpr id_t kNobody = 65'534;
        if (::geteuid() == 0 &&
            (::chown(".", kNobody, kNobody) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) {
            ::_exit(126);
        }
    });
    if (port == 0) {
        ASSERT_EQ(service->Wait().status, 127);
        GTEST_SKIP() << "another account may not run the program";
    }
    struct stat entry = {};
    ASSERT_EQ(::stat(("/proc/" + std::to_string(service->Id()) + "/environ").c_str(), &entry), 0);
    EXPECT_EQ(entry.st_uid, 0U);
}
