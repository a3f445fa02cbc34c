// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class QObject;

/// Limits of one request, its redirects included; one that passes any of them is a failure.
struct HttpLimits
{
    qint64 bytes = 8LL * 1024 * 1024;
    /// Time without a byte of the body, by libcurl's average over some seconds: up to six more if bytes came
    /// before.
    int silenceSeconds = 10;
    int totalMilliseconds = 30'000;
    /// From the look-up of the name to a connection that can be used, TLS included.
    int connectMilliseconds = 5'000;

    bool operator==(const HttpLimits&) const = default;
};

/// Of a request whose reply is not read: it has the whole time to reach the service.
inline constexpr HttpLimits kNotifyLimits{
    .silenceSeconds = 30, .totalMilliseconds = 30'000, .connectMilliseconds = 30'000};

/// HTTP GET over http and https. A URL is sent as it stands; only what HTTP cannot carry (white space,
/// control and non-ASCII characters, as UTF-8) is escaped on the wire. No cache, no cookies; no status is
/// inspected.
class Http
{
public:
    using Reply = std::optional<QByteArray>;

    /// The longest that Reach blocks.
    static constexpr int kLongestReachMilliseconds = 3000;

    Http() = default;
    Http(const Http&) = delete;
    Http& operator=(const Http&) = delete;
    virtual ~Http() = default;

    /// One uncached request; true if a server answered. Blocks for at most kLongestReachMilliseconds and
    /// serves no events.
    [[nodiscard]] virtual bool Reach(const QString& url) = 0;
    /// The whole reply, or nothing after a failure. Events are served while it waits.
    [[nodiscard]] virtual Reply Fetch(const QString& url, const HttpLimits& limits) = 0;
    /// A request whose reply is not read. Serves events until the reply is there or the request has failed,
    /// for at most 3 seconds; after those the request goes on by itself, within its limits, until the program
    /// ends. It returns later if an event opens a message box or another wait, which has to end first.
    virtual void Notify(const QString& url, const HttpLimits& limits) = 0;
    /// Calls @p done once on the user-interface thread, unless @p context is gone by then.
    virtual void FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                                   std::function<void(Reply)> done) = 0;
};
