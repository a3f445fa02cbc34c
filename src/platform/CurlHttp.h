// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"

#include <QObject>
#include <QPointer>

#include <deque>
#include <map>
#include <memory>

class CurlThread;

/// HTTP over libcurl. Connections are kept open for two minutes and reused. If a kept connection fails before
/// the first line of the reply, the request is sent once more on a fresh connection. A connection without an
/// acknowledgement for 3 seconds has failed, so that a slow server may receive a request twice.
/// At most 10 redirects are followed, never from https to http; each closes its connection. Certificates are
/// checked. The environment or the system names the proxy, which is never used for this computer itself. A
/// "#" is part of the query and is sent unchanged.
class CurlHttp final : public Http
{
public:
    /// @param certificates file of trusted certificates; empty for the system's
    explicit CurlHttp(QByteArray certificates = {});
    /// Cancels all requests at once, those of Notify too.
    ~CurlHttp() override;

    [[nodiscard]] bool Reach(const QString& url) override;
    /// Fails at once when the program ends.
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& limits) override;
    /// Returns at once when the program ends.
    void Notify(const QString& url, const HttpLimits& limits) override;
    /// Four requests run at a time; the others are queued.
    void FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                           std::function<void(Reply)> done) override;

private:
    using Handler = std::function<void(const Reply&)>;
    struct Waiting
    {
        QString url;
        HttpLimits limits;
        QPointer<QObject> context;
        std::function<void(Reply)> done;
    };

    /// Starts a request and returns its number. The handler is called once, from the event loop.
    int Start(const QString& url, const HttpLimits& limits, Handler handler);
    void StartWaiting();
    void Deliver(int number, const Reply& reply);

    QByteArray m_certificates;
    /// The handlers of the running requests by their numbers.
    std::map<int, Handler> m_handlers;
    int m_lastNumber = 0;
    std::deque<Waiting> m_waiting;
    int m_inBackground = 0;
    /// Receives the calls of the thread; declared first, since the thread must end first.
    QObject m_receiver;
    std::unique_ptr<CurlThread> m_thread;
};
