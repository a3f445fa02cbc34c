// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// A real HTTP server on 127.0.0.1 that behaves as badly as a test wants. Each connection has a thread of its
/// own; the destructor ends all of them, also during a reply.
class LoopbackServer final
{
public:
    /// One request and the way to answer it. Lives as long as the handler runs; the connection closes then,
    /// or waits for another request if it is to be kept.
    class Connection final
    {
    public:
        Connection(LoopbackServer& server, int socket, QByteArray request, int number);
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        /// The bytes as they came, up to and including the blank line.
        [[nodiscard]] const QByteArray& Request() const { return m_request; }
        /// 1 for the first request on its connection.
        [[nodiscard]] int Number() const { return m_number; }
        /// The target of the request line, between method and version.
        [[nodiscard]] QByteArray Target() const;
        /// False once the other side has closed the connection or the test ends.
        bool Send(const QByteArray& bytes);
        /// A whole reply with its length.
        bool Reply(const QByteArray& body, const QByteArray& status = "200 OK",
                   const QByteArray& headers = QByteArray());
        /// The same; the connection stays open for another request.
        bool Keep(const QByteArray& body);
        [[nodiscard]] bool IsKept() const { return m_isKept; }
        /// From now on incoming packets are not acknowledged, as with a router that has forgotten the
        /// connection.
        void Swallow() const;
        /// Waits until the time is over; false as soon as the other side closes or the test ends.
        bool Wait(int milliseconds);

    private:
        LoopbackServer& m_server;
        int m_socket = -1;
        QByteArray m_request;
        int m_number = 0;
        bool m_isKept = false;
    };
    using Handler = std::function<void(Connection&)>;

    /// @param port 0 for any that is free
    explicit LoopbackServer(Handler handler, quint16 port = 0);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    [[nodiscard]] quint16 Port() const { return m_port; }
    /// "http://127.0.0.1:" with the port and @p target, which begins with a slash or is empty.
    [[nodiscard]] QString Url(const QString& target = QString()) const;
    /// Every request so far, in the order of coming.
    [[nodiscard]] std::vector<QByteArray> Requests() const;
    /// The first lines of them.
    [[nodiscard]] std::vector<QByteArray> RequestLines() const;
    /// Connections so far.
    [[nodiscard]] int Connections() const { return m_count; }
    /// Connections that are open now.
    [[nodiscard]] int Open() const { return m_open; }

    static Handler Answer(const QByteArray& body);
    /// The bytes unchanged, then the end of the connection.
    static Handler Raw(const QByteArray& bytes);
    static Handler Hang();
    /// A valid head, then one byte at each interval for ever.
    static Handler Drip(int milliseconds);
    /// A valid head without a length, then bytes until the client closes the connection.
    static Handler Flood();
    static Handler RedirectTo(const QByteArray& location);

private:
    void Accept();
    void Serve(int socket);
    [[nodiscard]] QByteArray ReadHead(int socket) const;

    Handler m_handler;
    int m_listener = -1;
    int m_stop[2] = {-1, -1};
    quint16 m_port = 0;
    std::atomic<bool> m_stopping = false;
    std::atomic<int> m_open = 0;
    std::atomic<int> m_count = 0;
    mutable std::mutex m_mutex;
    std::vector<QByteArray> m_requests;
    std::vector<std::thread> m_connections;
    std::thread m_accepting;
};
