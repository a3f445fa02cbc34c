// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/ChannelOptions.h"

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>

namespace beacond {

/// A channel can't be used; the text gives the reason.
class ChannelError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A message to one address.
struct OutgoingMessage
{
    std::string address; ///< normalised, of the channel's kind
    std::string subject; ///< UTF-8; channels without subjects ignore it
    std::string text;    ///< UTF-8, lines separated by "\n"
    std::string id;      ///< [a-z0-9-]; the same for each attempt, so that a receiver can detect a repetition
    std::string language; ///< such as "en"; selects a channel's template
};

enum class Handover {
    Accepted,   ///< the provider has confirmed it
    RetryLater, ///< the provider does not have it; a later attempt may succeed
    Refused,    ///< the provider does not have it, and a later attempt would fail too
    Unknown     ///< the provider may have it: the confirmation is missing
};

struct SendResult
{
    Handover handover = Handover::RetryLater;
    std::string reason{}; ///< for the log, without address and text; can be a warning for an accepted message
};

/// A way to send messages to one kind of address.
class Channel
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Channel(const ChannelOptions& options);
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    virtual ~Channel() = default;

    [[nodiscard]] const std::string& Name() const { return m_name; }
    /// "mail", "sms" or "ntfy".
    [[nodiscard]] const std::string& Kind() const { return m_kind; }
    [[nodiscard]] double PerSecond() const { return m_perSecond; }
    /// The number of messages that may be sent at the same time.
    [[nodiscard]] int Connections() const { return m_connections; }
    /// Of one message, in the unit of messages.spend_per_day.
    [[nodiscard]] std::int64_t Price() const { return m_price; }
    /// The longest duration of Send.
    [[nodiscard]] std::chrono::seconds Timeout() const { return m_timeout; }

    /// The senders of a channel: texts of the outbox, and answers to sign-ups.
    enum class Use { Text, Answer };
    /// The time, within 100 ms, from which on the caller may send one message, so that all callers together
    /// keep to PerSecond. Nothing if there is no such time yet: ask again within 50 ms. While both uses ask,
    /// each gets every second time. Thread-safe.
    [[nodiscard]] std::optional<Clock::time_point> TakeSlot(Use use);
    /// Returns when the provider has answered, or at the timeout. Blocks: not for a thread that serves
    /// requests. Does not throw. Thread-safe.
    [[nodiscard]] SendResult Send(const OutgoingMessage& message) noexcept;
    /// The messages in a row that the provider did not confirm; 0 after a confirmed one. Of the refused ones
    /// each address counts once, since the address may be the reason. Thread-safe.
    [[nodiscard]] std::int64_t FailuresInARow() const;
    /// Ends the messages under way within about a second, as if at the timeout; later ones end at once.
    void Abort() { m_isAborted = true; }

protected:
    /// May throw any std::exception: the message counts as not sent.
    [[nodiscard]] virtual SendResult SendNow(const OutgoingMessage& message) = 0;
    [[nodiscard]] const std::atomic<bool>& IsAborted() const { return m_isAborted; }

private:
    const std::string m_name;
    const std::string m_kind;
    const double m_perSecond;
    const int m_connections;
    const std::int64_t m_price;
    const std::chrono::seconds m_timeout;
    [[nodiscard]] SendResult TrySend(const OutgoingMessage& message) noexcept;
    void Count(Handover handover, const std::string& address);

    std::atomic<bool> m_isAborted{false};
    mutable std::mutex m_mutex;
    std::int64_t m_failuresInARow = 0;
    std::set<std::size_t> m_refusedInARow; ///< hashes of addresses
    Clock::time_point m_nextSlot;
    Use m_lastUse = Use::Text;                    ///< of a slot
    std::array<Clock::time_point, 2> m_waiting{}; ///< the last vain request of each use
};

} // namespace beacond
