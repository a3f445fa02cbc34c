// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/CurlHttp.h"

/// The real HTTP, with the service at the address of a test's own server, a probe that answers at once, and
/// limits that a test can wait for.
class RebasedHttp final : public Http
{
public:
    /// @param serviceUrl base address that the program was built with
    /// @param serverUrl base address of the test's server
    RebasedHttp(QString serviceUrl, QString serverUrl, const HttpLimits& limits)
        : m_serviceUrl(std::move(serviceUrl))
        , m_serverUrl(std::move(serverUrl))
        , m_limits(limits)
    {
    }

    [[nodiscard]] bool Reach(const QString& /*url*/) override { return reachable; }
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& /*limits*/) override
    {
        return m_http.Fetch(Rebased(url), m_limits);
    }
    void Notify(const QString& url, const HttpLimits& /*limits*/) override
    {
        m_http.Notify(Rebased(url), m_limits);
    }
    void FetchInBackground(const QString& url, const HttpLimits& /*limits*/, QObject* context,
                           std::function<void(Reply)> done) override
    {
        m_http.FetchInBackground(Rebased(url), m_limits, context, std::move(done));
    }

    bool reachable = true;

private:
    [[nodiscard]] QString Rebased(const QString& url) const
    {
        return url.startsWith(m_serviceUrl) ? m_serverUrl + url.mid(m_serviceUrl.size()) : url;
    }

    QString m_serviceUrl;
    QString m_serverUrl;
    HttpLimits m_limits;
    CurlHttp m_http;
};
