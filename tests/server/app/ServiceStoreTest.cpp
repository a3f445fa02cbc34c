// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceProcess.h"
#include "server/places/SmallTables.h"
#include "store/Sqlite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>

using namespace std::chrono_literals;
using testing::HasSubstr;

namespace {

using Clock = std::chrono::steady_clock;

} // namespace

/// The real program, and its store in trouble.
class ServiceStoreTest : public testing::Test
{
protected:
    ServiceStoreTest()
    {
        SmallTables tables;
        tables.places = PlaceLine().Text();
        tables.Import(folder);
        Write(folder / "service.toml",
              "[http]\nlisten = \"127.0.0.1:0\"\n[metrics]\nlisten = \"127.0.0.1:0\"\n"
              "[places]\nfile = \"places.bin\"\n");
    }

    [[nodiscard]] std::string Path() const { return (folder / "").string(); }
    ProcessEnd Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--config", "service.toml"});
        return RunService(Path(), arguments);
    }

    TemporaryFolder folder;
    const std::vector<std::string> serve{"serve", "--config", "service.toml"};
};

TEST_F(ServiceStoreTest, lists_storeThatIsMissing_areStatusTwoAndMakeNone)
{
    for (const std::vector<std::string>& list :
         {std::vector<std::string>{"outbox"}, {"starts"}, {"ad", "list"}, {"release", "list"}}) {
        const ProcessEnd end = Run(list);
        EXPECT_EQ(end.status, 2);
        EXPECT_EQ(end.errors, "dusk-beacond: state/service.db: there is no store yet; the service makes it "
                              "when it starts\n");
        EXPECT_FALSE(std::filesystem::exists(folder / "state"));
    }
}
