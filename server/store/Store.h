// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// The store could not be opened, read or written; the text names the file or address and the reason.
class StoreError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Starts of the program, counted by day, country and distribution.
struct StartCount
{
    std::int32_t day = 0; ///< days since 1970-01-01, UTC
    std::string country;  ///< two letters, "ZZ" where it is not known
    std::string dist;     ///< a configured distribution, or "other"
    std::int64_t count = 0;

    bool operator==(const StartCount&) const = default;
};

/// A strip (announcement), with the places and days where it is shown.
struct Strip
{
    std::int64_t id = 0; ///< given by the store
    std::string html;
    std::string dist;    ///< empty for all
    std::string country; ///< two letters, empty for all
    std::string from;    ///< first day, "YYYY-MM-DD", empty for no limit
    std::string until;   ///< last day, likewise

    bool operator==(const Strip&) const = default;
};

/// A release of the program that is offered to older releases.
struct Release
{
    std::string name;     ///< the version's number, such as "1"
    std::string sequence; ///< such as "6"
    std::string url;      ///< of the page that offers the download

    bool operator==(const Release&) const = default;
};

/// A request for texts, with the code that will confirm it. Addresses are sealed or hashed, codes are hashed.
struct Signup
{
    std::string kind;          ///< "mail"
    std::string sealedAddress; ///< readable with the address key only
    std::string addressIndex;  ///< keyed hash of the normalised address
    std::string codeHash;      ///< keyed hash of the personal code
    std::int64_t lifetime = 0; ///< seconds until the code expires
    std::string consentSource; ///< the way of the consent, such as "form"
    std::string consentText;   ///< the words of the page
    std::string domainIndex{}; ///< keyed hash of a mail address's domain; empty for other kinds
    std::string limitIndex{};  ///< key for the limit of an address; empty for addressIndex
    std::string blockIndex{};  ///< keyed hash by which a blocked address is found; empty for none
};

/// Sign-ups of the last 24 hours beyond which a further one is refused.
struct SignupLimits
{
    std::int64_t ofAnAddress = 3;
    std::int64_t ofADomain = 500;
    std::int64_t inAll = 2'000;
    /// Confirmed devices of the sign-up's kind from which on only addresses with a device are accepted.
    std::int64_t devicesOfKind = std::numeric_limits<std::int64_t>::max();
};

/// The device of a sign-up, or the limit that refused it.
struct SignupResult
{
    enum class Limit { None, Address, Domain, InAll, Devices, Blocked, Spending };

    Limit exceeded = Limit::None;
    std::int64_t device = 0; ///< the number that the device has, or will have once it is confirmed
    bool isFull = false;     ///< a new address would be refused by Limit::Devices
};

/// The state of a message that came in by one of the roads for sign-ups.
enum class IncomingState {
    Begun,    ///< by this caller, which must handle it
    Busy,     ///< begun by another caller a short time ago
    Done,     ///< handled
    Abandoned ///< begun too often without an end, as if the message ended the service each time
};

/// The time for which a handled message stays Done.
enum class IncomingKept {
    ForDays, ///< three days at least
    Always   ///< a repetition can't be known by its age
};

enum class Confirmation { Confirmed, Unknown, Expired };

/// A text that waits to be sent; without the address and the wording.
struct OutboxRow
{
    std::int64_t id = 0;
    std::int64_t device = 0;
    int prayer = 0;    ///< 1 Fajr to 6 Isha; 0 for the last text of a device that another one replaces
    std::string time;  ///< local, "5:07"
    std::string place; ///< atlas_id

    bool operator==(const OutboxRow&) const = default;
};

/// Seconds from the queueing of a text until it is given up.
inline constexpr std::int64_t kTextLifetime = 600;
/// Seconds; beyond those of the slowest channel. A lease that seems longer is one of a wrong clock, and has
/// expired.
inline constexpr std::int64_t kLongestLease = 1200;

/// The terms on which texts are taken from the outbox.
struct LeaseTerms
{
    std::string kind;             ///< of the devices' addresses
    std::size_t most = 1;         ///< texts
    std::int64_t seconds = 60;    ///< until the lease expires
    std::int64_t price = 0;       ///< of a text
    std::int64_t spendPerDay = 0; ///< the limit for all messages of a day (UTC); 0 for none
};

