// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Signups.h"

#include "messages/BlockIndex.h"
#include "messages/Channels.h"
#include "messages/MailAddress.h"
#include "messages/PersonalCode.h"
#include "messages/SignupTexts.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"
#include "support/Ascii.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <algorithm>
#include <cmath>
#include <optional>
#include <thread>

namespace beacond {

namespace {

constexpr std::int64_t kCodeLifetime = 30L * 60;
// Beyond this number the channel is too slow for the sign-ups that come in.
constexpr int kMostWaiting = 100;
// A person waits for the reply to the form, and a shutdown for the message.
constexpr std::chrono::seconds kLongestWait{3};

// The addresses that count together in a limit beside that of the single address: those of a mail domain, or
// the phone numbers that differ in their last four digits, which one operator can own. Empty for topics.
std::string GroupIndexOf(const Key& index, const Address& address)
{
    switch (address.kind) {
    case AddressKind::Mail:
        return index.Hash("mail domain", RegistrableDomainOf(address.text));
    case AddressKind::Sms:
        return index.Hash("number range", address.text.substr(0, address.text.size() - 4));
    case AddressKind::Ntfy:
        break;
    }
    return {};
}

std::string LimitIndexOf(const Key& index, const Address& address)
{
    return address.kind == AddressKind::Mail ? index.Hash("mail address", WithoutSubaddress(address.text))
                                             : AddressIndex(index, address);
}

Signup SignupOf(const Keys& keys, const Address& address, Road road, std::string codeHash)
{
    return {.kind = std::string(NameOf(address.kind)),
            .sealedAddress = keys.address.Seal(address.text),
            .addressIndex = AddressIndex(keys.index, address),
            .codeHash = std::move(codeHash),
            .lifetime = kCodeLifetime,
            .consentSource = std::string(NameOf(road)),
            .consentText = std::string(road == Road::Form ? kConsentWords : kTestConsentWords),
            .domainIndex = GroupIndexOf(keys.index, address),
            .limitIndex = LimitIndexOf(keys.index, address),
            .blockIndex = BlockIndex(keys.lookup, address)};
}

std::string_view ReportOf(SignupResult::Limit limit)
{
    switch (limit) {
    case SignupResult::Limit::Domain:
        return "sign-ups are refused: the limit of a domain is reached";
    case SignupResult::Limit::InAll:
        return "sign-ups are refused: the limit of a day is reached";
    case SignupResult::Limit::Devices:
        return "sign-ups are refused: a channel could not send to more devices within ten minutes";
    case SignupResult::Limit::Address:
    case SignupResult::Limit::Blocked:
    case SignupResult::Limit::None:
        break;
    }
    // The limit of an address affects one person, who has three codes.
    return {};
}

} // namespace

std::string MailAddressIndex(const Key& index, std::string_view address)
{
    return AddressIndex(index, {AddressKind::Mail, std::string(address)});
}

std::string_view NameOf(Road road)
{
    static constexpr std::string_view kNames[] = {"form", "mail", "text", "hook"};
    return kNames[static_cast<std::size_t>(road)];
}

Signups::Signups(const Keys& keys, StoreThread& store, const Channels& channels, SignupOptions options,
                 Report report)
    : m_keys(keys)
    , m_store(store)
    , m_channels(channels)
    , m_options(std::move(options))
    , m_report(std::move(report))
    , m_networks(static_cast<int>(m_options.ofANetwork), std::chrono::hours(1))
{
    for (const std::string& invite : m_options.invites) {
        m_invites.insert(keys.index.Hash("invite", invite));
    }
}

bool Signups::Serves(AddressKind kind) const
{
    return m_channels.ForKind(NameOf(kind)) != nullptr &&
           (kind != AddressKind::Sms || !m_options.phonePrefixes.empty());
}

bool Signups::IsServed(const Address& address) const
{
    const std::vector<std::string>& prefixes = m_options.phonePrefixes;
    return Serves(address.kind) &&
           (address.kind != AddressKind::Sms ||
            std::any_of(prefixes.begin(), prefixes.end(),
                        [&](const std::string& prefix) { return address.text.starts_with(prefix); }));
}

bool Signups::IsInvited(std::string_view text) const
{
    const std::vector<std::string> words = WordsOf(text);
    return m_invites.empty() || std::any_of(words.begin(), words.end(), [this](const std::string& word) {
               return m_invites.contains(m_keys.index.Hash("invite", word));
           });
}

SignupLimits Signups::LimitsOf(AddressKind kind) const
{
    SignupLimits limits = m_options.limits;
    const double drained =
        m_channels.PerSecond(NameOf(kind)) * static_cast<double>(std::chrono::seconds(kLongestDrain).count());
    limits.devicesOfKind = static_cast<std::int64_t>(std::floor(drained));
    if (kind == AddressKind::Sms) {
        limits.ofADomain = m_options.ofANumberRange;
    }
    return limits;
}

Signups::Outcome Signups::Count(Outcome outcome)
{
    ++m_figures[static_cast<std::size_t>(outcome)];
    return outcome;
}

// The calls of the store and of the channel are named variables before they are awaited: see docs/service.md.

boost::asio::awaitable<Signups::Outcome> Signups::SignUp(Form form, std::string network,
                                                         AttemptLimit::Time now)
{
    co_return Count(co_await SignUpForm(std::move(form), std::move(network), now));
}

boost::asio::awaitable<Signups::Outcome> Signups::Take(IncomingText text, Road road, AttemptLimit::Time now)
{
    co_return Count(co_await TakeWish(std::move(text), road, now));
}

boost::asio::awaitable<Signups::Outcome> Signups::SignUpForm(Form form, std::string network,
                                                             AttemptLimit::Time now)
{
    if (!Serves(AddressKind::Mail) && !Serves(AddressKind::Ntfy)) {
        co_return Outcome::NotOffered;
    }
    std::optional<Address> address = ParseAddress(form.address);
    if (!address) {
        co_return Outcome::NoAddress;
    }
    // A stranger could have texts sent to any number, at the operator's expense.
    if (address->kind == AddressKind::Sms) {
        co_return Outcome::PhoneNumber;
    }
    if (!Serves(address->kind)) {
        co_return Outcome::NotOffered;
    }
    if (!m_networks.TryConsume(network, now)) {
        co_return Outcome::TooMany;
    }
    if (!IsInvited(form.invite)) {
        co_return Outcome::NotInvited;
    }
    const Outcome outcome = co_await SignUpAddress(std::move(*address), Road::Form, now);
    if (outcome == Outcome::Failed) {
        m_networks.GiveBack(network);
    }
    co_return outcome;
}

boost::asio::awaitable<Signups::Outcome> Signups::TakeWish(IncomingText text, Road road,
                                                           AttemptLimit::Time now)
{
    const Wish wish = WishOf(text.subject, text.text);
    if (wish == Wish::Stop) {
        co_return co_await Stop(std::move(text.sender));
    }
    if (wish == Wish::None) {
        co_return Outcome::Nothing;
    }
    if (!IsServed(text.sender)) {
        co_return Outcome::NotOffered;
    }
    if (NeedsInvite()) {
        const std::string sender = AddressIndex(m_keys.index, text.sender);
        if (!m_uninvited.TryConsume(sender, now)) {
            co_return Outcome::TooMany;
        }
        if (!IsInvited(text.subject) && !IsInvited(text.text)) {
            co_return Outcome::NotInvited;
        }
        m_uninvited.GiveBack(sender);
    }
    co_return co_await SignUpAddress(std::move(text.sender), road, now);
}

boost::asio::awaitable<Signups::Outcome> Signups::SignUpAddress(Address address, Road road,
                                                                AttemptLimit::Time now)
{
    const std::string code = MakePersonalCode();
    const std::string codeHash = m_keys.lookup.Hash("personal code", *DigitsOfPersonalCode(code));
    auto store = [signup = SignupOf(m_keys, address, road, codeHash),
                  limits = LimitsOf(address.kind)](Store& rows) { return rows.SignUp(signup, limits); };
    SignupResult stored;
    try {
        stored = co_await m_store.Run(std::move(store));
    } catch (const StoreError& error) {
        m_report(error.what());
        co_return Outcome::Failed;
    }
    if (stored.exceeded != SignupResult::Limit::None) {
        ReportLimit(stored.exceeded, now);
        co_return stored.exceeded == SignupResult::Limit::Devices ? Outcome::Full : Outcome::TooMany;
    }
    // Send after the row is stored: the code in an arrived message is then known, and the row of a lost
    // message expires.
    std::string text = CodeMessage(address.kind, stored.device, code);
    const Handover handover = co_await Send(std::move(address), std::move(text));
    if (handover == Handover::RetryLater) {
        co_await Withdraw(codeHash);
        co_return Outcome::Failed;
    }
    // A refused address counts in the limits: its attempts cost as much as others.
    co_return handover == Handover::Refused ? Outcome::Refused : Outcome::Sent;
}

boost::asio::awaitable<Signups::Outcome> Signups::Stop(Address address)
{
    auto stop = [index = AddressIndex(m_keys.index, address)](Store& rows) { return rows.Stop(index); };
    bool hasStopped = false;
    try {
        hasStopped = co_await m_store.Run(std::move(stop));
    } catch (const StoreError& error) {
        m_report(error.what());
        co_return Outcome::Failed;
    }
    // Nothing is sent to an unknown address, so that two programs can't answer each other without end.
    if (hasStopped && m_channels.ForKind(NameOf(address.kind)) != nullptr) {
        std::string text = StopMessage();
        static_cast<void>(co_await Send(std::move(address), std::move(text)));
    }
    co_return hasStopped ? Outcome::Stopped : Outcome::Nothing;
}

// Report these limits: the sign-ups of many people are refused until the operator raises them.
void Signups::ReportLimit(SignupResult::Limit limit, AttemptLimit::Time now)
{
    const std::string_view report = ReportOf(limit);
    if (!report.empty() && m_limitReports.TryConsume(std::string(report), now)) {
        m_report(report);
    }
}

boost::asio::awaitable<Handover> Signups::Send(Address address, std::string text)
{
    if (++m_waiting > kMostWaiting) {
        --m_waiting;
        m_report("a message is not sent: too many wait for the channel");
        co_return Handover::RetryLater;
    }
    Channel& channel = *m_channels.ForKind(NameOf(address.kind));
    const OutgoingMessage message{.address = std::move(address.text),
                                  .subject = "Dusk Beacon: your personal code",
                                  .text = std::move(text),
                                  .id = "code-" + std::to_string(RandomBelow(1U << 31U)),
                                  .language = "en"};
    auto send = [&channel, &message]() -> boost::asio::awaitable<SendResult> {
        const Channel::Clock::time_point slot = channel.TakeSlot();
        if (slot > Channel::Clock::now() + kLongestWait) {
            co_return SendResult{Handover::RetryLater, "a message is not sent: its channel is busy"};
        }
        std::this_thread::sleep_until(slot);
        co_return channel.Send(message);
    };
    const SendResult result = co_await boost::asio::co_spawn(m_senders, send, boost::asio::use_awaitable);
    --m_waiting;
    if (!result.reason.empty()) {
        m_report(result.reason);
    }
    co_return result.handover;
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
        rows.DropOldIncoming();
        return true;
    };
    try {
        co_await m_store.Run(drop);
    } catch (const std::exception& error) {
        m_report(error.what());
    }
}

} // namespace beacond
