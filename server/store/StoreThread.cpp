// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreThread.h"

#include <boost/asio/associated_executor.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <algorithm>
#include <utility>

namespace beacond {

namespace {

// Beyond that the disk has been stuck for many seconds, and memory is worth more than one more waiting call.
constexpr std::size_t kMostWaiting = 100'000;
// Bounds how long the first call of a batch waits for the last one.
constexpr std::size_t kLargestBatch = 500;

} // namespace

StoreThread::StoreThread(std::unique_ptr<Store> store)
    : m_store(std::move(store))
    , m_thread([this] { RunJobs(); })
{
}

StoreThread::~StoreThread()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

boost::asio::awaitable<void> StoreThread::Wait(std::function<void(Store&)> work)
{
    using boost::asio::use_awaitable;
    return boost::asio::async_initiate<decltype(use_awaitable), void(std::exception_ptr)>(
        [this](auto handler, std::function<void(Store&)> job) {
            // The coroutine goes on where it came from, and that thread stays until it does.
            auto guard = boost::asio::make_work_guard(boost::asio::get_associated_executor(handler));
            auto shared = std::make_shared<decltype(handler)>(std::move(handler));
            Enqueue({std::move(job),
                     [shared, guard = std::move(guard)](std::exception_ptr error) {
                         boost::asio::post(guard.get_executor(), [shared, error] { (*shared)(error); });
                     },
                     nullptr});
        },
        use_awaitable, std::move(work));
}

void StoreThread::Enqueue(Job job)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_waiting.size() < kMostWaiting) {
            m_waiting.push_back(std::move(job));
            job.done = nullptr;
        }
    }
    if (job.done) {
        job.done(std::make_exception_ptr(StoreError("too many calls wait for the store")));
        return;
    }
    m_wakeUp.notify_one();
}

void StoreThread::RunJobs()
{
    for (;;) {
        std::vector<Job> batch;
        {
            std::unique_lock lock(m_mutex);
            m_wakeUp.wait(lock, [this] { return m_isEnding || !m_waiting.empty(); });
            if (m_waiting.empty()) {
                return;
            }
            const auto count = static_cast<std::ptrdiff_t>(std::min(m_waiting.size(), kLargestBatch));
            batch.assign(std::make_move_iterator(m_waiting.begin()),
                         std::make_move_iterator(m_waiting.begin() + count));
            m_waiting.erase(m_waiting.begin(), m_waiting.begin() + count);
        }
        RunBatch(batch);
    }
}

void StoreThread::RunBatch(std::vector<Job>& batch)
{
    try {
        m_store->Begin();
        for (Job& job : batch) {
            try {
                job.work(*m_store);
            } catch (...) {
                job.error = std::current_exception();
            }
        }
        m_store->End();
    } catch (...) {
        m_store->Abandon();
        for (Job& job : batch) {
            job.error = std::current_exception();
        }
    }
    for (Job& job : batch) {
        job.done(job.error);
    }
}

} // namespace beacond