/// A text that one sender may send until its lease expires.
struct LeasedText
{
    OutboxRow text;
    std::int64_t fence = 0; ///< of this lease; each further lease of the text has a greater one
    std::string sealedAddress;
    std::int64_t attempts = 0;
    std::int64_t queuedAt = 0;
    bool mayBeSent = false; ///< an earlier attempt has no known result
};

struct Lease
{
    std::vector<LeasedText> texts;
    std::int64_t dropped = 0;    ///< texts removed, since their devices have had the texts of a day
    bool isSpendReached = false; ///< further texts are due, but the limit of the day does not allow them
};

/// The result of an attempt to send a text.
enum class TextEnd {
    Sent,       ///< the provider has it
    RetryLater, ///< the provider does not have it
    Refused,    ///< the provider has rejected it for good
    Unknown,    ///< the provider may have it; another attempt may repeat it
    NotTried    ///< no attempt was made
};

/// The outbox as a whole.
struct OutboxState
{
    std::int64_t waiting = 0;   ///< texts without a lease
    std::int64_t leased = 0;    ///< texts with a lease that has not expired
    std::int64_t uncertain = 0; ///< texts of which an attempt has begun and no result is known
    std::int64_t oldestAge = 0; ///< seconds; 0 for an empty outbox
    std::int64_t spentToday = 0;
};

/// A text in the outbox with the state of its sending.
struct WaitingText
{
    OutboxRow text;
    std::string kind;
    std::int64_t age = 0; ///< seconds since the queueing
    std::int64_t attempts = 0;
    bool isLeased = false;
    std::int64_t dueIn = 0; ///< seconds until the next attempt, or until the lease expires
    bool mayBeSent = false; ///< see LeasedText
};

/// An address as the store has it.
struct StoredAddress
{
    std::string kind;
    std::string sealedAddress;
    std::string addressIndex;

    bool operator==(const StoredAddress&) const = default;
};

/// An address that can't sign up; the address itself is not stored.
struct BlockedAddress
{
    std::string blockIndex; ///< keyed hash
    std::string kind;
    std::int64_t since = 0; ///< set by the store

    bool operator==(const BlockedAddress&) const = default;
};

/// All rows about one address.
struct PersonalData
{
    struct Device
    {
        std::int64_t id = 0;
        std::string kind;
        std::string sealedAddress;
        std::int64_t consentAt = 0;
        std::string consentSource;
        std::string consentText;
    };
    struct LastText
    {
        int prayer = 0;
        std::int64_t queuedAt = 0;
    };
    struct PendingSignup
    {
        std::int64_t consentAt = 0;
        std::string consentSource;
        std::string consentText;
        std::string sealedAddress; ///< empty after the code has expired
        std::int64_t codeExpiresAt = 0;
        std::int64_t confirmedAt = 0; ///< 0 if it is not confirmed
    };

    std::optional<Device> device;
    std::vector<std::string> installations; ///< keyed hashes
    std::vector<LastText> lastTexts;
    std::vector<OutboxRow> waiting;
    std::vector<PendingSignup> signups; ///< of the last day
};

/// The service's mutable data. Each call is one transaction. Times are of the store's own clock, in seconds
/// since 1970. Calls throw StoreError on failure; const calls only read. Not thread-safe: StoreThread owns
/// it.
class Store
{
public:
    Store() = default;
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    virtual ~Store() = default;

    /// Adds to the earlier count of the same day, country and distribution.
    virtual void AddStarts(const std::vector<StartCount>& counts) = 0;
    [[nodiscard]] virtual std::vector<StartCount> Starts() const = 0;

    /// Returns the identifier of the new strip; the identifier in @p strip is ignored.
    virtual std::int64_t AddStrip(const Strip& strip) = 0;
    /// False if there is no such strip.
    virtual bool RemoveStrip(std::int64_t id) = 0;
    /// In ascending order of the identifiers.
    [[nodiscard]] virtual std::vector<Strip> Strips() const = 0;

