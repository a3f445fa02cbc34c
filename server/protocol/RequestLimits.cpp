// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/RequestLimits.h"

#include "protocol/Reply.h"
#include "secrets/InstallationIdentifier.h"
#include "support/Network.h"

#include <algorithm>
#include <functional>

namespace beacond {

namespace {

// Long enough for a thread to catch up.
constexpr std::chrono::seconds kRetryUnderLoad{5};

std::optional<Refusal> RefusalFor(TokenBuckets::Clock::duration wait)
{
    return Refusal{false, std::chrono::ceil<std::chrono::seconds>(wait)};
}

int LoadFactor(RequestKind kind)
{
    switch (kind) {
    case RequestKind::Search:
        return 1;
    case RequestKind::Page:
        return 2;
    default:
        return 4;
    }
}

} // namespace

Response RefusalReply(const Refusal& refusal)
{
    Response reply = refusal.isByLoad ? ScriptFailure(503, "The service is busy. Please try again later.\n")
                                      : ScriptFailure(429, "Too many requests. Please try again later.\n");
    reply.headers.push_back({"Retry-After", std::to_string(refusal.retryAfter.count())});
    return reply;
}

RequestLimits::RequestLimits(const LimitOptions& options, const Key& identifierKey)
    : m_overload(options.overload)
    , m_identifierKey(identifierKey)
    , m_installations(options.installationPerMinute, options.installationBurst)
    , m_networks(options.networkPerMinute, options.networkBurst)
{
}

bool RequestLimits::IsOverloadedFor(RequestKind kind, TokenBuckets::Clock::duration delay) const
{
    return m_overload.count() > 0 && delay >= m_overload * LoadFactor(kind);
}

std::optional<Refusal> RequestLimits::Refuse(RequestKind kind, const Request& request,
                                             std::string_view identifier)
{
    using Duration = TokenBuckets::Clock::duration;
    const auto index = static_cast<std::size_t>(kind);
    if (IsOverloadedFor(kind, request.delay)) {
        ++m_figures.byLoad[index];
        return Refusal{true, kRetryUnderLoad};
    }
    const TokenBuckets::Clock::time_point now = TokenBuckets::Clock::now();
    // Check the installation first, so that a refused one does not use up the tokens of its network.
    if (DayOfInstallationIdentifier(m_identifierKey, identifier)) {
        const Duration wait = m_installations.TryConsume(std::hash<std::string_view>()(identifier), now);
        if (wait > Duration::zero()) {
            ++m_figures.byInstallation[index];
            return RefusalFor(wait);
        }
    }
    if (const Duration wait = m_networks.TryConsume(NetworkNumberOf(request.client), now);
        wait > Duration::zero()) {
        ++m_figures.byNetwork[index];
        return RefusalFor(wait);
    }
    return std::nullopt;
}

} // namespace beacond
