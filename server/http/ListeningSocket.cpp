// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ListeningSocket.h"

#include <fcntl.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace {

using boost::asio::ip::tcp;

// Descriptors passed by a service manager start after the three standard streams.
constexpr int kFirstInherited = 3;

std::string TextOf(const tcp::endpoint& endpoint)
{
    std::ostringstream text;
    text << endpoint;
    return text.str();
}

void Require(int result, const tcp::endpoint& endpoint)
{
    if (result < 0) {
        const int error = errno;
        throw std::system_error(error, std::generic_category(), "can't listen at " + TextOf(endpoint));
    }
}

int SocketOption(int descriptor, int name)
{
    int value = -1;
    socklen_t size = sizeof(value);
    return ::getsockopt(descriptor, SOL_SOCKET, name, &value, &size) == 0 ? value : -1;
}

void EnableOption(int descriptor, int level, int name)
{
    const int on = 1;
    ::setsockopt(descriptor, level, name, &on, sizeof(on));
}

// Accepted connections inherit this option, which saves a system call for each.
void SetNoDelay(int descriptor)
{
    EnableOption(descriptor, IPPROTO_TCP, TCP_NODELAY);
}

int NumberOf(const char* text)
{
    return text == nullptr ? 0 : std::atoi(text);
}

} // namespace

namespace beacond {

tcp::endpoint ParseListenAddress(std::string_view text)
{
    const std::size_t colon = text.rfind(':');
    std::string_view host = text.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']')) {
        host = host.substr(1, host.size() - 2);
    } else if (host.find(':') != std::string_view::npos) {
        host = {};
    }
    unsigned short port = 0;
    const char* end = text.data() + text.size();
    const auto [stop, problem] =
        std::from_chars(colon == std::string_view::npos ? end : text.data() + colon + 1, end, port);
    boost::system::error_code failure;
    const auto address = boost::asio::ip::make_address(std::string(host), failure);
    if (failure || problem != std::errc() || stop != end) {
        throw std::invalid_argument("\"" + std::string(text) +
                                    "\" is not an address and port, such as 127.0.0.1:8750 or [::1]:8750");
    }
    return {address, port};
}

ListeningSocket::ListeningSocket(int descriptor, bool isInherited)
    : m_descriptor(descriptor)
    , m_isInherited(isInherited)
{
}

ListeningSocket::ListeningSocket(ListeningSocket&& other) noexcept
    : m_descriptor(other.Release())
    , m_isInherited(other.m_isInherited)
{
}

ListeningSocket::~ListeningSocket()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

int ListeningSocket::Release()
{
    return std::exchange(m_descriptor, -1);
}

ListeningSocket ListeningSocket::Bind(const tcp::endpoint& endpoint)
{
    const int descriptor = ::socket(endpoint.protocol().family(), SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
    Require(descriptor, endpoint);
    ListeningSocket socket(descriptor);
    EnableOption(descriptor, SOL_SOCKET, SO_REUSEADDR);
    SetNoDelay(descriptor);
    Require(::bind(descriptor, endpoint.data(), static_cast<socklen_t>(endpoint.size())), endpoint);
    return socket;
}

ListeningSocket ListeningSocket::Open(const tcp::endpoint& endpoint)
{
    ListeningSocket socket = Bind(endpoint);
    // All clients of a city send their requests within the same second. The kernel lowers the value to its
    // own limit.
    constexpr int kBacklog = 65'535;
    Require(::listen(socket.m_descriptor, kBacklog), endpoint);
    return socket;
}

void ListeningSocket::RequireFree(const tcp::endpoint& endpoint)
{
    (void)Bind(endpoint);
}

std::optional<ListeningSocket> ListeningSocket::Inherited()
{
    const bool isForUs = NumberOf(std::getenv("LISTEN_PID")) == ::getpid();
    const int count = NumberOf(std::getenv("LISTEN_FDS"));
    ::unsetenv("LISTEN_PID");
    ::unsetenv("LISTEN_FDS");
    ::unsetenv("LISTEN_FDNAMES");
    if (!isForUs || count == 0) {
        return std::nullopt;
    }
    if (count != 1) {
        throw std::runtime_error("the service manager hands over " + std::to_string(count) +
                                 " sockets instead of one");
    }
    const int family = SocketOption(kFirstInherited, SO_DOMAIN);
    if (SocketOption(kFirstInherited, SO_ACCEPTCONN) != 1 || (family != AF_INET && family != AF_INET6)) {
        throw std::runtime_error("the service manager hands over no listening TCP socket");
    }
    ::fcntl(kFirstInherited, F_SETFD, FD_CLOEXEC);
    SetNoDelay(kFirstInherited);
    return ListeningSocket(kFirstInherited, true);
}

tcp::endpoint ListeningSocket::Endpoint() const
{
    tcp::endpoint endpoint;
    auto size = static_cast<socklen_t>(endpoint.capacity());
    if (::getsockname(m_descriptor, endpoint.data(), &size) == 0) {
        endpoint.resize(size);
    }
    return endpoint;
}

} // namespace beacond
