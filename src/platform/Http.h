// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class QObject;

/// Limits of one request and its redirects; the request fails when it exceeds one of them.
struct HttpLimits
{
    qint64 bytes = 8LL * 1024 * 1024;
    /// Time without a byte of the body. libcurl averages over some seconds: up to six seconds more after
    /// bytes have arrived.
    int silenceSeconds = 10;
    int totalMilliseconds = 30'000;
    /// Includes the name look-up and the TLS handshake.
    int connectMilliseconds = 5'000;

    bool operator==(const HttpLimits&) const = default;
};

/// For requests without a reply to read: all of the time may pass before the service is reached.
inline constexpr HttpLimits kNotifyLimits{
    .silenceSeconds = 30, .totalMilliseconds = 30'000, .connectMilliseconds = 30'000};

/// HTTP GET over http and https. White space, control characters and non-ASCII characters (as UTF-8) of a URL
/// are escaped, the rest is sent unchanged. No cache, no cookies; the status is not inspected.
class Http
{
public:
    using Reply = std::optional<QByteArray>;

    /// The longest time that Reach blocks.
    static constexpr int kLongestReachMilliseconds = 3000;

    Http() = default;
    Http(const Http&) = delete;
    Http& operator=(const Http&) = delete;
    virtual ~Http() = default;

    /// One uncached request; true if a server answered. Blocks for at most kLongestReachMilliseconds and
    /// serves no events.
    [[nodiscard]] virtual bool Reach(const QString& url) = 0;
    /// The whole reply, or std::nullopt after a failure. Serves events while it waits.
    [[nodiscard]] virtual Reply Fetch(const QString& url, const HttpLimits& limits) = 0;
    /// A request whose reply is not read. Serves events until the reply has arrived or the request has
    /// failed, for at most 3 seconds; after them the request continues within its limits, at most to the end
    /// of the program. Returns later if an event opens a message box or another wait, which must end first.
    virtual void Notify(const QString& url, const HttpLimits& limits) = 0;
    /// Calls @p done once, on the user-interface thread, unless @p context has been destroyed.
    virtual void FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                                   std::function<void(Reply)> done) = 0;
};
