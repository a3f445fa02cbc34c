// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"

#include <memory>
#include <vector>

/// HTTP over libcurl. Redirects are followed, 10 at most and never from https to http; certificates are
/// checked. A proxy is the one that the environment names, as everywhere on this platform, but never for this
/// computer itself. A "#" belongs to the query and goes out as it stands.
class CurlHttp final : public Http
{
public:
    /// @param certificates file of the authorities to trust; empty for the system's
    explicit CurlHttp(QByteArray certificates = {});
    /// Cancels what runs in the background and waits for its threads.
    ~CurlHttp() override;

    [[nodiscard]] bool Reach(const QString& url) override;
    /// Fails at once when the event loop is told to end.
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& limits) override;
    /// Four at a time; the others wait their turn.
    void FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                           std::function<void(Reply)> done) override;

private:
    struct Job;
    void StartWaiting();
    void Start(Job& job);
    void Finish(const Job* job);

    QByteArray m_certificates;
    std::vector<std::unique_ptr<Job>> m_jobs;
    int m_running = 0;
    /// Takes the calls from the threads; what it has not delivered goes with it.
    std::unique_ptr<QObject> m_receiver;
};
