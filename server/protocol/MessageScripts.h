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
struct Keys;

/// What the scripts that deal with texts have done, for the metrics.
struct MessageFigures
{
    std::atomic<std::uint64_t> textsQueued{0};
    std::atomic<std::uint64_t> textsMissed{0}; ///< wanted, and not queued since the store failed
    std::atomic<std::uint64_t> codesConfirmed{0};
    std::atomic<std::uint64_t> codesRefused{0};
};

/// The scripts that need the store: the prayer call and the confirmation of a sign-up. Thread-safe.
class MessageScripts final
{
public:
    /// @param report takes the reason of each failure, for the log
    MessageScripts(const Keys& keys, StoreThread& store, Report report);

    /// Puts a text into the outbox where the call wants one; returns when it is on the disk, long before it
    /// is sent.
    /// @param places may be null while none are loaded
    [[nodiscard]] boost::asio::awaitable<Response> PrayerCall(const Query& query, const Places* places);
    /// Binds the installation to the device of a personal code.
    [[nodiscard]] boost::asio::awaitable<Response> ConfirmSignup(const Query& query, const Request& request,
                                                                 std::chrono::sys_seconds now);

    [[nodiscard]] const MessageFigures& Figures() const { return m_figures; }

private:
    [[nodiscard]] std::string HashOfInstallation(std::string_view identifier) const;

    const Keys& m_keys;
    StoreThread& m_store;
    Report m_report;
    MessageFigures m_figures;
    AttemptLimit m_wrongCodes;
};

} // namespace beacond
