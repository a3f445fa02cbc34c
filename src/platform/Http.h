// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class QObject;

/// Bounds on one request; a reply that passes one of them is a failure.
struct HttpLimits
{
    qint64 bytes = 8LL * 1024 * 1024;
    int silenceMilliseconds = 30'000;
    int totalMilliseconds = 120'000;

    bool operator==(const HttpLimits&) const = default;
};

/// HTTP GET over http and https. A URL is sent as it stands; only what HTTP cannot carry (blanks, control and
/// non-ASCII characters, as UTF-8) is escaped on the wire. No cache, no cookies; no status is inspected.
class Http
{
public:
    using Reply = std::optional<QByteArray>;

    Http() = default;
    Http(const Http&) = delete;
    Http& operator=(const Http&) = delete;
    virtual ~Http() = default;

    /// One uncached request; true if a server answered. Blocks for at most 5 seconds and serves no events.
    [[nodiscard]] virtual bool Reach(const QString& url) = 0;
    /// The whole reply, or nothing after a failure. Events are served while it waits.
    [[nodiscard]] virtual Reply Fetch(const QString& url, const HttpLimits& limits) = 0;
    /// Calls @p done once on the user-interface thread, unless @p context is gone by then.
    virtual void FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                                   std::function<void(Reply)> done) = 0;
};
