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

/// Requests that can be refused, in the order in which they are refused under load. All others, above all
/// prayer calls, never are.
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
    /// The delay of a thread from which on searches are refused, pages at twice, the rest at four times this.
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

/// The reply for requests without a refusal of their own: plain text, which the program reads as a failure.
[[nodiscard]] Response RefusalReply(const Refusal& refusal);

/// Decides which requests are refused: those of a network or an installation that exceeds its rate limit, and
/// under load the least important ones first. Thread-safe.
class RequestLimits final
{
public:
    /// @param identifierKey tells the identifiers that the service has given. Any other one, made up or of
    ///   another service, counts for its network alone: a client without an identifier must not be worse off.
    RequestLimits(const LimitOptions& options, const Key& identifierKey);

    /// Nothing if the request is to be answered.
    /// @param identifier of the installation, empty where the request has none
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
