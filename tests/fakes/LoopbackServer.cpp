// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"

#include "fakes/Sockets.h"

namespace {

constexpr qsizetype kLongestHead = 1024 * 1024;
constexpr std::size_t kMostConnections = 2000;

// Whether the socket is ready before the test ends or the timeout (-1: no limit) is over.
bool IsReady(int socket, short events, int stop, int milliseconds)
{
    pollfd watched[] = {Sockets::Watched(socket, events), Sockets::Watched(stop, POLLIN)};
    return Sockets::Poll(watched, 2, milliseconds) > 0 && watched[1].revents == 0 && watched[0].revents != 0;
}

} // namespace

LoopbackServer::Connection::Connection(LoopbackServer& server, int socket, QByteArray request, int number)
    : m_server(server)
    , m_socket(socket)
    , m_request(std::move(request))
    , m_number(number)
{
}

QByteArray LoopbackServer::Connection::Target() const
{
    const qsizetype start = m_request.indexOf(' ') + 1;
    return m_request.mid(start, m_request.indexOf(" HTTP/") - start);
}

bool LoopbackServer::Connection::Send(const QByteArray& bytes)
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        if (!IsReady(m_socket, POLLOUT, m_server.m_stop[0], -1)) {
            return false;
        }
        const qsizetype count = Sockets::Send(m_socket, bytes.constData() + sent, bytes.size() - sent);
        if (count < 0) {
            return false;
        }
        sent += count;
    }
    return true;
}

bool LoopbackServer::Connection::Reply(const QByteArray& body, const QByteArray& status,
                                       const QByteArray& headers)
{
    return Send("HTTP/1.1 " + status + "\r\nContent-Type: text/xml\r\nContent-Length: " +
                QByteArray::number(body.size()) + "\r\nConnection: close\r\n" + headers + "\r\n" + body);
}

bool LoopbackServer::Connection::Keep(const QByteArray& body)
{
    m_isKept = true;
    return Send("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

void LoopbackServer::Connection::Swallow() const
{
    Sockets::Swallow(m_socket);
}

bool LoopbackServer::Connection::Wait(int milliseconds)
{
    pollfd watched[] = {Sockets::Watched(m_socket, POLLIN), Sockets::Watched(m_server.m_stop[0], POLLIN)};
    return Sockets::Poll(watched, 2, milliseconds) == 0;
}

LoopbackServer::LoopbackServer(Handler handler, quint16 port)
    : m_handler(std::move(handler))
{
    m_listener = Sockets::Listener();
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listener, generic, length) != 0 || ::listen(m_listener, 64) != 0 || !Sockets::Pipe(m_stop) ||
        ::getsockname(m_listener, generic, &length) != 0) {
        qFatal("no server on the loopback");
    }
    m_port = ntohs(address.sin_port);
    m_accepting = std::thread([this] { Accept(); });
}

LoopbackServer::~LoopbackServer()
{
    m_stopping = true;
    // The byte is never read, so the pipe stays readable for all threads.
    Sockets::WriteByte(m_stop[1]);
    m_accepting.join();
    for (std::thread& connection : m_connections) {
        connection.join();
    }
    for (const int descriptor : {m_listener, m_stop[0], m_stop[1]}) {
        Sockets::Close(descriptor);
    }
}

QString LoopbackServer::Url(const QString& target) const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port) + target;
}

std::vector<QByteArray> LoopbackServer::Requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::vector<QByteArray> LoopbackServer::RequestLines() const
{
    std::vector<QByteArray> lines;
    for (const QByteArray& request : Requests()) {
        lines.push_back(request.left(request.indexOf("\r\n")));
    }
    return lines;
}

void LoopbackServer::Accept()
{
    while (!m_stopping && m_connections.size() < kMostConnections &&
           IsReady(m_listener, POLLIN, m_stop[0], -1)) {
        const int socket = Sockets::Accept(m_listener);
        if (socket >= 0) {
            ++m_open;
            ++m_count;
            m_connections.emplace_back([this, socket] { Serve(socket); });
        }
    }
}

QByteArray LoopbackServer::ReadHead(int socket) const
{
    QByteArray request;
    while (!request.contains("\r\n\r\n") && request.size() < kLongestHead &&
           IsReady(socket, POLLIN, m_stop[0], -1)) {
        char buffer[4096];
        const qsizetype count = ::recv(socket, buffer, sizeof buffer, 0);
        if (count <= 0) {
            break;
        }
        request.append(buffer, count);
    }
    return request;
}

void LoopbackServer::Serve(int socket)
{
    bool isKept = true;
    for (int number = 1; isKept; ++number) {
        const QByteArray request = ReadHead(socket);
        if (!request.contains("\r\n\r\n")) {
            break;
        }
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(request);
        }
        Connection connection(*this, socket, request, number);
        m_handler(connection);
        isKept = connection.IsKept();
    }
    ::shutdown(socket, Sockets::kSending);
    Sockets::Close(socket);
    --m_open;
}

LoopbackServer::Handler LoopbackServer::Answer(const QByteArray& body)
{
    return [body](Connection& connection) { connection.Reply(body); };
}

LoopbackServer::Handler LoopbackServer::Raw(const QByteArray& bytes)
{
    return [bytes](Connection& connection) { connection.Send(bytes); };
}

LoopbackServer::Handler LoopbackServer::Hang()
{
    return [](Connection& connection) { connection.Wait(-1); };
}

LoopbackServer::Handler LoopbackServer::Drip(int milliseconds)
{
    return [milliseconds](Connection& connection) {
        connection.Send("HTTP/1.1 200 OK\r\n\r\n");
        while (connection.Wait(milliseconds) && connection.Send("x")) {
        }
    };
}

LoopbackServer::Handler LoopbackServer::Flood()
{
    return [](Connection& connection) {
        connection.Send("HTTP/1.1 200 OK\r\n\r\n");
        const QByteArray block(65536, 'x');
        while (connection.Send(block)) {
        }
    };
}

LoopbackServer::Handler LoopbackServer::RedirectTo(const QByteArray& location)
{
    return [location](Connection& connection) {
        connection.Reply("moved", "302 Found", "Location: " + location + "\r\n");
    };
}
