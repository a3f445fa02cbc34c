// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "messages/Channels.h"
#include "messages/PersonalCode.h"
#include "messages/SignupRow.h"
#include "messages/Signups.h"
#include "pages/Pages.h"
#include "secrets/Keys.h"
#include "server/Becomes.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"
#include "server/messages/ChannelFixture.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_future.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <mutex>
#include <regex>

using namespace beacond;
using Outcome = Signups::Outcome;

namespace fs = std::filesystem;

/// Sign-ups with a real store, real keys and a real spool folder.
class SignupsTest : public testing::Test
{
protected:
    Outcome SignUp(const std::string& address, const std::string& network = "192.0.2.1")
    {
        boost::asio::io_context context;
        auto outcome = boost::asio::co_spawn(context, signups->SignUp({address, invite}, network, elapsed),
                                             boost::asio::use_future);
        context.run();
        return outcome.get();
    }
    Outcome Take(const Address& sender, const std::string& text, Road road = Road::Mail)
    {
        boost::asio::io_context context;
        auto outcome = boost::asio::co_spawn(context, signups->Take({sender, "", text}, road, elapsed),
                                             boost::asio::use_future);
        context.run();
        return outcome.get();
    }
    void Start()
    {
        store = std::make_unique<StoreThread>(
            std::make_unique<SqliteStore>(folder.File("store.db"), [this] { return Seconds(); }));
        signups = std::make_unique<Signups>(keys, *store, channels, options, [this](std::string_view reason) {
            const std::lock_guard lock(mutex);
            reports.emplace_back(reason);
        });
    }
    [[nodiscard]] std::int64_t Seconds() const { return now.time_since_epoch().count(); }
    /// The texts of the messages in the spool.
    [[nodiscard]] std::vector<std::string> Messages() const
    {
        std::vector<std::string> messages;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder.File("spool"))) {
            messages.push_back(Read(entry.path()));
        }
        return messages;
    }
    Confirmation Confirm(const std::string& message)
    {
        std::smatch match;
        std::regex_search(message, match, std::regex("personal code:? ([0-9 ]+)"));
        SqliteStore another(folder.File("store.db"), [this] { return Seconds(); });
        return another.Confirm(keys.lookup.Hash("personal code", *DigitsOfPersonalCode(match[1].str())),
                               "pc");
    }
    [[nodiscard]] std::string Stored(const char* query) const
    {
        Database database(folder.File("store.db"));
        Statement row = database.Run(query);
        return row.Step() ? row.Text(0) : std::string();
    }

    TemporaryFolder folder;
    std::chrono::sys_seconds now{std::chrono::seconds(1'800'000'000)};
    AttemptLimit::Time elapsed; ///< time of the steady clock
    Keys keys = Keys::FromFolder(folder.File("keys"));
    double perSecond = 1000;
    [[nodiscard]] ChannelOptions SpoolOf(const std::string& kind) const
    {
        return {.name = kind,
                .type = "spool",
                .kind = kind,
                .perSecond = perSecond,
                .folder = folder.File("spool")};
    }
    [[nodiscard]] ChannelOptions Priced(std::int64_t price) const
    {
        ChannelOptions channel = SpoolOf("mail");
        channel.price = price;
        return channel;
    }
    Channels channels{std::vector{SpoolOf("mail"), SpoolOf("sms")}};
    std::string invite;
    SignupOptions options;
    SignupLimits& limits = options.limits;
    std::mutex mutex;
    std::vector<std::string> reports;
    std::unique_ptr<StoreThread> store;
    std::unique_ptr<Signups> signups;
};