    virtual void AddRelease(const Release& release) = 0;
    /// Removes all releases of that version; false if there is none.
    virtual bool RemoveRelease(std::string_view name, std::string_view sequence) = 0;
    /// In the order in which they were added.
    [[nodiscard]] virtual std::vector<Release> Releases() const = 0;

    /// Stores a sign-up until its code is confirmed or expires. Nothing else changes: neither a confirmed
    /// device of that address nor an earlier sign-up whose code is still valid.
    [[nodiscard]] virtual SignupResult SignUp(const Signup& signup, const SignupLimits& limits) = 0;
    /// Drops a sign-up whose message could not be handed over, so that it does not count in the limits. Keeps
    /// a confirmed sign-up.
    virtual void Withdraw(std::string_view codeHash) = 0;
    /// Creates or renews the device of the code and binds @p installation to it, in place of its earlier
    /// device. For 24 hours the same code confirms the same installation again, so that a lost reply does no
    /// harm; other installations are refused once the code has been used. A device without installations
    /// could get no text any more: it gets a last one, of prayer 0, in place of those that wait, and is
    /// deleted when that one leaves the outbox, unless it has been registered again.
    /// @param installation keyed hash of the installation identifier
    [[nodiscard]] virtual Confirmation Confirm(std::string_view codeHash, std::string_view installation) = 0;
    /// Drops the addresses of sign-ups whose code has expired, and whole sign-ups after a day. Also drops
    /// sign-ups dated more than a day ahead: the clock was wrong.
    virtual void DropOldSignups() = 0;
    /// Deletes the device of an address with its dependent rows, and the sign-ups of the address. False if
    /// there are none.
    virtual bool Forget(std::string_view addressIndex) = 0;

    /// Begins to handle an incoming message, unless it has been handled or begun three times. The caller
    /// calls EndIncoming or ReturnIncoming; without either of them another caller can begin it again.
    /// @param message identifies the message without revealing it
    /// @param lease seconds for which it stays Busy for others; 0 if there are no others
    [[nodiscard]] virtual IncomingState BeginIncoming(std::string_view message, std::int64_t lease) = 0;
    /// The message is Done from now on.
    virtual void EndIncoming(std::string_view message, IncomingKept kept) = 0;
    /// Undoes a BeginIncoming after a failure that has nothing to do with the message.
    virtual void ReturnIncoming(std::string_view message) = 0;
    /// Drops the incoming messages that were begun first more than three days ago, and those dated more than
    /// a day ahead: the clock was wrong. Keeps those that ended as IncomingKept::Always.
    virtual void DropOldIncoming() = 0;
    /// Ends the messages to an address on its own request: deletes its device with the dependent rows, and
    /// the addresses, codes and consents of its sign-ups. Keeps their hashes for the limits of a day:
    /// otherwise each such request would allow further sign-ups. False if there was neither a device nor a
    /// valid code.
    virtual bool Stop(std::string_view addressIndex) = 0;

    // Personal data.

    /// Reads all rows about an address; empty lists and no device if there are none.
    [[nodiscard]] virtual PersonalData DataOf(std::string_view addressIndex) const = 0;
    /// Deletes the device of an address and its sign-ups, as Forget does, and refuses later sign-ups with
    /// that block index. False if the address is already blocked.
    virtual bool Block(const BlockedAddress& blocked, std::string_view addressIndex) = 0;
    /// False if the address is not blocked.
    virtual bool Unblock(std::string_view blockIndex) = 0;
    /// Oldest first.
    [[nodiscard]] virtual std::vector<BlockedAddress> BlockedAddresses() const = 0;
    /// Deletes the devices without a queued text and without a new consent for 365 days. So that a wrong
    /// clock deletes nothing, such a device must have been found silent on at least seven days, by calls
    /// while the clock did not go back. Call it several times a day.
    /// @return the number of deleted devices
    virtual std::int64_t DropSilentDevices() = 0;
    /// Replaces each sealed address and its index by the result of @p replace, and records the keys as those
    /// that the store is written with: all in one transaction. The hashes of addresses that can't be read any
    /// more are removed. Afterwards the former values are in none of the store's files.
    /// @param keyChecks the new hash of each replaced key, by its name
    virtual void ReplaceAddresses(const std::function<StoredAddress(const StoredAddress& stored)>& replace,
                                  const std::map<std::string, std::string>& keyChecks) = 0;
    /// Removes deleted values from all files of the store: a log may still have them. Does so at once, or at
    /// the next End. Without effect while another process reads or writes.
    virtual void ClearDeleted() = 0;
    /// The recorded hash of a key; empty for none.
    [[nodiscard]] virtual std::string KeyCheck(std::string_view keyName) const = 0;

