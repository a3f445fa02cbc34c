// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "support/TokenBuckets.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace beacond {

class Key;

/// The kinds of requests that can be refused, in the order in which they are refused under load. All other
/// requests, such as prayer calls, are never refused.
enum class RequestKind { Search, Page, Identifier, Confirmation, Strip, Version };

inline constexpr std::array<std::string_view, 6> kRequestKindNames = {"search",       "page",  "identifier",
                                                                      "confirmation", "strip", "version"};

/// The values of the configuration's table "limits".
struct LimitOptions
{
    std::int64_t networkPerMinute = 12'000; ///< of one IPv4 address or IPv6 /64, which a town may share
    std::int64_t networkBurst = 20'000;
    std::int64_t installationPerMinute = 60;
    std::int64_t installationBurst = 60;
    /// Searches are refused from this delay of a thread on, pages from twice, the rest from four times this
    /// delay.
    std::chrono::milliseconds overload{250};
};

/// Refused requests, by their kind.
struct LimitFigures
{
    using Counts = std::array<std::atomic<std::uint64_t>, kRequestKindNames.size()>;
    Counts byInstallation{};
    Counts byNetwork{};
    Counts byLoad{};
};

struct Refusal
{
    bool isByLoad = false; ///< otherwise the client has exceeded its rate limit
    std::chrono::seconds retryAfter{};
};

/// The reply for requests without a special refusal: plain text, which the program reads as a failure.
[[nodiscard]] Response RefusalReply(const Refusal& refusal);

/// Decides which requests are refused: the requests of a network or an installation that exceeds its rate
/// limit, and under load the least important ones first. Thread-safe.
class RequestLimits final
{
public:
    /// @param identifierKey verifies the identifiers that the service has issued. A request with any other
    ///   identifier, invented or of another service, counts for its network alone: a client without an
    ///   identifier must not be worse off.
    RequestLimits(const LimitOptions& options, const Key& identifierKey);

    /// The refusal, or nothing if the request is to be answered.
    /// @param identifier of the installation, empty if the request has none
    [[nodiscard]] std::optional<Refusal> Refuse(RequestKind kind, const Request& request,
                                                std::string_view identifier);

    [[nodiscard]] const LimitFigures& Figures() const { return m_figures; }

private:
    [[nodiscard]] bool IsOverloadedFor(RequestKind kind, TokenBuckets::Clock::duration delay) const;

    const std::chrono::milliseconds m_overload;
    const Key& m_identifierKey;
    TokenBuckets m_installations;
    TokenBuckets m_networks;
    LimitFigures m_figures;
};

} // namespace beacond
