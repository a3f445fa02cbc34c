// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlHttp.h"

#include "platform/CurlTransfer.h"

#include <QEventLoop>
#include <QPointer>

#include <curl/curl.h>

#include <algorithm>
#include <system_error>
#include <thread>

namespace {

constexpr int kReachMilliseconds = 5000;
constexpr int kMostBackgroundThreads = 4;

} // namespace

struct CurlHttp::Job
{
    Job(const QString& url, const HttpLimits& limits, const QByteArray& certificates, QObject* owner,
        std::function<void(Reply)> handler)
        : transfer(url, limits, certificates)
        , context(owner)
        , done(std::move(handler))
    {
    }
    ~Job()
    {
        QObject::disconnect(watch);
        if (worker.joinable()) {
            worker.join();
        }
    }
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    CurlTransfer transfer;
    QPointer<QObject> context;
    QMetaObject::Connection watch;
    std::function<void(Reply)> done;
    Reply reply;
    bool isStarted = false;
    std::thread worker;
};

CurlHttp::CurlHttp(QByteArray certificates)
    : m_certificates(std::move(certificates))
    , m_receiver(std::make_unique<QObject>())
{
    // Not undone at the end: the look-up of a name that was given up may still be running then.
    curl_global_init(CURL_GLOBAL_DEFAULT);
}

CurlHttp::~CurlHttp()
{
    for (const std::unique_ptr<Job>& job : m_jobs) {
        job->transfer.Cancel();
    }
    m_jobs.clear();
}

bool CurlHttp::Reach(const QString& url)
{
    HttpLimits limits;
    limits.silenceMilliseconds = kReachMilliseconds;
    limits.totalMilliseconds = kReachMilliseconds;
    return CurlTransfer(url, limits, m_certificates).Reach();
}

Http::Reply CurlHttp::Fetch(const QString& url, const HttpLimits& limits)
{
    CurlTransfer transfer(url, limits, m_certificates);
    QEventLoop loop;
    Reply reply;
    std::atomic<bool> isDone = false;
    std::thread worker;
    try {
        worker = std::thread([&] {
            reply = transfer.Run();
            isDone = true;
            QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        });
    } catch (const std::system_error&) {
        return std::nullopt;
    }
    loop.exec();
    // The loop also ends when the whole program is told to; nobody waits for the reply then.
    if (!isDone) {
        transfer.Cancel();
    }
    worker.join();
    return reply;
}

void CurlHttp::FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                                 std::function<void(Reply)> done)
{
    auto owned = std::make_unique<Job>(url, limits, m_certificates, context, std::move(done));
    Job* const job = owned.get();
    job->watch =
        QObject::connect(context, &QObject::destroyed, m_receiver.get(), [job] { job->transfer.Cancel(); });
    m_jobs.push_back(std::move(owned));
    StartWaiting();
}

void CurlHttp::StartWaiting()
{
    for (const std::unique_ptr<Job>& job : m_jobs) {
        if (m_running < kMostBackgroundThreads && !job->isStarted) {
            Start(*job);
        }
    }
}

// With threads of its own instead of a pool's: a pool that gets no thread keeps the job, and waits for it at
// the end.
void CurlHttp::Start(Job& job)
{
    const auto finish = [this, &job] {
        QMetaObject::invokeMethod(
            m_receiver.get(), [this, &job] { Finish(&job); }, Qt::QueuedConnection);
    };
    job.isStarted = true;
    ++m_running;
    try {
        job.worker = std::thread([&job, finish] {
            job.reply = job.transfer.Run();
            finish();
        });
    } catch (const std::system_error&) {
        finish();
    }
}

void CurlHttp::Finish(const Job* job)
{
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(),
                                    [job](const std::unique_ptr<Job>& known) { return known.get() == job; });
    const std::unique_ptr<Job> finished = std::move(*found);
    m_jobs.erase(found);
    --m_running;
    StartWaiting();
    if (finished->context != nullptr) {
        finished->done(finished->reply);
    }
}
