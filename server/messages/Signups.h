// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Answers.h"
#include "messages/IncomingText.h"
#include "messages/SignupOptions.h"
#include "support/AttemptLimit.h"
#include "support/Report.h"

#include <boost/asio/awaitable.hpp>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

class Channels;
class Key;
class StoreThread;
struct Keys;

/// The words of the form on the home page that ask for consent; stored with each sign-up.
inline constexpr std::string_view kConsentWords = "By sending it you agree that the address is kept, "
                                                  "encrypted, for these messages alone, until you ask for "
                                                  "its deletion.";
/// The same for a mail or a text message with the word "test".
inline constexpr std::string_view kTestConsentWords =
    "By sending it you agree that your address or number is kept, encrypted, for these messages alone, until "
    "you send the word STOP.";

/// The keyed hash by which the store finds the data of a mail address.
/// @param address a result of NormalisedMailAddress
[[nodiscard]] std::string MailAddressIndex(const Key& index, std::string_view address);

/// The roads by which sign-ups come in.
enum class Road { Form, Mail, Text, Hook };

/// "form", "mail", "text" or "hook": the name in the store and in the metrics.
[[nodiscard]] std::string_view NameOf(Road road);

/// Accepts sign-ups of devices: stores each one, and sends the ID and the personal code to its address. The
/// device is created when the code is confirmed. Thread-safe.
class Signups final
{
public:
    enum class Outcome {
        Sent,
        Stopped,      ///< the messages to the sender have ended
        Nothing,      ///< the text has no wish, or there is nothing to stop
        NotOffered,   ///< no channel for that kind of address, or a number outside the served prefixes
        NoAddress,    ///< the text is no address
        PhoneNumber,  ///< a phone number signs up with a text message of its own
        NotInvited,   ///< without an invite word
        TooMany,      ///< of this network in an hour; or of this address, its domain or in all in a day
        Full,         ///< the channel serves no further device; a known address gets its message by the form
        Unaffordable, ///< beyond the spending of the day
        Refused,      ///< by the channel, for good
        Failed,       ///< the store or the channel; can succeed later
        Busy,         ///< too many messages wait for the channel; can succeed later
        Uncertain     ///< the channel may have the message; counts in the limits
    };
    static constexpr std::array<std::string_view, 14> kOutcomeNames = {
        "sent",     "stopped", "nothing",      "not_offered", "no_address", "phone_number", "not_invited",
        "too_many", "full",    "unaffordable", "refused",     "failed",     "busy",         "uncertain"};
    /// Whether the same sign-up should be tried again. The limit of the address ends the repetitions of an
    /// uncertain one.
    [[nodiscard]] static bool CanBeRepeated(Outcome outcome)
    {
        return outcome == Outcome::Failed || outcome == Outcome::Busy || outcome == Outcome::Uncertain;
    }
    /// The number of each outcome since the start.
    using Figures = std::array<std::atomic<std::uint64_t>, kOutcomeNames.size()>;

    /// The fields of the form on the home page.
    struct Form
    {
        std::string address;
        std::string invite;
    };

    /// The devices of a channel can all ask for a text in one minute, which must be sent within this time.
    static constexpr std::chrono::minutes kLongestDrain{10};

    /// @param report receives the reason of each failure, for the log
    Signups(const Keys& keys, StoreThread& store, const Channels& channels, SignupOptions options,
            Report report);

    /// Whether sign-ups of that kind of address are accepted.
    [[nodiscard]] bool Serves(AddressKind kind) const;
    /// Whether sign-ups need an invite word.
    [[nodiscard]] bool NeedsInvite() const { return !m_invites.empty(); }

    /// Signs up the mail address or the topic of a form. Returns when the message has been handed over. The
    /// result does not reveal whether the address is known.
    /// @param network a result of NetworkOf
    [[nodiscard]] boost::asio::awaitable<Outcome> SignUp(Form form, std::string network,
                                                         AttemptLimit::Time now);
    /// Signs up the sender of a text, or ends the messages to it, by the wish of the text.
    /// @return neither NoAddress nor PhoneNumber
    [[nodiscard]] boost::asio::awaitable<Outcome> Take(IncomingText text, Road road, AttemptLimit::Time now);

    /// Drops the stored data of expired sign-ups, and deleted data from all files of the store. Reports a
    /// failure.
    [[nodiscard]] boost::asio::awaitable<void> DropOld();

    /// Waits until all messages under way have been handed over. No message is handed over afterwards.
    void Join() { m_answers.Join(); }

    [[nodiscard]] const Figures& Counts() const { return m_figures; }
    /// The messages that have not been handed over yet.
    [[nodiscard]] std::uint64_t AnswersWaiting() const { return m_answers.Waiting(); }

private:
    Outcome Count(Outcome outcome);
    [[nodiscard]] boost::asio::awaitable<Outcome> SignUpForm(Form form, std::string network,
                                                             AttemptLimit::Time now);
    [[nodiscard]] boost::asio::awaitable<Outcome> TakeWish(IncomingText text, Road road,
                                                           AttemptLimit::Time now);
    [[nodiscard]] boost::asio::awaitable<Outcome> SignUpAddress(Address address, Road road,
                                                                AttemptLimit::Time now);
    [[nodiscard]] boost::asio::awaitable<Outcome> SendCode(Address address, std::string text,
                                                           std::string codeHash);
    [[nodiscard]] boost::asio::awaitable<Outcome> Stop(Address address);
    [[nodiscard]] bool IsServed(const Address& address) const;
    [[nodiscard]] bool IsInvited(std::string_view text) const;
    [[nodiscard]] SignupLimits LimitsOf(AddressKind kind) const;
    void ReportLimit(SignupResult::Limit limit, AttemptLimit::Time now);
    [[nodiscard]] bool IsStopRead(AddressKind kind) const;
    /// Of a message; 0 without a channel.
    [[nodiscard]] std::int64_t PriceOf(AddressKind kind) const;
    /// Charges a message to the day; false beyond the limit.
    [[nodiscard]] bool TrySpend(Store& rows, std::int64_t price) const;
    /// Gives back the charge of a message that the provider does not have, and withdraws its sign-up unless
    /// the hash is empty.
    [[nodiscard]] boost::asio::awaitable<void> Undo(std::int64_t price, std::string codeHash);

    const Keys& m_keys;
    StoreThread& m_store;
    const Channels& m_channels;
    SignupOptions m_options;
    std::set<std::string> m_invites; ///< hashes, since a comparison of words reveals their beginnings
    Report m_report;
    Answers m_answers;
    AttemptLimit m_networks;
    /// The failed attempts of a mail domain or a range of numbers, which leave no row. Not those of the form,
    /// which anybody can make for another's domain.
    AttemptLimit m_failures;
    /// Attempts of one sender without a valid invite word.
    AttemptLimit m_uninvited{10, std::chrono::hours(1)};
    /// Suppresses repeated reports of a reached limit.
    AttemptLimit m_limitReports{1, std::chrono::hours(1)};
    Figures m_figures{};
};

} // namespace beacond
