// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"
#include "server/http/RawClient.h"

#include <gmock/gmock.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <thread>

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
    /// Replaces the places file by another one: the service has it open.
    void Replace(const std::string& content)
    {
        Write(folder / "new.bin", content);
        std::filesystem::rename(folder / "new.bin", folder / "places.bin");
    }
    /// Sends SIGHUP. Returns whether the log contains the text afterwards.
    [[nodiscard]] bool ReloadLogs(const std::string& text)
    {
        service->Signal(SIGHUP);
        return service->AwaitLog(text);
    }
    bool Knows(unsigned short port, const std::string& city)
    {
        return Fetch(port, kScripts + "getNumMatchingCities.pl?state_id=SA&city_string=" + city)
            .starts_with("<root num_matches=\"1\"");
    }
};

TEST_F(ReloadTest, placesFile_isReloaded)
{
    const unsigned short port = Serve();
    EXPECT_FALSE(Knows(port, "jeddah"));
    Import(folder, "Jeddah");
    ASSERT_TRUE(ReloadLogs(kTaken));
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
    const unsigned short port = Serve(useZones);
    EXPECT_THAT(Fetch(port, place), Not(HasSubstr("utc_minutes"))) << "no zone of that name";
    install("Asia/Riyadh");
    ASSERT_TRUE(ReloadLogs(kTaken));
    EXPECT_THAT(Fetch(port, place), HasSubstr("utc_minutes=\"180\""));

    install("Asia/Kolkata");
    EXPECT_THAT(Fetch(port, place), HasSubstr("utc_minutes=\"180\"")) << "read once";
    service->Signal(SIGHUP);
    for (int i = 0; i < 100 && Fetch(port, place).find("\"330\"") == std::string::npos; ++i) {
        ::usleep(20'000);
    }
    EXPECT_THAT(Fetch(port, place), HasSubstr("utc_minutes=\"330\""));
}

TEST_F(ReloadTest, unusablePlacesFile_isRefusedAndThePreviousOneStays)
{
    const unsigned short port = Serve();
    std::string damaged = Read(folder / "places.bin");
    ++damaged.back();
    Replace(damaged);
    EXPECT_TRUE(ReloadLogs("places file places.bin: damaged: its checksum is wrong; " + kRefused));
    EXPECT_TRUE(Knows(port, "makkah"));
}

TEST_F(ReloadTest, placesFileReplacedUnderLoad_everyRequestIsAnswered)
{
    constexpr int kClients = 4;
    constexpr int kRequests = 1000; // of each client, within two seconds
    constexpr std::chrono::microseconds kInterval{2000};
    constexpr std::chrono::milliseconds kBetweenReloads{60};
    const std::string makkah = Read(folder / "places.bin");
    const TemporaryFolder other;
    Import(other, "Madinah");
    std::string damaged = makkah;
    ++damaged.back();
    const std::string files[] = {Read(other / "places.bin"), makkah, damaged};
    Configure("[limits]\nnetwork_per_minute = 0\n");
    const unsigned short port = Serve();

    std::atomic<int> answered = 0;
    std::atomic<int> atWork = kClients;
    std::vector<std::jthread> clients;
    for (int i = 0; i < kClients; ++i) {
        clients.emplace_back([&] {
            RawClient client(port);
            auto due = std::chrono::steady_clock::now();
            // Each of the files has one place of these letters.
            const std::string request =
                "GET " + kScripts +
                "getNumMatchingCities.pl?state_id=SA&city_string=ma HTTP/1.1\r\nHost: a\r\n\r\n";
            bool isAnswered = true;
            for (int sent = 0; sent < kRequests && isAnswered && client.Send(request); ++sent) {
                isAnswered = client.ReadThrough("/>").find("num_matches=\"1\"") != std::string::npos;
                answered += isAnswered ? 1 : 0;
                std::this_thread::sleep_until(due += kInterval);
            }
            --atWork;
        });
    }
    for (std::size_t i = 0; atWork > 0; ++i) {
        Replace(files[i % std::size(files)]);
        service->Signal(SIGHUP);
        std::this_thread::sleep_for(kBetweenReloads);
    }
    clients.clear();
    EXPECT_EQ(answered, kClients * kRequests);
    EXPECT_TRUE(service->AwaitLog(kTaken));
    EXPECT_TRUE(service->AwaitLog(kRefused));
}

TEST_F(ReloadTest, configuration_isReloadedForTheKeysThatNeedNoRestart)
{
    Configure("[messages]\nchannels = [\"spool\"]\n");
    const unsigned short port = Serve();
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

    ASSERT_TRUE(ReloadLogs(kTaken));
    EXPECT_TRUE(Knows(port, "jeddah"));
    EXPECT_THAT(Fetch(port, "/"), HasSubstr("signup@example.org"));
    EXPECT_EQ(Fetch(port, kScripts + "startup.pl?dist_string=mosque"), "<root/>");
    EXPECT_THAT(Terminate().errors, EndsWith(kTaken + "\"}\n")) << "no request and no end at that level";
    EXPECT_THAT(Run({"starts"}).output, HasSubstr("\tmosque\t1\n"));
    EXPECT_THAT(Run({"starts"}).output, HasSubstr("\tother\t1\n"));
}

TEST_F(ReloadTest, keysThatNeedARestart_areNamedInOneWarning)
{
    const unsigned short port = Serve();
    // Writing out a default value is no change.
    Configure("[keys]\nfolder = \"other\"\n[store]\nurl = \"sqlite:state/service.db\"\n"
              "[messages]\nchannels = [\"spool\"]\n[log]\nlevel = \"warning\"\n");
    ASSERT_TRUE(
        ReloadLogs(R"("level":"warning","message":"needs a restart: keys.folder, messages.channels")"));
    EXPECT_EQ(Fetch(port, "/readyz"), "ready\n");
}

TEST_F(ReloadTest, unusableConfiguration_isRefusedAsAWhole)
{
    const unsigned short port = Serve();
    Import(folder, "Jeddah");
    Configure("[messages]\nsignup_address = \"signup@example.org\"\n[log]\nlevel = \"loud\"\n");
    ASSERT_TRUE(ReloadLogs("service.toml:10: log.level: "));
    ASSERT_TRUE(service->AwaitLog(kRefused));
    EXPECT_TRUE(Knows(port, "makkah"));
    EXPECT_FALSE(Knows(port, "jeddah"));

    Write(folder / "service.toml", "");
    ASSERT_TRUE(ReloadLogs("service.toml: empty; " + kRefused));

    std::filesystem::remove(folder / "service.toml");
    ASSERT_TRUE(ReloadLogs("service.toml: can't be read; " + kRefused));
}
