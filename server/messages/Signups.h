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

class Key;
class Spool;
class StoreThread;
struct Keys;

/// The words by which the form of the home page asks for consent. They are stored with each sign-up.
inline constexpr std::string_view kConsentWords = "By sending it you agree that the address is kept, "
                                                  "encrypted, for these messages alone, until you ask for "
                                                  "its deletion.";

/// The keyed hash by which the store finds what it keeps of a mail address.
/// @param address as of NormalisedMailAddress
[[nodiscard]] std::string MailAddressIndex(const Key& index, std::string_view address);

/// Takes sign-ups of devices: stores each, and sends it its ID and its personal code. A device is made when
/// the code is confirmed. Thread-safe.
class Signups final
{
public:
    enum class Outcome {
        Sent,
        NotOffered, ///< no channel is configured
        NoAddress,  ///< the text is no mail address
        TooMany,    ///< from this network, or of this day: for this address, its domain, or in all
        Failed      ///< the store or the channel
    };

    /// @param spool null where no channel is configured
    /// @param mostOfANetwork sign-ups from one network within an hour
    /// @param report takes the reason of each failure, for the log
    Signups(const Keys& keys, StoreThread& store, const Spool* spool, SignupLimits limits, int mostOfANetwork,
            Report report);

    [[nodiscard]] bool IsOffered() const { return m_spool != nullptr; }

    /// Signs a mail address up. Answers when the message is handed over. The result does not reveal whether
    /// the address is known.
    /// @param network as of NetworkOf
    [[nodiscard]] boost::asio::awaitable<Outcome> SignUp(std::string typedAddress, std::string network,
                                                         AttemptLimit::Time now);

    /// Drops what is kept of sign-ups that were not confirmed in time. A failure is reported.
    [[nodiscard]] boost::asio::awaitable<void> DropOld();

    /// Waits for the messages that are being handed over. Afterwards none is.
    void Join() { m_sender.join(); }

private:
    void ReportLimit(SignupResult::Limit limit, AttemptLimit::Time now);
    /// False after a failure, which is reported.
    [[nodiscard]] boost::asio::awaitable<bool> Send(const std::string& address, const std::string& text);
    [[nodiscard]] boost::asio::awaitable<void> Withdraw(std::string codeHash);

    const Keys& m_keys;
    StoreThread& m_store;
    const Spool* m_spool;
    SignupLimits m_limits;
    Report m_report;
    AttemptLimit m_networks;
    /// Reports of a limit that is reached.
    AttemptLimit m_limitReports{1, std::chrono::hours(1)};
    /// Hands messages over, which waits for the disk.
    boost::asio::thread_pool m_sender{1};
};

} // namespace beacond
