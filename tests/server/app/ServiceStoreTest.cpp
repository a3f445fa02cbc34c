// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/Becomes.h"
#include "server/app/ServiceFixture.h"
#include "store/SqliteStore.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <future>

using namespace std::chrono_literals;
using testing::HasSubstr;

/// The real program with a store that fails.
class ServiceStoreTest : public ServiceFixture
{
protected:
    const std::string prayerCall =
        kScripts + "prayerCall.pl?prod_string=installation-of-pc&pno=1&ma=1&time=5:07";
    const std::string confirm =
        kScripts + "ma/confirmSignup.pl?prod_string=installation-of-pc&vCode=0000-0000-0000-0000";
};

TEST_F(ServiceStoreTest, storeLockedByAnotherProcess_isAnsweredInTimeAndReportedByReadyz)
{
    const unsigned short port = Serve();
    EXPECT_EQ(Fetch(port, prayerCall), "<root/>");
    beacond::Database other(folder.File("state/service.db"));
    other.Execute("BEGIN IMMEDIATE");

    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(Fetch(port, confirm), HasSubstr("store anything just now"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2500ms);
    EXPECT_EQ(Fetch(port, prayerCall), "<root/>") << "an installation without a device needs no lock";
    EXPECT_EQ(Fetch(port, "/readyz"), "the store fails; the log says why\n");
    EXPECT_EQ(Fetch(port, "/healthz"), "ok\n");
    ASSERT_TRUE(service->AwaitLog("state/service.db: database is locked"));

    other.Execute("ROLLBACK");
    EXPECT_TRUE(Becomes([&] { return Fetch(port, "/readyz") == "ready\n"; }));
    EXPECT_EQ(Fetch(port, prayerCall), "<root/>");
}

TEST_F(ServiceStoreTest, storeReplacedWhileRunning_isReportedByReadyz)
{
    const unsigned short port = Serve();
    EXPECT_TRUE(Becomes([&] { return Fetch(port, "/readyz") == "ready\n"; }));
    (void)beacond::SqliteStore(folder.File("backup.db"));
    std::filesystem::rename(folder / "backup.db", folder / "state/service.db");

    EXPECT_TRUE(Becomes([&] { return Fetch(port, "/readyz") == "the store fails; the log says why\n"; }));
    EXPECT_THAT(Fetch(port, confirm), HasSubstr("store anything just now"));
    EXPECT_EQ(Fetch(port, "/readyz"), "the store fails; the log says why\n");
    EXPECT_TRUE(service->AwaitLog("state/service.db: moved or replaced while the service runs"));
}

TEST_F(ServiceStoreTest, term_storeLockedAndARequestThatDoesNotEnd_endsInTime)
{
    const unsigned short port = Serve();
    EXPECT_EQ(Fetch(port, kScripts + "startup.pl"), "<root/>");
    const auto request = std::async(std::launch::async, [port] {
        return Exchange(port, "POST /signup HTTP/1.1\r\nHost: a\r\nContent-Length: 10\r\n\r\nhalf");
    });
    EXPECT_EQ(Fetch(port, "/healthz"), "ok\n");
    beacond::Database other(folder.File("state/service.db"));
    other.Execute("BEGIN IMMEDIATE");

    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Terminate().status, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5500ms);
}

TEST_F(ServiceStoreTest, commands_missingStore_areStatusTwoAndCreateNone)
{
    for (const std::vector<std::string>& command : {std::vector<std::string>{"outbox"},
                                                    {"starts"},
                                                    {"ad", "list"},
                                                    {"release", "list"},
                                                    {"forget", "some.one@example.org"}}) {
        const ProcessEnd end = Run(command);
        EXPECT_EQ(end.status, 2);
        EXPECT_EQ(end.errors, "dusk-beacond: state/service.db: there is no store yet; the service makes it "
                              "when it starts\n");
        EXPECT_FALSE(std::filesystem::exists(folder / "state"));
    }
}
