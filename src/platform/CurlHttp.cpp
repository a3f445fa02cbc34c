// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlHttp.h"

#include "platform/CurlThread.h"
#include "platform/CurlTransfer.h"

#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace {

constexpr std::chrono::milliseconds kNotifyWait(3000);
constexpr int kMostInBackground = 4;

} // namespace

CurlHttp::CurlHttp(QByteArray certificates)
    : m_certificates(std::move(certificates))
    , m_thread(std::make_unique<CurlThread>([this](int number, const Reply& reply) {
        QMetaObject::invokeMethod(
            &m_receiver, [this, number, reply] { Deliver(number, reply); }, Qt::QueuedConnection);
    }))
{
}

CurlHttp::~CurlHttp() = default;

bool CurlHttp::Reach(const QString& url)
{
    HttpLimits limits;
    limits.totalMilliseconds = kLongestReachMilliseconds;
    return CurlTransfer(url, limits, m_certificates).Reach();
}

Http::Reply CurlHttp::Fetch(const QString& url, const HttpLimits& limits)
{
    QEventLoop loop;
    Reply reply;
    const int number = Start(url, limits, [&](const Reply& whole) {
        reply = whole;
        loop.quit();
    });
    loop.exec();
    // The end of the program also ends the loop; the reply is not needed then.
    if (m_handlers.erase(number) > 0) {
        m_thread->Cancel(number);
    }
    return reply;
}

void CurlHttp::Notify(const QString& url, const HttpLimits& limits)
{
    QEventLoop loop;
    const int number = Start(url, limits, [&loop](const Reply& /*reply*/) { loop.quit(); });
    QTimer::singleShot(kNotifyWait, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    m_handlers.erase(number);
}

void CurlHttp::FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                                 std::function<void(Reply)> done)
{
    m_waiting.push_back({url, limits, context, std::move(done)});
    StartWaiting();
}

int CurlHttp::Start(const QString& url, const HttpLimits& limits, Handler handler)
{
    const int number = ++m_lastNumber;
    m_handlers.emplace(number, std::move(handler));
    m_thread->Start(number, std::make_unique<CurlTransfer>(url, limits, m_certificates));
    return number;
}

void CurlHttp::StartWaiting()
{
    while (m_inBackground < kMostInBackground && !m_waiting.empty()) {
        const Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (next.context == nullptr) {
            continue;
        }
        ++m_inBackground;
        // The number is the one that Start assigns next. Disconnected at the end of the request, or a
        // long-lived context would collect connections.
        const auto watch = QObject::connect(next.context, &QObject::destroyed, &m_receiver,
                                            [this, number = m_lastNumber + 1] { m_thread->Cancel(number); });
        Start(next.url, next.limits,
              [this, watch, context = next.context, done = next.done](const Reply& reply) {
                  QObject::disconnect(watch);
                  --m_inBackground;
                  StartWaiting();
                  if (context != nullptr) {
                      done(reply);
                  }
              });
    }
}

void CurlHttp::Deliver(int number, const Reply& reply)
{
    if (const auto handler = m_handlers.extract(number); !handler.empty()) {
        handler.mapped()(reply);
    }
}
