// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"

#include <QDeadlineTimer>

#include <curl/curl.h>

#include <memory>

/// A URL as it goes over the wire: white space, control and non-ASCII characters escaped (as UTF-8), every
/// other byte as it stands.
[[nodiscard]] QByteArray WireUrl(const QString& url);

/// One GET over libcurl, one request for each redirect on its way. Made once, run once.
class CurlTransfer final
{
public:
    /// @param certificates file of the authorities to trust; empty for the system's
    CurlTransfer(const QString& url, const HttpLimits& limits, const QByteArray& certificates);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    /// Sets the handle up for the next request; false if there is no memory or no time left for one. The time
    /// of the whole transfer runs from the first call.
    [[nodiscard]] bool Prepare();
    /// nullptr if there was no memory for one.
    [[nodiscard]] CURL* Handle() const { return m_easy.get(); }
    /// After a request: true if its reply is a redirect that may be followed; Prepare is next then.
    [[nodiscard]] bool FollowRedirect();
    /// What came in reply to the last request.
    [[nodiscard]] const QByteArray& Body() const { return m_body; }

    /// In place of all these: one request on a connection of its own, past every cache. Blocks until the
    /// first line of an HTTP reply is there, or the request has failed.
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
