// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The calls of sign-ups to the store.
#include "messages/Channels.h"
#include "messages/PersonalCode.h"
#include "messages/SignupRow.h"
#include "messages/SignupTexts.h"
#include "messages/Signups.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"

namespace beacond {

namespace {

std::string_view ReportOf(SignupResult::Limit limit)
{
    switch (limit) {
    case SignupResult::Limit::Domain:
        return "sign-ups are refused: the limit of a domain is reached";
    case SignupResult::Limit::InAll:
        return "sign-ups are refused: the limit of a day is reached";
    case SignupResult::Limit::Spending:
        return "sign-ups are refused: the spending of a day is reached";
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

Signups::Outcome OutcomeOf(SignupResult::Limit limit)
{
    switch (limit) {
    case SignupResult::Limit::Devices:
        return Signups::Outcome::Full;
    case SignupResult::Limit::Spending:
        return Signups::Outcome::Unaffordable;
    default:
        return Signups::Outcome::TooMany;
    }
}

} // namespace

// The calls of the store and of the channel are named variables before they are awaited: see docs/service.md.

boost::asio::awaitable<Signups::Outcome> Signups::SignUpAddress(Address address, Road road,
                                                                AttemptLimit::Time now)
{
    const std::string code = MakePersonalCode();
    const std::string codeHash = m_keys.lookup.Hash("personal code", *DigitsOfPersonalCode(code));
    auto store = [this, signup = SignupOf(m_keys, address, road, codeHash), limits = LimitsOf(address.kind),
                  price = PriceOf(address.kind)](Store& rows) {
        SignupResult result = rows.SignUp(signup, limits);
        if (result.exceeded == SignupResult::Limit::None && !TrySpend(rows, price)) {
            rows.Withdraw(signup.codeHash);
            result.exceeded = SignupResult::Limit::Spending;
        }
        return result;
    };
    SignupResult stored;
    try {
        stored = co_await m_store.Run(std::move(store));
    } catch (const StoreError& error) {
        m_report(error.what());
        co_return Outcome::Failed;
    }
    if (stored.exceeded != SignupResult::Limit::None) {
        ReportLimit(stored.exceeded, now);
        co_return OutcomeOf(stored.exceeded);
    }
    std::string text = CodeMessage(address.kind, stored.device, code, IsStopRead(address.kind));
    const Outcome outcome = co_await SendCode(std::move(address), std::move(text), codeHash);
    // The page must not reveal which addresses have a device.
    co_return stored.isFull&& road == Road::Form ? Outcome::Full : outcome;
}

boost::asio::awaitable<Signups::Outcome> Signups::SendCode(Address address, std::string text,
                                                           std::string codeHash)
{
    // Send after the row is stored: the code in an arrived message is then known, and the row of a lost
    // message expires.
    const AddressKind kind = address.kind;
    const auto [handover, isBusy] = co_await m_answers.Send(std::move(address), std::move(text));
    if (handover == Handover::RetryLater) {
        co_await Undo(PriceOf(kind), codeHash);
        co_return isBusy ? Outcome::Busy : Outcome::Failed;
    }
    if (handover == Handover::Refused) {
        // A refused address counts in the limits: its attempts cost as much work as others.
        co_await Undo(PriceOf(kind), {});
        co_return Outcome::Refused;
    }
    // Its row stays, since the code may arrive: a repetition counts in the limits.
    co_return handover == Handover::Unknown ? Outcome::Uncertain : Outcome::Sent;
}

boost::asio::awaitable<Signups::Outcome> Signups::Stop(Address address)
{
    // Nothing is sent to an unknown address, so that two programs can't answer each other without end.
    struct End
    {
        bool hadAny;
        bool isAnswered;
    };
    auto stop = [this, index = AddressIndex(m_keys.index, address), kind = address.kind](Store& rows) {
        const bool hadAny = rows.Stop(index);
        const bool hasChannel = m_channels.ForKind(NameOf(kind)) != nullptr;
        return End{hadAny, hadAny && hasChannel && TrySpend(rows, PriceOf(kind))};
    };
    End end{};
    try {
        end = co_await m_store.Run(std::move(stop));
    } catch (const StoreError& error) {
        m_report(error.what());
        co_return Outcome::Failed;
    }
    if (end.isAnswered) {
        const std::int64_t price = PriceOf(address.kind);
        std::string text = StopMessage();
        const Answers::Result result = co_await m_answers.Send(std::move(address), std::move(text));
        const Handover handover = result.handover;
        if (handover == Handover::RetryLater || handover == Handover::Refused) {
            co_await Undo(price, {});
        }
    }
    co_return end.hadAny ? Outcome::Stopped : Outcome::Nothing;
}

bool Signups::IsStopRead(AddressKind kind) const
{
    return (kind == AddressKind::Mail && m_options.isStopReadFromMail) ||
           (kind == AddressKind::Sms && m_options.isStopReadFromText);
}

std::int64_t Signups::PriceOf(AddressKind kind) const
{
    const Channel* const channel = m_channels.ForKind(NameOf(kind));
    return channel == nullptr ? 0 : channel->Price();
}

bool Signups::TrySpend(Store& rows, std::int64_t price) const
{
    return price == 0 || rows.TrySpend(price, m_options.spendPerDay);
}

// Report these limits: the sign-ups of many people are refused until the operator raises them.
void Signups::ReportLimit(SignupResult::Limit limit, AttemptLimit::Time now)
{
    const std::string_view report = ReportOf(limit);
    if (!report.empty() && m_limitReports.TryConsume(std::string(report), now)) {
        m_report(report);
    }
}

boost::asio::awaitable<void> Signups::Undo(std::int64_t price, std::string codeHash)
{
    auto undo = [price, codeHash = std::move(codeHash)](Store& rows) {
        if (!codeHash.empty()) {
            rows.Withdraw(codeHash);
        }
        if (price > 0) {
            rows.GiveBackSpend(price);
        }
        return true;
    };
    try {
        co_await m_store.Run(std::move(undo));
    } catch (const StoreError& error) {
        m_report(error.what());
    }
}

boost::asio::awaitable<void> Signups::DropOld()
{
    auto drop = [](Store& rows) {
        rows.DropOldSignups();
        rows.DropOldIncoming();
        rows.ClearDeleted();
        return true;
    };
    try {
        co_await m_store.Run(drop);
    } catch (const std::exception& error) {
        m_report(error.what());
    }
}

} // namespace beacond
