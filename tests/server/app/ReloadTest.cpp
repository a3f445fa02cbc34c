// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/FileLayout.h"
#include "server/app/ServiceFixture.h"

#include <gmock/gmock.h>
#include <stdlib.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <filesystem>

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

const std::string kTaken = "the configuration and places were read again";
const std::string kRefused = "the previous configuration and places stay in use";

} // namespace

/// Tests of SIGHUP with the real program.
class ReloadTest : public ServiceFixture
{
protected:
    static void Import(const TemporaryFolder& target, const char* city)
    {
        SmallTables tables;
        tables.places =
            PlaceLine{"105343", city, "", "21.49012", "39.18624", "SA", "14", "2867446", "Asia/Riyadh"}
                .Text();
        tables.Import(target);
    }
    /// Replaces the places file by a new one.
    void Replace(const std::string& content)
    {
        Write(folder / "new.bin", content);
        std::filesystem::rename(folder / "new.bin", folder / "places.bin");
    }
    bool Knows(unsigned short port, const std::string& city)
    {
        return Fetch(port, kScripts + "getNumMatchingCities.pl?state_id=SA&city_string=" + city)
            .starts_with("<root num_matches=\"1\"");
    }
};

TEST_F(ReloadTest, placesFile_isReloaded)
{
    ServiceProcess service(Path(), serve);
    const unsigned short port = service.AwaitPort();
    EXPECT_FALSE(Knows(port, "jeddah"));
    Import(folder, "Jeddah");
    service.Signal(SIGHUP);
    ASSERT_TRUE(service.AwaitLog(kTaken));
    EXPECT_TRUE(Knows(port, "jeddah"));
}

TEST_F(ReloadTest, zonesOfTheSystem_areReloaded)
{
    const auto install = [this](const char* zone) {
        std::filesystem::create_directories(folder / "zones/Asia");
        std::filesystem::copy_file(std::string("/usr/share/zoneinfo/") + zone, folder / "zones/new",
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::rename(folder / "zones/new", folder / "zones/Asia/Riyadh");
    };
    const auto useZones = [this] { ::setenv("TZDIR", folder.File("zones").c_str(), 1); };
    const std::string place = kScripts + "getCityInfo.pl?aid=SA-G104515";
    ServiceProcess service(Path(), serve, {}, useZones);
    const unsigned short port = service.AwaitPort();
    EXPECT_THAT(Fetch(port, place), Not(HasSubstr("utc_minutes"))) << "no zone of that name";
    install("Asia/Riyadh");
    service.Signal(SIGHUP);
    ASSERT_TRUE(service.AwaitLog(kTaken));
    EXPECT_THAT(Fetch(port, place), HasSubstr("utc_minutes=\"180\""));

    install("Asia/Kolkata");
    EXPECT_THAT(Fetch(port, place), HasSubstr("utc_minutes=\"180\"")) << "read once";
    service.Signal(SIGHUP);
    for (int i = 0; i < 100 && Fetch(port, place).find("\"330\"") == std::string::npos; ++i) {
        ::usleep(20'000);
    }
    EXPECT_THAT(Fetch(port, place), HasSubstr("utc_minutes=\"330\""));
}

TEST_F(ReloadTest, unusablePlacesFile_isRefusedAndThePreviousOneStays)
{
    const std::string whole = Read(folder / "places.bin");
    std::string damaged = whole;
    ++damaged.back();
    std::string newer = whole;
    ++newer[offsetof(beacond::layout::Header, version)];
    const struct
    {
        std::string content;
        std::string reason;
    } rows[] = {
        {damaged, "damaged: its checksum is wrong"},
        {whole.substr(0, whole.size() / 2), "cut off or lengthened"},
        {newer, "made by a newer version of this program"},
    };
    ServiceProcess service(Path(), serve);
    const unsigned short port = service.AwaitPort();
    for (const auto& row : rows) {
        Replace(row.content);
        service.Signal(SIGHUP);
        EXPECT_TRUE(service.AwaitLog("places file places.bin: " + row.reason + "; " + kRefused));
        EXPECT_TRUE(Knows(port, "makkah")) << row.reason;
    }
}

TEST_F(ReloadTest, configuration_isReloadedForTheKeysThatNeedNoRestart)
{
    Configure("[messages]\nchannels = [\"spool\"]\n");
    ServiceProcess service(Path(), serve);
    const unsigned short port = service.AwaitPort();
    EXPECT_THAT(Fetch(port, "/"), Not(HasSubstr("signup@example.org")));
    EXPECT_EQ(Fetch(port, kScripts + "startup.pl?dist_string=mosque"), "<root/>");
    const TemporaryFolder other;
    Import(other, "Jeddah");
    Write(folder / "service.toml",
          "[http]\nlisten = \"127.0.0.1:0\"\nbase_url = \"https://service.example.org\"\n"
          "[metrics]\nlisten = \"127.0.0.1:0\"\n[places]\nfile = \"" +
              other.File("places.bin") +
              "\"\n[messages]\nchannels = [\"spool\"]\nsignup_address = \"signup@example.org\"\n"
              "[service]\ndists = [\"mosque\"]\n[log]\nlevel = \"warning\"\n");

    service.Signal(SIGHUP);
    ASSERT_TRUE(service.AwaitLog(kTaken));
    EXPECT_TRUE(Knows(port, "jeddah"));
    EXPECT_THAT(Fetch(port, "/"), HasSubstr("signup@example.org"));
    EXPECT_EQ(Fetch(port, kScripts + "startup.pl?dist_string=mosque"), "<root/>");
    service.Signal(SIGTERM);
    EXPECT_THAT(service.Wait().errors, EndsWith(kTaken + "\"}\n")) << "no request and no end at that level";
    EXPECT_THAT(Run({"starts"}).output, HasSubstr("\tmosque\t1\n"));
    EXPECT_THAT(Run({"starts"}).output, HasSubstr("\tother\t1\n"));
}

TEST_F(ReloadTest, keysThatNeedARestart_areNamedInOneWarning)
{
    ServiceProcess service(Path(), serve);
    const unsigned short port = service.AwaitPort();
    // Writing out a default value is no change.
    Configure("[keys]\nfolder = \"other\"\n[store]\nurl = \"sqlite:state/service.db\"\n"
              "[messages]\nchannels = [\"spool\"]\n[log]\nlevel = \"warning\"\n");
    service.Signal(SIGHUP);
    ASSERT_TRUE(
        service.AwaitLog(R"("level":"warning","message":"needs a restart: keys.folder, messages.channels")"));
    EXPECT_EQ(Fetch(port, "/readyz"), "ready\n");
}

TEST_F(ReloadTest, unusableConfiguration_isRefusedAsAWhole)
{
    ServiceProcess service(Path(), serve);
    const unsigned short port = service.AwaitPort();
    Import(folder, "Jeddah");
    Configure("[messages]\nsignup_address = \"signup@example.org\"\n[log]\nlevel = \"loud\"\n");
    service.Signal(SIGHUP);
    ASSERT_TRUE(service.AwaitLog("service.toml:10: log.level: "));
    ASSERT_TRUE(service.AwaitLog(kRefused));
    EXPECT_TRUE(Knows(port, "makkah"));
    EXPECT_FALSE(Knows(port, "jeddah"));

    Write(folder / "service.toml", "");
    service.Signal(SIGHUP);
    ASSERT_TRUE(service.AwaitLog("service.toml: empty; " + kRefused));

    std::filesystem::remove(folder / "service.toml");
    service.Signal(SIGHUP);
    ASSERT_TRUE(service.AwaitLog("service.toml: can't be read; " + kRefused));
}
