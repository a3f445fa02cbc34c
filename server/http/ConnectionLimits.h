// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/asio/ip/address.hpp>

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace beacond {

class ConnectionLimits;

/// A lease on one of the allowed connections, returned by the destructor.
class ConnectionLease final
{
public:
    ConnectionLease(ConnectionLease&& other) noexcept;
    ConnectionLease& operator=(ConnectionLease&&) = delete;
    ~ConnectionLease();

private:
    friend class ConnectionLimits;
    ConnectionLease(ConnectionLimits& limits, std::optional<std::uint64_t> address);

    ConnectionLimits* m_limits = nullptr;
    std::optional<std::uint64_t> m_address;
};

/// Counts the connections, in all and for each address. Thread-safe.
class ConnectionLimits final
{
public:
    enum class Refusal { None, Total, Address };

    ConnectionLimits(std::size_t inAll, std::size_t perAddress);

    /// A lease for a connection from @p peer, or nothing if the limit named by @p refusal is reached.
    /// @param isProxy the peer is a proxy for many clients, so that the limit of an address does not apply
    [[nodiscard]] std::optional<ConnectionLease> Admit(const boost::asio::ip::address& peer, bool isProxy,
                                                       Refusal& refusal);

private:
    friend class ConnectionLease;
    void Release(std::optional<std::uint64_t> address);

    const std::size_t m_inAll;
    const std::size_t m_perAddress;
    std::mutex m_mutex;
    std::size_t m_count = 0;
    std::unordered_map<std::uint64_t, std::size_t> m_ofAddress;
};

} // namespace beacond
