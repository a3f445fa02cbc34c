// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"

#include <QDeadlineTimer>

#include <atomic>
#include <memory>

/// A URL as it goes over the wire: blanks, control and non-ASCII characters escaped (as UTF-8), every other
/// byte as it stands.
[[nodiscard]] QByteArray WireUrl(const QString& url);

/// One GET over libcurl, its redirects included. Made once, run once, on any thread.
class CurlTransfer final
{
public:
    /// @param certificates file of the authorities to trust; empty for the system's
    CurlTransfer(const QString& url, const HttpLimits& limits, const QByteArray& certificates);
    ~CurlTransfer();
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    /// Blocks until the reply is whole, a limit is passed or the transfer is cancelled.
    [[nodiscard]] Http::Reply Run();
    /// Blocks until the first line of any HTTP reply is there; its body is not waited for.
    [[nodiscard]] bool Reach();
    /// Ends the transfer at once, or before it begins. From any thread.
    void Cancel();

private:
    struct Handles;

    /// One request and its reply; true if the reply is whole.
    bool Request(bool asksAnew);
    void SetTarget();
    bool Perform();
    [[nodiscard]] int MillisecondsLeft() const;
    /// Goes to where the reply sends us; false if that is not allowed.
    bool FollowRedirect();

    static std::size_t OnHeader(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t OnBody(char* bytes, std::size_t size, std::size_t count, void* self);
    [[nodiscard]] bool TakeHeader(const QByteArray& line);
    [[nodiscard]] long Status() const;

    QByteArray m_url;
    HttpLimits m_limits;
    QByteArray m_certificates;
    std::unique_ptr<Handles> m_handles;
    std::atomic<bool> m_cancelled = false;
    QDeadlineTimer m_total;
    QDeadlineTimer m_silence;

    QByteArray m_body;
    qint64 m_headBytes = 0;
    QByteArray m_location;
    bool m_isRedirect = false;
    bool m_onlyReach = false;
    bool m_answered = false;
};
