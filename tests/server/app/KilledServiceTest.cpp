// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"
#include "store/SqliteStore.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <mutex>
#include <random>
#include <regex>
#include <set>
#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr int kClients = 4;
// In each round each client signs up at most this number of devices, and asks for these texts for each.
constexpr int kSignups = 5;
constexpr int kPrayersDuring = 5;
// Requested after the restart, to check whether the confirmation has been kept.
constexpr int kPrayerAfter = 6;
// After this number of rounds the service is also killed during its start.
constexpr int kRoundsBetweenEarlyKills = 4;

int Rounds()
{
    const char* const given = std::getenv("DUSKBEACON_KILL_ROUNDS");
    return given == nullptr ? 20 : std::atoi(given);
}

/// An installation, the ID and the code of its device, and the prayers whose texts were acknowledged.
struct Installation
{
    std::string identifier;
    std::string device;
    std::string code;
    std::set<int> prayers;
};

} // namespace

/// The real program under load, killed at any instant and restarted on the same state.
class KilledService : public ServiceFixture
{
protected:
    KilledService()
    {
        Configure("[messages]\nchannels = [\"spool\"]\nsignups_per_day = 100000\n",
                  "proxies = [\"127.0.0.1\"]\n");
    }

    /// The X-Forwarded-For field for a client of that address.
    static std::string From(const std::string& client) { return "X-Forwarded-For: " + client + "\r\n"; }
    /// Sends a request for a script from a client of that address, and returns the whole reply.
    std::string Ask(unsigned short port, const std::string& client, const std::string& script) const
    {
        return Exchange(port, "GET " + kScripts + script +
                                  " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n" + From(client) +
                                  "\r\n");
    }
    /// Returns the ID and the code in the message to that address.
    [[nodiscard]] std::pair<std::string, std::string> MessageTo(const std::string& address) const
    {
        for (const auto& entry : fs::directory_iterator(folder / "state/spool")) {
            const std::string text = Read(entry.path());
            std::smatch match;
            if (text.starts_with("To: " + address + "\n") &&
                std::regex_search(text, match, std::regex("device ID: (\\S+)\n.*code: ([0-9 ]+)"))) {
                return {match[1], std::regex_replace(match[2].str(), std::regex(" "), "")};
            }
        }
        return {};
    }
    [[nodiscard]] bool Confirm(unsigned short port, const std::string& client,
                               const Installation& installation) const
    {
        return Ask(port, client,
                   "ma/confirmSignup.pl?prod_string=" + installation.identifier +
                       "&vCode=" + installation.code + "&dist_string=")
                   .find("<root result=\"1\"") != std::string::npos;
    }
    bool Call(unsigned short port, const std::string& client, Installation& installation, int prayer) const
    {
        const std::string reply = Ask(port, client,
                                      "prayerCall.pl?prod_string=" + installation.identifier +
                                          "&aid=SA-G104515&pno=" + std::to_string(prayer) +
                                          "&alert_type=Normal&ma=1&time=5:07&aid=SA-G104515");
        const bool isAcknowledged = reply.starts_with("HTTP/1.1 200 ") && reply.ends_with("\r\n\r\n<root/>");
        if (isAcknowledged) {
            installation.prayers.insert(prayer);
        }
        return isAcknowledged;
    }
    /// Signs up a device and asks for its texts. False when the service no longer answers.
    bool UseOnce(unsigned short port, const std::string& client, const std::string& name)
    {
        const std::string address = "a@" + name + ".example";
        if (!PostSignup(port, "address=" + address, From(client)).starts_with("HTTP/1.1 200 ")) {
            return false;
        }
        const auto [device, code] = MessageTo(address);
        Installation installation{"installation-of-pc-" + name, device, code, {}};
        bool isAnswered = Confirm(port, client, installation);
        if (!isAnswered) {
            const std::lock_guard lock(mutex);
            unconfirmed.push_back(installation);
            return false;
        }
        for (int prayer = 1; prayer <= kPrayersDuring && isAnswered; ++prayer) {
            isAnswered = Call(port, client, installation, prayer);
        }
        const std::lock_guard lock(mutex);
        installations.push_back(installation);
        return isAnswered;
    }
    void Use(unsigned short port, int round, int number)
    {
        for (int signup = 0; signup < kSignups; ++signup) {
            const std::string client =
                "10." + std::to_string(round) + "." + std::to_string(number) + "." + std::to_string(signup);
            if (!UseOnce(port, client,
                         std::to_string(round) + "-" + std::to_string(number) + "-" +
                             std::to_string(signup))) {
                return;
            }
        }
    }
    void KillDuringStart()
    {
        const ServiceProcess starting(Path(), serve);
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 60'000)(chance));
    }
    /// Starts the service and kills it under load.
    void RunRound(int round)
    {
        const unsigned short port = Serve();
        ASSERT_NE(port, 0);
        ASSERT_NO_FATAL_FAILURE(ExpectEverythingThere(port));
        std::vector<std::jthread> clients;
        for (int number = 0; number < kClients; ++number) {
            clients.emplace_back([this, port, round, number] { Use(port, round, number); });
        }
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 300'000)(chance));
        service->Signal(SIGKILL);
        EXPECT_EQ(service->Wait().status, 128 + SIGKILL);
    }
    /// Notes the texts in the spool, and removes them.
    void CollectSentTexts()
    {
        const std::map<std::string, int> prayers{{"Fajr", 1}, {"Shuruq", 2},  {"Duhr", 3},
                                                 {"Asr", 4},  {"Maghrib", 5}, {"Isha", 6}};
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(folder / "state/spool", ignored)) {
            const std::string text = Read(entry.path());
            std::smatch match;
            if (entry.path().extension() == ".txt" &&
                std::regex_match(text, match, std::regex("To: a@(.*)\\.example\n\n([A-Z][a-z]+) 5:07\n"))) {
                doubled +=
                    sent.emplace("installation-of-pc-" + match[1].str(), prayers.at(match[2])).second ? 0 : 1;
                fs::remove(entry.path());
            }
        }
    }
    void ExpectEverythingThere(unsigned short port)
    {
        // The sign-up was acknowledged, so that its code is valid whether or not the confirmation was stored.
        for (const Installation& installation : unconfirmed) {
            EXPECT_TRUE(Confirm(port, "10.0.0.1", installation)) << installation.identifier;
            installations.push_back(installation);
        }
        confirmedLater += unconfirmed.size();
        unconfirmed.clear();
        for (; checked < installations.size(); ++checked) {
            EXPECT_TRUE(Call(port, "10.0.0.1", installations[checked], kPrayerAfter));
        }
        const std::string path = folder.File("state/service.db");
        beacond::Database database(path, beacond::Database::Access::Read);
        beacond::Statement check = database.Run("PRAGMA integrity_check");
        ASSERT_TRUE(check.Step());
        EXPECT_EQ(check.Text(0), "ok");
        std::set<std::pair<std::string, int>> stored;
        for (const beacond::OutboxRow& row : beacond::SqliteStore::ToRead(path).Outbox(1'000'000)) {
            EXPECT_TRUE(stored.emplace(std::to_string(row.device), row.prayer).second) << "twice";
        }
        // After the outbox: the service sends meanwhile.
        CollectSentTexts();
        for (const Installation& installation : installations) {
            for (const int prayer : installation.prayers) {
                ASSERT_TRUE(stored.contains({installation.device, prayer}) ||
                            sent.contains({installation.identifier, prayer}))
                    << installation.identifier << " device " << installation.device << " prayer " << prayer;
            }
        }
    }

    static constexpr unsigned kSeed = 20'260'320;
    std::mt19937 chance{kSeed};
    std::mutex mutex;
    std::vector<Installation> installations;
    std::vector<Installation> unconfirmed;
    std::set<std::pair<std::string, int>> sent;
    int doubled = 0;
    std::size_t checked = 0;
    std::size_t confirmedLater = 0;
};

TEST_F(KilledService, anyInstant_keepsWhatWasAcknowledged)
{
    const int rounds = Rounds();
    std::cout << rounds << " rounds, seed " << kSeed << std::endl;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(RunRound(round));
        ASSERT_FALSE(HasFailure());
        if (round % kRoundsBetweenEarlyKills == 0) {
            KillDuringStart();
        }
        CollectSentTexts();
        // Keep only the messages of one round: each search reads all of them.
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(folder / "state/spool", ignored)) {
            fs::remove(entry.path());
        }
    }
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    ExpectEverythingThere(port);
    std::size_t texts = 0;
    for (const Installation& installation : installations) {
        texts += installation.prayers.size();
    }
    std::cout << installations.size() << " confirmations, " << confirmedLater << " of them after a kill, and "
              << texts << " texts acknowledged, " << sent.size() << " sent, " << doubled << " twice\n";
    EXPECT_FALSE(sent.empty());
    EXPECT_LE(doubled, rounds) << "one for each kill, with one connection";
    EXPECT_GE(installations.size(), static_cast<std::size_t>(rounds));
}
