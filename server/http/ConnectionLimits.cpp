// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ConnectionLimits.h"

#include "support/Network.h"

#include <utility>

namespace beacond {

ConnectionLease::ConnectionLease(ConnectionLimits& limits, std::optional<std::uint64_t> address)
    : m_limits(&limits)
    , m_address(address)
{
}

ConnectionLease::ConnectionLease(ConnectionLease&& other) noexcept
    : m_limits(std::exchange(other.m_limits, nullptr))
    , m_address(other.m_address)
{
}

ConnectionLease::~ConnectionLease()
{
    if (m_limits != nullptr) {
        m_limits->Release(m_address);
    }
}

ConnectionLimits::ConnectionLimits(std::size_t inAll, std::size_t perAddress)
    : m_inAll(inAll)
    , m_perAddress(perAddress)
{
}

std::optional<ConnectionLease> ConnectionLimits::Admit(const boost::asio::ip::address& peer, bool isProxy,
                                                       Refusal& refusal)
{
    const std::lock_guard lock(m_mutex);
    if (m_count >= m_inAll) {
        refusal = Refusal::Total;
        return std::nullopt;
    }
    std::optional<std::uint64_t> key;
    if (!isProxy) {
        key = NetworkNumberOf(peer);
        std::size_t& count = m_ofAddress[*key];
        if (count >= m_perAddress) {
            refusal = Refusal::Address;
            return std::nullopt;
        }
        ++count;
    }
    ++m_count;
    refusal = Refusal::None;
    return ConnectionLease(*this, key);
}

void ConnectionLimits::Release(std::optional<std::uint64_t> address)
{
    const std::lock_guard lock(m_mutex);
    --m_count;
    if (!address) {
        return;
    }
    const auto found = m_ofAddress.find(*address);
    if (--found->second == 0) {
        m_ofAddress.erase(found);
    }
}

} // namespace beacond
