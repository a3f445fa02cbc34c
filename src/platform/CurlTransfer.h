// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"

#include <QDeadlineTimer>

#include <curl/curl.h>

#include <memory>

/// A URL as it is sent: white space, control characters and non-ASCII characters (as UTF-8) are escaped, all
/// other bytes are unchanged.
[[nodiscard]] QByteArray WireUrl(const QString& url);

/// One GET over libcurl, with one more request for each redirect. Can be run once.
class CurlTransfer final
{
public:
    /// @param certificates file of trusted certificates; empty for the system's
    CurlTransfer(const QString& url, const HttpLimits& limits, const QByteArray& certificates);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    /// Sets the handle up for the next request; false if there is no memory or no time left. The time of the
    /// whole transfer starts with the first call.
    [[nodiscard]] bool Prepare();
    /// nullptr if there was no memory for it.
    [[nodiscard]] CURL* Handle() const { return m_easy.get(); }
    /// After a request: true if its reply is a redirect to follow; call Prepare next.
    [[nodiscard]] bool FollowRedirect();
    /// The reply to the last request.
    [[nodiscard]] const QByteArray& Body() const { return m_body; }

    /// Instead of all of the above: one request on a separate connection that no cache may answer. Blocks
    /// until the first line of an HTTP reply has arrived or the request has failed.
    [[nodiscard]] bool Reach();

private:
    void SetTarget();
    void SetLimits();
    [[nodiscard]] bool TakeHeader(const QByteArray& line);
    [[nodiscard]] long Status() const;
    static std::size_t OnHeader(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t OnBody(char* bytes, std::size_t size, std::size_t count, void* self);

    QByteArray m_url;
    HttpLimits m_limits;
    QByteArray m_certificates;
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> m_easy{curl_easy_init(), &curl_easy_cleanup};
    QDeadlineTimer m_total = QDeadlineTimer(QDeadlineTimer::Forever);
    int m_redirects = 0;

    QByteArray m_body;
    QByteArray m_location;
    bool m_isRedirect = false;
    bool m_onlyReach = false;
    bool m_answered = false;
};
