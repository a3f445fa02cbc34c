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

/// HTTP over libcurl. Connections are kept for two minutes and used again; one that is dead by then is
/// replaced once by a fresh one, unless a line of the reply has come on it. A connection whose server
/// acknowledges nothing for 3 seconds counts as dead, so that a slow server may get a request twice.
/// Redirects are followed, 10 at most and never from https to http, and each closes the connection it came
/// on; certificates are checked. A proxy is the one that the environment names, as everywhere on this
/// platform, but never for this computer itself. A "#" belongs to the query and goes out as it stands.
class CurlHttp final : public Http
{
public:
    /// @param certificates file of the authorities to trust; empty for the system's
    explicit CurlHttp(QByteArray certificates = {});
    /// Ends what is under way, a Notify among it, at once.
    ~CurlHttp() override;

    [[nodiscard]] bool Reach(const QString& url) override;
    /// Fails at once when the event loop is told to end.
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& limits) override;
    /// Returns at once when the event loop is told to end.
    void Notify(const QString& url, const HttpLimits& limits) override;
    /// Four at a time; the others wait their turn.
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

    /// Begins a request, and answers its number. The handler is called once, from the event loop.
    int Start(const QString& url, const HttpLimits& limits, Handler handler);
    void StartWaiting();
    void Deliver(int number, const Reply& reply);

    QByteArray m_certificates;
    /// Of the requests whose end somebody waits for, by their numbers.
    std::map<int, Handler> m_handlers;
    int m_lastNumber = 0;
    std::deque<Waiting> m_waiting;
    int m_inBackground = 0;
    /// Takes the calls from the thread, which ends before it.
    QObject m_receiver;
    std::unique_ptr<CurlThread> m_thread;
};
