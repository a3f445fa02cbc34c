// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/Acceptor.h"

#include "http/HttpFigures.h"
#include "http/HttpOptions.h"
#include "http/ListeningSocket.h"
#include "support/Network.h"

#include <boost/asio/post.hpp>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <thread>
#include <utility>

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

// Limits the time in which the thread's other connections are not served.
constexpr std::size_t kMostAtOnce = 64;
constexpr std::size_t kMostAtStop = 65'536;

// Pause before the next attempt: without descriptors or memory it fails too, and the connection stays in the
// backlog.
constexpr std::chrono::milliseconds kPause{100};

bool IsShortage(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

tcp ProtocolOf(const tcp::endpoint& endpoint)
{
    return endpoint.protocol();
}

} // namespace

namespace beacond {

Acceptor::Acceptor(ListeningSocket listener, const Workers& workers, ConnectionLimits& limits)
    : m_workers(workers)
    , m_limits(limits)
    , m_home(*workers.front())
    , m_socket(m_home.Context())
    , m_pause(m_home.Context())
    , m_isInherited(listener.IsInherited())
{
    const tcp protocol = ProtocolOf(listener.Endpoint());
    m_socket.assign(protocol, listener.Release());
    m_socket.non_blocking(true);
}

void Acceptor::Start()
{
    AcceptWhenReady();
}

void Acceptor::Stop()
{
    // Connections in the service manager's socket stay there for the next start.
    if (!m_isInherited) {
        AcceptAll(kMostAtStop);
    }
    error_code ignored;
    m_socket.close(ignored);
    m_pause.cancel();
}

void Acceptor::AcceptWhenReady()
{
    Arm([this] {
        m_socket.async_wait(Socket::wait_read, [this](const error_code& failure) {
            if (failure) {
                return; // closed
            }
            if (AcceptAll(kMostAtOnce)) {
                AcceptWhenReady();
            } else {
                AcceptAfterPause();
            }
        });
    });
}

void Acceptor::AcceptAfterPause()
{
    Arm([this] {
        m_pause.expires_after(kPause);
        m_pause.async_wait([this](const error_code& cancelled) {
            if (!cancelled) {
                AcceptWhenReady();
            }
        });
    });
}

template <typename Wait>
void Acceptor::Arm(Wait wait)
{
    while (!m_home.Context().stopped()) {
        try {
            wait();
            return;
        } catch (const std::bad_alloc&) {
            // Retry: otherwise the process would never accept a connection again.
            Increment(m_home.Figures().acceptErrors);
            std::this_thread::sleep_for(kPause);
        }
    }
}

bool Acceptor::AcceptAll(std::size_t most)
{
    HttpFigures& figures = m_home.Figures();
    for (std::size_t count = 0; count < most; ++count) {
        tcp::endpoint peer;
        auto size = static_cast<socklen_t>(peer.capacity());
        const int descriptor = ::accept4(m_socket.native_handle(), peer.data(), &size, SOCK_CLOEXEC);
        if (descriptor < 0 && errno == EAGAIN) {
            return true;
        }
        if (descriptor < 0 && IsShortage(errno)) {
            Increment(figures.acceptErrors);
            return false;
        }
        if (descriptor < 0) {
            continue; // the client closed the connection before it was accepted
        }
        peer.resize(size);
        try {
            Distribute(descriptor, peer);
        } catch (const std::bad_alloc&) {
            Increment(figures.acceptErrors);
            return false;
        }
    }
    return true;
}

void Acceptor::Distribute(int descriptor, const tcp::endpoint& endpoint)
{
    Worker& worker = *m_workers[m_next];
    Connection::Socket socket(worker.Context());
    error_code failure;
    socket.assign(endpoint.protocol(), descriptor, failure);
    if (failure) {
        ::close(descriptor);
        return;
    }
    const asio::ip::address peer = Unmapped(endpoint.address());
    HttpFigures& figures = m_home.Figures();
    ConnectionLimits::Refusal refusal{};
    std::optional<ConnectionLease> lease =
        m_limits.Admit(peer, m_home.Options().proxies.Contains(peer), refusal);
    if (!lease) {
        Increment(refusal == ConnectionLimits::Refusal::Total ? figures.refusedByTotal
                                                              : figures.refusedByAddress);
        return;
    }
    Increment(figures.connectionsAccepted);
    m_next = (m_next + 1) % m_workers.size();
    asio::post(worker.Context(), [&worker, taken = std::move(socket), held = std::move(*lease),
                                  peer]() mutable { worker.Begin(std::move(taken), std::move(held), peer); });
}

} // namespace beacond
