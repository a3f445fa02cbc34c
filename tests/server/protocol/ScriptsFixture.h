// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/Places.h"
#include "protocol/Scripts.h"
#include "protocol/StartCounter.h"
#include "secrets/Keys.h"
#include "server/TemporaryFolder.h"
#include "server/places/SmallTables.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_future.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

inline constexpr int kWrongCodesAlarm = 5;

/// The scripts with a real store, real keys and a small places file.
class ScriptsTest : public testing::Test
{
protected:
    explicit ScriptsTest(const beacond::LimitOptions& limitOptions = {})
        : limits(limitOptions, keys.identifier)
    {
        SmallTables tables;
        tables.places = PlaceLine{"104515", "Mecca", "Makkah",  "21.42664",   "39.82563",
                                  "SA",     "14",    "1323624", "Asia/Riyadh"}
                            .Text() +
                        PlaceLine{"109223", "Medina", "Madinah", "24.46861",   "39.61417",
                                  "SA",     "05",     "1300000", "Asia/Riyadh"}
                            .Text() +
                        PlaceLine{"1",    "Springfield",     "", "39.8", "-89.64", "US", "IL",
                                  "1000", "America/Chicago", "", "180"}
                            .Text();
        tables.Import(folder);
        places.Set(beacond::Places::Open(folder / "places.bin"));
        dists.Set(std::make_shared<const beacond::Distributions>(beacond::Distributions{"mosque"}));
    }

    beacond::Response Ask(const std::string& script, const std::string& query = {},
                          beacond::Method method = beacond::Method::Get)
    {
        beacond::Request request;
        request.method = method;
        request.path = "/cgi-bin/dbeacon/" + script;
        request.query = query;
        request.client = boost::asio::ip::make_address(client);
        request.delay = delay;
        boost::asio::io_context context;
        auto answer = boost::asio::co_spawn(context, scripts.Answer(request), boost::asio::use_future);
        context.run();
        return answer.get();
    }
    std::string Body(const std::string& script, const std::string& query = {})
    {
        return Ask(script, query).body;
    }
    /// Stores a sign-up whose code is not confirmed yet.
    void SignUp(const std::string& digits)
    {
        beacond::SqliteStore another(folder.File("store.db"), [this] { return Seconds(); });
        (void)another.SignUp({"mail", "sealed", "index " + digits, keys.lookup.Hash("personal code", digits),
                              1800, "form", "texts"},
                             {});
    }
    std::vector<beacond::OutboxRow> Outbox()
    {
        return beacond::SqliteStore(folder.File("store.db")).Outbox(100);
    }
    [[nodiscard]] std::int64_t Seconds() const { return now.time_since_epoch().count(); }

    TemporaryFolder folder;
    std::chrono::sys_seconds now{std::chrono::seconds(1'800'000'000)};
    beacond::AttemptLimit::Time elapsed; ///< time of the steady clock
    std::string client = "192.0.2.1";
    std::chrono::milliseconds delay{0}; ///< delay of the answering thread
    beacond::Keys keys = beacond::Keys::FromFolder(folder.File("keys"));
    beacond::StoreThread store{
        std::make_unique<beacond::SqliteStore>(folder.File("store.db"), [this] { return Seconds(); })};
    beacond::StartCounter starts;
    beacond::Latest<beacond::Places> places;
    beacond::Latest<beacond::Announcements> announcements;
    beacond::Latest<beacond::Distributions> dists;
    std::vector<std::string> reports;
    beacond::RequestLimits limits;
    beacond::Scripts scripts{{keys, store, starts, places, announcements, dists, [this] { return now; },
                              [this](std::string_view reason) { reports.emplace_back(reason); }, limits,
                              kWrongCodesAlarm, [this] { return elapsed; }}};
};
