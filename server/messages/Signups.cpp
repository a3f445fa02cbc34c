// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Signups.h"

#include "messages/Address.h"
#include "messages/Channel.h"
#include "messages/MailAddress.h"
#include "messages/PersonalCode.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <optional>
#include <thread>

namespace beacond {

namespace {

constexpr std::int64_t kCodeLifetime = 30L * 60;

std::string MessageWith(std::int64_t device, const std::string& code)
{
    return "Your mobile device ID: " + std::to_string(device) + "\nYour personal code: " + code + R"(

Enter both in Dusk Beacon, under Alerts and Mobile Alert, within 30 minutes, and click Register.
If you did not ask for this, there is nothing to do: without the code nothing changes.)";
}

Signup SignupOf(const Keys& keys, const std::string& address, std::string codeHash)
{
    return {.kind = "mail",
            .sealedAddress = keys.address.Seal(address),
            .addressIndex = MailAddressIndex(keys.index, address),
            .codeHash = std::move(codeHash),
            .lifetime = kCodeLifetime,
            .consentSource = "form",
            .consentText = std::string(kConsentWords),
            .domainIndex = keys.index.Hash("mail domain", RegistrableDomainOf(address)),
            .limitIndex = keys.index.Hash("mail address", WithoutSubaddress(address))};
}

} // namespace

std::string MailAddressIndex(const Key& index, std::string_view address)
{
    return AddressIndex(index, {AddressKind::Mail, std::string(address)});
}

Signups::Signups(const Keys& keys, StoreThread& store, Channel* channel, SignupLimits limits,
                 int mostOfANetwork, Report report)
    : m_keys(keys)
    , m_store(store)
    , m_channel(channel)
    , m_limits(limits)
    , m_report(std::move(report))
    , m_networks(mostOfANetwork, std::chrono::hours(1))
{
}

// The calls of the store and of the channel are named variables before they are awaited: see docs/service.md.

boost::asio::awaitable<Signups::Outcome> Signups::SignUp(std::string typedAddress, std::string network,
                                                         AttemptLimit::Time now)
{
    if (!IsOffered()) {
        co_return Outcome::NotOffered;
    }
    const std::optional<std::string> address = NormalisedMailAddress(typedAddress);
    if (!address) {
        co_return Outcome::NoAddress;
    }
    if (!m_networks.TryConsume(network, now)) {
        co_return Outcome::TooMany;
    }
    const std::string code = MakePersonalCode();
    const std::string codeHash = m_keys.index.Hash("personal code", *DigitsOfPersonalCode(code));
    auto store = [signup = SignupOf(m_keys, *address, codeHash), limits = m_limits](Store& rows) {
        return rows.SignUp(signup, limits);
    };
    SignupResult stored;
    try {
        stored = co_await m_store.Run(std::move(store));
    } catch (const StoreError& error) {
        m_report(error.what());
        m_networks.GiveBack(network);
        co_return Outcome::Failed;
    }
    if (stored.exceeded != SignupResult::Limit::None) {
        ReportLimit(stored.exceeded, now);
        co_return Outcome::TooMany;
    }
    // Send after the row is stored: the code in an arrived message is then known, and the row of a lost
    // message expires.
    const bool isSent = co_await Send(*address, MessageWith(stored.device, code));
    if (!isSent) {
        m_networks.GiveBack(network);
        co_await Withdraw(codeHash);
        co_return Outcome::Failed;
    }
    co_return Outcome::Sent;
}

// Report these limits: all sign-ups are refused until the operator raises the limit. The limit of an address
// needs no report: it affects one person, who has three codes.
void Signups::ReportLimit(SignupResult::Limit limit, AttemptLimit::Time now)
{
    const bool isOfADomain = limit == SignupResult::Limit::Domain;
    if (limit != SignupResult::Limit::Address &&
        m_limitReports.TryConsume(isOfADomain ? "domain" : "all", now)) {
        m_report(isOfADomain ? "sign-ups are refused: the limit of a domain is reached"
                             : "sign-ups are refused: the limit of a day is reached");
    }
}

boost::asio::awaitable<bool> Signups::Send(const std::string& address, const std::string& text)
{
    const OutgoingMessage message{.address = address,
                                  .subject = "Dusk Beacon: your personal code",
                                  .text = text,
                                  .id = "code-" + std::to_string(RandomBelow(1U << 31U)),
                                  .language = "en"};
    auto send = [this, &message]() -> boost::asio::awaitable<SendResult> {
        std::this_thread::sleep_until(m_channel->TakeSlot());
        co_return m_channel->Send(message);
    };
    const SendResult result = co_await boost::asio::co_spawn(m_sender, send, boost::asio::use_awaitable);
    if (!result.reason.empty()) {
        m_report(result.reason);
    }
    // A message without a confirmation may arrive: its code stays valid.
    co_return result.handover == Handover::Accepted || result.handover == Handover::Unknown;
}

boost::asio::awaitable<void> Signups::Withdraw(std::string codeHash)
{
    auto withdraw = [codeHash = std::move(codeHash)](Store& rows) {
        rows.Withdraw(codeHash);
        return true;
    };
    try {
        co_await m_store.Run(std::move(withdraw));
    } catch (const StoreError& error) {
        m_report(error.what());
    }
}

boost::asio::awaitable<void> Signups::DropOld()
{
    auto drop = [](Store& rows) {
        rows.DropOldSignups();
        return true;
    };
    try {
        co_await m_store.Run(drop);
    } catch (const std::exception& error) {
        m_report(error.what());
    }
}

} // namespace beacond
