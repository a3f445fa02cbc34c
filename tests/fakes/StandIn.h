// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/RebasedHttp.h"

#include <QProcess>
#include <QTest>

/// The service of the journeys, as a process of its own, so that its memory is not counted here. A program
/// that uses it is compiled with DUSKBEACON_STAND_IN, the script, and DUSKBEACON_SERVICE_URL.
class StandIn final
{
public:
    StandIn()
    {
        m_process.start(QStringLiteral("python3"), {QStringLiteral(DUSKBEACON_STAND_IN),
                                                    QStringLiteral("--seconds"), QStringLiteral("300")});
        m_process.waitForReadyRead(20'000);
        m_url = QStringLiteral("http://127.0.0.1:") + QString::fromLatin1(m_process.readLine().trimmed());
        // Count the requests and drop the output, which would fill the pipe or the memory.
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
                         [this] { m_asked += m_process.readAllStandardOutput().count("/cgi-bin/dbeacon/"); });
    }
    ~StandIn()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    /// The real HTTP, which finds the service here.
    [[nodiscard]] RebasedHttp Http(const HttpLimits& limits) const
    {
        return {QStringLiteral(DUSKBEACON_SERVICE_URL), m_url, limits};
    }
    /// Makes one of its scripts misbehave in that way from now on; false if the service does not answer.
    [[nodiscard]] bool Misbehave(const char* script, const char* how)
    {
        return CurlHttp()
            .Fetch(m_url +
                       QStringLiteral("/control?fault=%1=%2").arg(QLatin1String(script), QLatin1String(how)),
                   HttpLimits{})
            .has_value();
    }
    /// Number of requests received; first waits for the expected number.
    [[nodiscard]] qsizetype Asked(qsizetype expected)
    {
        static_cast<void>(QTest::qWaitFor([&] { return m_asked >= expected; }));
        return m_asked;
    }
    void Forget() { m_asked = 0; }

private:
    QProcess m_process;
    QString m_url;
    qsizetype m_asked = 0;
};
