// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceProcess.h"
#include "server/places/SmallTables.h"
#include "store/SqliteStore.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <random>
#include <regex>
#include <set>
#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr int kClients = 4;
// In each round each client signs up so many devices at most, and asks for these texts of each.
constexpr int kSignups = 5;
constexpr int kPrayersDuring = 5;
// Asked for after the restart, which tells whether the confirmation is still there.
constexpr int kPrayerAfter = 6;
constexpr int kEarlyEvery = 5;

int Rounds()
{
    const char* const given = std::getenv("DUSKBEACON_KILL_ROUNDS");
    return given == nullptr ? 20 : std::atoi(given);
}

/// An installation, the name of its device, and what it was told.
struct Customer
{
    std::string identifier;
    std::string device;
    std::set<int> prayers;
};

} // namespace

/// The real program under load, killed at any instant and started again on the same state.
class KilledService : public testing::Test
{
protected:
    KilledService()
    {
        SmallTables tables;
        tables.places = PlaceLine().Text();
        tables.Import(folder);
        Write(folder / "service.toml",
              "[http]\nlisten = \"127.0.0.1:0\"\nproxies = [\"127.0.0.1\"]\n"
              "[metrics]\nlisten = \"127.0.0.1:0\"\n[places]\nfile = \"places.bin\"\n"
              "[messages]\nchannels = [\"spool\"]\nsignups_per_day = 100000\n");
    }

    [[nodiscard]] std::string Path() const { return (folder / "").string(); }
    /// Sends a request from a client of that address, and answers the whole reply.
    static std::string Ask(unsigned short port, const std::string& client, const std::string& target,
                           const std::string& form = {})
    {
        const std::string length = std::to_string(form.size());
        return Exchange(port, (form.empty() ? "GET " : "POST ") + target +
                                  " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\nX-Forwarded-For: " +
                                  client + "\r\n" +
                                  (form.empty() ? ""
                                                : "Content-Type: application/x-www-form-urlencoded\r\n"
                                                  "Content-Length: " +
                                                      length + "\r\n") +
                                  "\r\n" + form);
    }
    /// Answers the ID and the code of the message to that address.
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
    static bool Call(unsigned short port, const std::string& client, Customer& customer, int prayer)
    {
        const std::string reply = Ask(port, client,
                                      "/cgi-bin/dbeacon/prayerCall.pl?prod_string=" + customer.identifier +
                                          "&aid=US-G1&pno=" + std::to_string(prayer) +
                                          "&alert_type=Normal&ma=1&time=5:07&aid=US-G1");
        const bool isAcknowledged = reply.starts_with("HTTP/1.1 200 ") && reply.ends_with("\r\n\r\n<root/>");
        if (isAcknowledged) {
            customer.prayers.insert(prayer);
        }
        return isAcknowledged;
    }
    /// Signs a device up and asks for its texts. False once the service does not answer.
    bool UseOnce(unsigned short port, const std::string& client, const std::string& name)
    {
        const std::string address = "a@" + name + ".example";
        if (!Ask(port, client, "/signup", "address=" + address).starts_with("HTTP/1.1 200 ")) {
            return false;
        }
        const auto [device, code] = MessageTo(address);
        Customer customer{"pc-" + name, device, {}};
        const std::string reply =
            Ask(port, client,
                "/cgi-bin/dbeacon/ma/confirmSignup.pl?prod_string=" + customer.identifier + "&vCode=" + code +
                    "&dist_string=");
        if (reply.find("<root result=\"1\"") == std::string::npos) {
            return false;
        }
        bool isAnswered = true;
        for (int prayer = 1; prayer <= kPrayersDuring && isAnswered; ++prayer) {
            isAnswered = Call(port, client, customer, prayer);
        }
        const std::lock_guard lock(mutex);
        customers.push_back(customer);
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
    /// Starts the service and kills it after so many milliseconds of load, or of its start.
    void RunRound(int round)
    {
        ServiceProcess service(Path(), {"serve", "--config", "service.toml"});
        if (round % kEarlyEvery == 0) {
            ::usleep(std::uniform_int_distribution<useconds_t>(0, 60'000)(chance));
            return;
        }
        const unsigned short port = service.AwaitPort();
        ASSERT_NE(port, 0);
        ASSERT_NO_FATAL_FAILURE(ExpectEverythingThere(port));
        std::vector<std::jthread> clients;
        for (int number = 0; number < kClients; ++number) {
            clients.emplace_back([this, port, round, number] { Use(port, round, number); });
        }
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 300'000)(chance));
        service.Signal(SIGKILL);
        EXPECT_EQ(service.Wait().status, 128 + SIGKILL);
    }
    void ExpectEverythingThere(unsigned short port)
    {
        for (; checked < customers.size(); ++checked) {
            EXPECT_TRUE(Call(port, "10.0.0.1", customers[checked], kPrayerAfter));
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
        for (const Customer& customer : customers) {
            for (const int prayer : customer.prayers) {
                ASSERT_TRUE(stored.contains({customer.device, prayer}))
                    << customer.identifier << " device " << customer.device << " prayer " << prayer;
            }
        }
    }

    static constexpr unsigned kSeed = 20'260'320;
    std::mt19937 chance{kSeed};
    TemporaryFolder folder;
    std::mutex mutex;
    std::vector<Customer> customers;
    std::size_t checked = 0;
};

TEST_F(KilledService, anyInstant_keepsWhatWasAcknowledged)
{
    const int rounds = Rounds();
    std::cout << rounds << " rounds, seed " << kSeed << std::endl;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(RunRound(round));
        ASSERT_FALSE(HasFailure());
        // Only messages of the round are looked through.
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(folder / "state/spool", ignored)) {
            fs::remove(entry.path());
        }
    }
    ServiceProcess service(Path(), {"serve", "--config", "service.toml"});
    const unsigned short port = service.AwaitPort();
    ASSERT_NE(port, 0);
    ExpectEverythingThere(port);
    std::size_t texts = 0;
    for (const Customer& customer : customers) {
        texts += customer.prayers.size();
    }
    std::cout << customers.size() << " confirmations and " << texts << " texts acknowledged\n";
    EXPECT_GE(customers.size(), static_cast<std::size_t>(rounds));
}
