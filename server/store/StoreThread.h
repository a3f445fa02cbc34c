// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"
#include "store/StoreCall.h"

#include <boost/asio/awaitable.hpp>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace beacond {

enum class StoreState {
    Working,
    Failing, ///< a call has failed, and no write has succeeded since
    Stuck    ///< a call does not come back
};

/// The one thread that touches the store. Calls that wait together are committed together, so that a herd of
/// them costs one wait for the disk. Calls that only read take turns with these. A call is answered after its
/// commit.
class StoreThread final
{
public:
    /// The program waits three seconds for the reply to a prayer call.
    static constexpr std::chrono::milliseconds kLongestCall{2000};

    /// @param longestCall until a call is answered as failed
    explicit StoreThread(std::unique_ptr<Store> store, std::chrono::milliseconds longestCall = kLongestCall);
    /// Runs the calls that wait, each until its time is over. Waits for a lock of another process no longer
    /// than the store itself does.
    ~StoreThread();
    StoreThread(const StoreThread&) = delete;
    StoreThread& operator=(const StoreThread&) = delete;

    /// Runs @p function with the store, answers its result on the executor of the awaiting coroutine, which
    /// runs one thing at a time. Throws what the function throws, and StoreError if the commit fails, if too
    /// many calls wait, or at the time limit. A call that has not begun by then is dropped; one that has
    /// begun, such as one that waits for the disk, may still be stored after its caller was told that it
    /// failed.
    /// @param function runs at any time until the end of the store's thread: it holds values, no references
    /// to the caller's. One that takes const Store& only reads, and needs no write lock.
    /// @param begin of the time limit: calls that answer one request share it
    template <typename Function>
    boost::asio::awaitable<std::invoke_result_t<Function&, Store&>>
    Run(Function function, StoreCall::Clock::time_point begin = StoreCall::Clock::now())
    {
        const auto call = std::make_shared<StoreCallOf<Function>>(std::move(function));
        // Named: see docs/service.md.
        const std::shared_ptr<StoreCall> shared = call;
        co_await Wait(shared, begin);
        co_return call->TakeResult();
    }

    /// Never waits for the store.
    [[nodiscard]] StoreState State();

private:
    using Batch = std::vector<std::shared_ptr<StoreCall>>;

    [[nodiscard]] boost::asio::awaitable<void> Wait(std::shared_ptr<StoreCall> call,
                                                    StoreCall::Clock::time_point begin);
    void Enqueue(std::shared_ptr<StoreCall> call);
    /// The calls that go next, at most as many as a batch holds; none at the end.
    void TakeBatch(Batch& batch);
    void RunBatches();
    [[nodiscard]] std::exception_ptr RunTogether(const Batch& batch, bool isWriting);
    void RunBatch(const Batch& batch);

    const std::unique_ptr<Store> m_store;
    const std::chrono::milliseconds m_longestCall;
    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    /// Apart, so that a flood of one kind does not keep the other waiting.
    Batch m_waitingReads;
    Batch m_waitingWrites;
    bool m_hasWritten = false; ///< by the last batch
    std::optional<StoreCall::Clock::time_point> m_batchBegin;
    bool m_isFailing = false;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace beacond
