// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "support/AttemptLimit.h"
#include "support/Report.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

namespace beacond {

class Places;
class Query;
class StoreThread;
enum class Confirmation;
struct Keys;

/// Counters of the scripts that deal with texts, for the metrics.
struct MessageFigures
{
    std::atomic<std::uint64_t> textsQueued{0};
    std::atomic<std::uint64_t> textsMissed{0}; ///< asked for, but not queued because the store failed
    std::atomic<std::uint64_t> codesConfirmed{0};
    std::atomic<std::uint64_t> codesWrong{0};
    std::atomic<std::uint64_t> codesExpired{0};
    std::atomic<std::uint64_t> codesLimited{0}; ///< not looked up: too many wrong ones from that network
};

/// The reply to a confirmation that is refused before it is read. The program shows its text; for a reply
/// that is not XML it would say that there is no Internet.
[[nodiscard]] Response RefusedConfirmation();

/// The scripts that need the store: the prayer call and the confirmation of a sign-up. Thread-safe.
class MessageScripts final
{
public:
    /// @param report takes the reason of each failure, for the log, and the alarm about wrong codes
    /// @param wrongCodesAlarm report when more wrong codes than this arrive from all clients within an hour,
    ///   at most once an hour
    MessageScripts(const Keys& keys, StoreThread& store, Report report, int wrongCodesAlarm);

    /// Puts a text into the outbox if the call asks for one; returns when it is on the disk, not when it is
    /// sent.
    /// @param places may be null while none are loaded
    [[nodiscard]] boost::asio::awaitable<Response> PrayerCall(const Query& query, const Places* places);
    /// Binds the installation to the device of a personal code.
    [[nodiscard]] boost::asio::awaitable<Response> ConfirmSignup(const Query& query, const Request& request,
                                                                 AttemptLimit::Time now);

    [[nodiscard]] const MessageFigures& Figures() const { return m_figures; }

private:
    void Count(Confirmation confirmation, AttemptLimit::Time now);
    [[nodiscard]] std::string HashOfInstallation(std::string_view identifier) const;

    const Keys& m_keys;
    StoreThread& m_store;
    Report m_report;
    MessageFigures m_figures;
    AttemptLimit m_wrongCodes;
    int m_wrongCodesAlarm;
    AttemptLimit m_wrongCodesOfAll;
    AttemptLimit m_alarms{1, std::chrono::hours(1)};
};

} // namespace beacond
