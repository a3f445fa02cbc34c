// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreThread.h"

#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <algorithm>
#include <utility>

namespace beacond {

namespace {

namespace asio = boost::asio;

// Beyond this number calls are refused: the disk has been stuck for seconds.
constexpr std::size_t kMostWaiting = 100'000;
// Limits the time that the first call of a batch waits for the last one.
constexpr std::size_t kLargestBatch = 500;

} // namespace

StoreThread::StoreThread(std::unique_ptr<Store> store, std::chrono::milliseconds longestCall)
    : m_store(std::move(store))
    , m_longestCall(longestCall)
    , m_thread([this] { RunBatches(); })
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

StoreState StoreThread::State()
{
    const std::lock_guard lock(m_mutex);
    if (m_batchBegin && StoreCall::Clock::now() - *m_batchBegin > m_longestCall) {
        return StoreState::Stuck;
    }
    return m_isFailing ? StoreState::Failing : StoreState::Working;
}

asio::awaitable<void> StoreThread::Wait(std::shared_ptr<StoreCall> call, StoreCall::Clock::time_point begin)
{
    // Runs at the end of the wait, also if the coroutine is destroyed while it waits.
    struct Leaving
    {
        StoreCall& call;
        ~Leaving() { call.GiveUp(); }
    };
    const asio::any_io_executor executor = co_await asio::this_coro::executor;
    const auto timer = std::make_shared<asio::steady_timer>(executor, begin + m_longestCall);
    const Leaving leaving{*call};
    call->Prepare(timer->expiry(), [executor, timer] { asio::post(executor, [timer] { timer->cancel(); }); });
    Enqueue(call);
    boost::system::error_code ended;
    co_await timer->async_wait(asio::redirect_error(asio::use_awaitable, ended));
    call->RequireEnd();
}

void StoreThread::Enqueue(std::shared_ptr<StoreCall> call)
{
    {
        const std::lock_guard lock(m_mutex);
        Batch& waiting = call->IsWriting() ? m_waitingWrites : m_waitingReads;
        if (waiting.size() >= kMostWaiting) {
            throw StoreError("too many calls wait for the store");
        }
        waiting.push_back(std::move(call));
    }
    m_wakeUp.notify_one();
}

void StoreThread::TakeBatch(Batch& batch)
{
    batch.clear();
    std::unique_lock lock(m_mutex);
    m_batchBegin.reset();
    m_wakeUp.wait(lock, [this] { return m_isEnding || !m_waitingReads.empty() || !m_waitingWrites.empty(); });
    m_hasWritten = !m_waitingWrites.empty() && (m_waitingReads.empty() || !m_hasWritten);
    Batch& waiting = m_hasWritten ? m_waitingWrites : m_waitingReads;
    const auto count = static_cast<std::ptrdiff_t>(std::min(waiting.size(), kLargestBatch));
    batch.assign(std::make_move_iterator(waiting.begin()), std::make_move_iterator(waiting.begin() + count));
    waiting.erase(waiting.begin(), waiting.begin() + count);
    m_batchBegin = StoreCall::Clock::now();
}

void StoreThread::RunBatches()
{
    Batch batch;
    // Reserve once: a failed allocation on this thread would end the process.
    batch.reserve(kLargestBatch);
    for (TakeBatch(batch); !batch.empty(); TakeBatch(batch)) {
        RunBatch(batch);
    }
}

std::exception_ptr StoreThread::RunTogether(const Batch& batch, bool isWriting)
{
    try {
        if (isWriting) {
            m_store->Begin();
        }
        for (const std::shared_ptr<StoreCall>& call : batch) {
            call->Run(*m_store);
        }
        if (isWriting) {
            m_store->End();
        }
        return nullptr;
    } catch (...) {
        m_store->Abandon();
        return std::current_exception();
    }
}

void StoreThread::RunBatch(const Batch& batch)
{
    const bool isWriting =
        std::any_of(batch.begin(), batch.end(), [](const auto& call) { return call->IsPendingWrite(); });
    const std::exception_ptr error = RunTogether(batch, isWriting);
    const bool hasFailed =
        error || std::any_of(batch.begin(), batch.end(), [](const auto& call) { return call->HasFailed(); });
    {
        const std::lock_guard lock(m_mutex);
        m_isFailing = hasFailed || (m_isFailing && !isWriting);
    }
    for (const std::shared_ptr<StoreCall>& call : batch) {
        call->End(error);
    }
}

} // namespace beacond
