// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"
#include "support/AttemptLimit.h"
#include "support/Report.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/thread_pool.hpp>

#include <chrono>
#include <string>
#include <string_view>

namespace beacond {

class Channel;
class Key;
class StoreThread;
struct Keys;

/// The words of the form on the home page that ask for consent; stored with each sign-up.
inline constexpr std::string_view kConsentWords = "By sending it you agree that the address is kept, "
                                                  "encrypted, for these messages alone, until you ask for "
                                                  "its deletion.";

/// The keyed hash by which the store finds the data of a mail address.
/// @param address a result of NormalisedMailAddress
[[nodiscard]] std::string MailAddressIndex(const Key& index, std::string_view address);

/// Accepts sign-ups of devices: stores each one, and sends the ID and the personal code to its address. The
/// device is created when the code is confirmed. Thread-safe.
class Signups final
{
public:
    enum class Outcome {
        Sent,
        NotOffered, ///< no channel is configured
        NoAddress,  ///< the text is no mail address
        TooMany,    ///< of this network in an hour; or of this address, its domain or in all in a day
        Failed      ///< the store or the channel
    };

    /// @param channel of mail addresses; null if none is configured
    /// @param mostOfANetwork sign-ups from one network within an hour
    /// @param report receives the reason of each failure, for the log
    Signups(const Keys& keys, StoreThread& store, Channel* channel, SignupLimits limits, int mostOfANetwork,
            Report report);

    [[nodiscard]] bool IsOffered() const { return m_channel != nullptr; }

    /// Signs up a mail address. Returns when the message has been handed over. The result does not reveal
    /// whether the address is known.
    /// @param network a result of NetworkOf
    [[nodiscard]] boost::asio::awaitable<Outcome> SignUp(std::string typedAddress, std::string network,
                                                         AttemptLimit::Time now);

    /// Drops the stored data of expired sign-ups. Reports a failure.
    [[nodiscard]] boost::asio::awaitable<void> DropOld();

    /// Waits until all messages under way have been handed over. No message is handed over afterwards.
    void Join() { m_sender.join(); }

private:
    void ReportLimit(SignupResult::Limit limit, AttemptLimit::Time now);
    /// On failure reports it and returns false.
    [[nodiscard]] boost::asio::awaitable<bool> Send(const std::string& address, const std::string& text);
    [[nodiscard]] boost::asio::awaitable<void> Withdraw(std::string codeHash);

    const Keys& m_keys;
    StoreThread& m_store;
    Channel* m_channel;
    SignupLimits m_limits;
    Report m_report;
    AttemptLimit m_networks;
    /// Suppresses repeated reports of a reached limit.
    AttemptLimit m_limitReports{1, std::chrono::hours(1)};
    /// A thread for handing messages over, since that waits for the disk.
    boost::asio::thread_pool m_sender{1};
};

} // namespace beacond
