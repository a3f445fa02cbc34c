// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Signups.h"

#include "messages/MailAddress.h"
#include "messages/PersonalCode.h"
#include "messages/Spool.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <optional>

namespace beacond {

namespace {

constexpr std::int64_t kCodeLifetime = 30 * 60;
// A mosque may share one address of the network.
constexpr int kMostOfANetwork = 20;
constexpr int kMostOfAnAddress = 3;

std::string MessageWith(std::int64_t device, const std::string& code)
{
    return "Your mobile device ID: " + std::to_string(device) + "\nYour personal code: " + code +
           "\n\nEnter both in Dusk Beacon, under Alerts and Mobile Alert, within 30 minutes, and click "
           "Register."
           "\nIf you did not ask for this, there is nothing to do: without the code nothing is sent to you.";
}

} // namespace

Signups::Signups(const Keys& keys, StoreThread& store, const Spool* spool, Report report)
    : m_keys(keys)
    , m_store(store)
    , m_spool(spool)
    , m_report(std::move(report))
    , m_networks(kMostOfANetwork, std::chrono::hours(1))
    , m_addresses(kMostOfAnAddress, std::chrono::days(1))
{
}

boost::asio::awaitable<Signups::Outcome> Signups::SignUp(std::string typedAddress, std::string network,
                                                         std::chrono::sys_seconds now)
{
    if (!IsOffered()) {
        co_return Outcome::NotOffered;
    }
    const std::optional<std::string> address = NormalisedMailAddress(typedAddress);
    if (!address) {
        co_return Outcome::NoAddress;
    }
    const std::string index = m_keys.index.Hash("mail address", *address);
    if (!m_networks.Take(network, now) || !m_addresses.Take(index, now)) {
        co_return Outcome::TooMany;
    }
    try {
        const std::string code = MakePersonalCode();
        Signup signup{"mail",
                      m_keys.address.Seal(*address),
                      index,
                      m_keys.index.Hash("personal code", *DigitsOfPersonalCode(code)),
                      kCodeLifetime,
                      "form",
                      "texts at prayer times, asked for on the home page"};
        // Named before they are awaited: GCC 12 destroys the captures of a lambda twice that is written into
        // the await.
        auto store = [signup = std::move(signup)](Store& rows) { return rows.SignUp(signup); };
        const std::int64_t device = co_await m_store.Run(std::move(store));
        const std::string text = MessageWith(device, code);
        auto send = [this, &address, &text]() -> boost::asio::awaitable<void> {
            m_spool->Send(*address, text);
            co_return;
        };
        co_await boost::asio::co_spawn(m_sender, send, boost::asio::use_awaitable);
        co_return Outcome::Sent;
    } catch (const std::runtime_error& error) {
        m_report(error.what());
        m_addresses.GiveBack(index);
        co_return Outcome::Failed;
    }
}

} // namespace beacond
