// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Signups.h"

#include "messages/Channels.h"
#include "messages/SignupRow.h"
#include "secrets/Keys.h"
#include "support/Ascii.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace beacond {

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
    , m_answers(channels, m_report)
    , m_networks(static_cast<int>(m_options.ofANetwork), std::chrono::hours(1))
    , m_failures(static_cast<int>(m_options.limits.ofADomain), std::chrono::hours(1))
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
    const std::string group = GroupIndexOf(m_keys.index, text.sender);
    if (!m_failures.TryConsume(group, now)) {
        co_return Outcome::Failed;
    }
    const Outcome outcome = co_await SignUpAddress(std::move(text.sender), road, now);
    if (outcome != Outcome::Failed) {
        m_failures.GiveBack(group);
    }
    co_return outcome;
}

} // namespace beacond