    /// Whether QueueText would queue a text. Needs no write lock.
    [[nodiscard]] virtual bool IsTextDue(std::string_view installation, int prayer) const = 0;
    /// Puts a text into the outbox if @p installation has a confirmed device whose last text for that prayer
    /// is more than six hours old; false if it does not. Ignores a text dated more than six hours ahead: the
    /// clock was wrong.
    virtual bool QueueText(std::string_view installation, int prayer, std::string_view time,
                           std::string_view place) = 0;
    /// Oldest first, at most @p most.
    [[nodiscard]] virtual std::vector<OutboxRow> Outbox(std::size_t most) const = 0;

    // The sending of texts. Several senders may use one store.

    /// Whether LeaseTexts might find a text. Needs no write lock.
    [[nodiscard]] virtual bool IsTextWaiting(std::string_view kind) const = 0;
    /// Takes due texts until the lease expires: those without an attempt first, then in the order in which
    /// they became due. No other call returns them before. Texts older than kTextLifetime are not due. Each
    /// text is charged to the day, once for each attempt that the provider may have taken; texts that the
    /// limit of the day does not allow stay in the outbox. A device has six texts in 23 hours: a further one
    /// is removed.
    [[nodiscard]] virtual Lease LeaseTexts(const LeaseTerms& terms) = 0;
    /// Records that the text is handed to the provider from now on. False, without a change, if the lease has
    /// expired, or if the text is gone: it must not be sent then.
    [[nodiscard]] virtual bool BeginSending(std::int64_t text, std::int64_t fence) = 0;
    /// Records the result, and ends the lease: removes the text if it was sent or refused; otherwise it is
    /// due again in @p retryAfter seconds, or at once if it was not tried. A text that the provider does not
    /// have is not charged. False, without a change, if the text has a newer lease or is gone. A late result
    /// is accepted as long as there is no newer lease, since it saves a repetition.
    virtual bool EndSending(std::int64_t text, std::int64_t fence, TextEnd end, std::int64_t retryAfter) = 0;
    /// Removes the texts that are kTextLifetime old, and those dated more than a minute ahead since the clock
    /// was set back between two runs; except leased ones. Returns their number.
    virtual std::int64_t DropOldTexts() = 0;
    [[nodiscard]] virtual OutboxState StateOfOutbox() const = 0;
    /// Oldest first, at most @p most.
    [[nodiscard]] virtual std::vector<WaitingText> WaitingTexts(std::size_t most) const = 0;
    /// Charges a message that is not in the outbox to the day. False, without a change, beyond the limit.
    /// @param perDay as LeaseTerms::spendPerDay
    [[nodiscard]] virtual bool TrySpend(std::int64_t amount, std::int64_t perDay) = 0;
    /// Takes the charge of a message that its provider does not have from the day.
    virtual void GiveBackSpend(std::int64_t amount) = 0;

    /// Whether the store was written with that key; the first key of each name is recorded.
    /// @param check identifies the key without revealing it
    [[nodiscard]] virtual bool IsWrittenWith(std::string_view keyName, std::string_view check) = 0;

    /// Returns a different number after another process has changed the store. Throws StoreError, as Begin
    /// does, if the file at the store's path has been replaced since the start.
    [[nodiscard]] virtual std::int64_t DataVersion() const = 0;

    /// Makes a write without a change. Throws StoreError if the store can't be written.
    virtual void TryToWrite() = 0;

    /// Runs the calls until End as one transaction, which is on the disk when End returns: many callers share
    /// one sync.
    virtual void Begin() = 0;
    virtual void End() = 0;
    /// After an error within a transaction: undoes all calls since Begin.
    virtual void Abandon() noexcept = 0;
};

} // namespace beacond
