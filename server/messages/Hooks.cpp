// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Hooks.h"

#include "messages/Signups.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"

#include <utility>

namespace beacond {

namespace {

using namespace std::chrono_literals;

// Longer than a message takes: its channel begins within three seconds and gives up after a minute at most.
constexpr std::int64_t kLease = 90;
// Providers repeat a message for some hours. The store knows a handled one for three days.
constexpr auto kOldest = 24h;
// The clocks of providers and of the service differ.
constexpr auto kMostAhead = 15min;

} // namespace

Hooks::Hooks(const Keys& keys, StoreThread& store, Signups& signups, const std::vector<HookOptions>& options,
             Report report)
    : m_keys(keys)
    , m_store(store)
    , m_signups(signups)
    , m_report(std::move(report))
{
    for (const HookOptions& hook : options) {
        m_hooks.emplace(hook.name, Hook(hook));
    }
}

std::string_view Hooks::ProofHeader(std::string_view name) const
{
    const auto hook = m_hooks.find(name);
    return hook == m_hooks.end() ? std::string_view() : std::string_view(hook->second.Options().header);
}

boost::asio::awaitable<Hooks::Result> Hooks::Post(std::string name, std::string proof, std::string body,
                                                  std::chrono::sys_seconds now, AttemptLimit::Time elapsed)
{
    const Result result = co_await Handle(name, proof, body, now, elapsed);
    ++m_counts[static_cast<std::size_t>(result)];
    co_return result;
}

boost::asio::awaitable<Hooks::Result> Hooks::Handle(const std::string& name, const std::string& proof,
                                                    const std::string& body, std::chrono::sys_seconds now,
                                                    AttemptLimit::Time elapsed)
{
    const auto hook = m_hooks.find(name);
    if (hook == m_hooks.end()) {
        co_return Result::Unknown;
    }
    if (!hook->second.IsGenuine(proof, body)) {
        co_return Result::Forged;
    }
    std::optional<HookMessage> message = hook->second.Read(body);
    if (!message) {
        co_return Result::Malformed;
    }
    if (message->time && (*message->time < now - kOldest || *message->time > now + kMostAhead)) {
        co_return Result::Old;
    }
    if (!message->text) {
        co_return Result::Done;
    }
    std::string id = m_keys.lookup.Hash("incoming", "hook " + name + ' ' + message->id);
    co_return co_await TakeOnce(std::move(id), std::move(*message), elapsed);
}

// The calls of the store are named variables before they are awaited: see docs/service.md.
boost::asio::awaitable<Hooks::Result> Hooks::TakeOnce(std::string id, HookMessage message,
                                                      AttemptLimit::Time elapsed)
{
    // Without a time a replay can be of any age.
    const IncomingKept kept = message.time ? IncomingKept::ForDays : IncomingKept::Always;
    auto begin = [id](Store& rows) { return rows.BeginIncoming(id, kLease); };
    auto end = [id, kept](Store& rows) {
        rows.EndIncoming(id, kept);
        return true;
    };
    auto giveBack = [id](Store& rows) {
        rows.ReturnIncoming(id);
        return true;
    };
    Result result = Result::Later;
    try {
        const IncomingState state = co_await m_store.Run(std::move(begin));
        if (state == IncomingState::Done || state == IncomingState::Abandoned) {
            co_return Result::Done;
        }
        if (state == IncomingState::Busy) {
            co_return Result::Later;
        }
        const Signups::Outcome outcome =
            co_await m_signups.Take(std::move(*message.text), Road::Hook, elapsed);
        if (Signups::CanBeRepeated(outcome)) {
            co_await m_store.Run(std::move(giveBack));
        } else {
            result = Result::Done;
            co_await m_store.Run(std::move(end));
        }
    } catch (const StoreError& error) {
        m_report(error.what());
    }
    co_return result;
}

} // namespace beacond
