// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Hook.h"
#include "support/AttemptLimit.h"
#include "support/Report.h"

#include <boost/asio/awaitable.hpp>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

class Signups;
class StoreThread;
struct Keys;

/// Takes sign-ups from providers of text messages. Thread-safe.
class Hooks final
{
public:
    enum class Result {
        Done,      ///< handled, now or before, or not for the service
        Unknown,   ///< no hook of that name
        Forged,    ///< without the proof of the secret
        Malformed, ///< a field is missing or unreadable
        Old,       ///< dated more than a day ago or a quarter of an hour ahead: perhaps a replay
        Later      ///< it failed, or is being handled: the provider should repeat it
    };
    static constexpr std::array<std::string_view, 6> kResultNames = {"done",      "unknown", "forged",
                                                                     "malformed", "old",     "later"};
    using Counts = std::array<std::atomic<std::uint64_t>, kResultNames.size()>;

    /// Throws HookError.
    Hooks(const Keys& keys, StoreThread& store, Signups& signups, const std::vector<HookOptions>& options,
          Report report);

    /// The header that proves the secret; empty for an unknown hook.
    [[nodiscard]] std::string_view ProofHeader(std::string_view name) const;
    /// Handles a message once, even if it is posted again.
    /// @param proof the value of the header ProofHeader
    [[nodiscard]] boost::asio::awaitable<Result> Post(std::string name, std::string proof, std::string body,
                                                      std::chrono::sys_seconds now,
                                                      AttemptLimit::Time elapsed);

    [[nodiscard]] const Counts& Figures() const { return m_counts; }

private:
    [[nodiscard]] boost::asio::awaitable<Result> Handle(const std::string& name, const std::string& proof,
                                                        const std::string& body, std::chrono::sys_seconds now,
                                                        AttemptLimit::Time elapsed);
    [[nodiscard]] boost::asio::awaitable<Result> TakeOnce(std::string id, HookMessage message,
                                                          AttemptLimit::Time elapsed);

    const Keys& m_keys;
    StoreThread& m_store;
    Signups& m_signups;
    Report m_report;
    std::map<std::string, Hook, std::less<>> m_hooks;
    Counts m_counts{};
};

} // namespace beacond
