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
    Stuck    ///< a call does not return
};

/// The only thread that uses the store. Queued writes are committed together, so that a burst of them costs
/// one sync of the disk. Batches of reads alternate with batches of writes. A write is answered after its
/// commit.
class StoreThread final
{
public:
    /// Below the three seconds that the program waits for the reply to a prayer call.
    static constexpr std::chrono::milliseconds kLongestCall{2000};

    /// @param longestCall the time limit after which a call fails
    explicit StoreThread(std::unique_ptr<Store> store, std::chrono::milliseconds longestCall = kLongestCall);
    /// Runs the queued calls, each within its time limit. Waits for a lock of another process only as long as
    /// the store does.
    ~StoreThread();
    StoreThread(const StoreThread&) = delete;
    StoreThread& operator=(const StoreThread&) = delete;

    /// Runs @p function with the store and returns its result on the executor of the awaiting coroutine,
    /// which must be a strand or a single thread. Throws the function's exception, or StoreError if the
    /// commit fails, if too many calls are queued, or at the time limit. A call that has not begun by then is
    /// dropped; a call that has begun, for instance one that waits for the disk, may still be stored after
    /// its caller got the error.
    /// @param function may run at any time until the end of the store's thread: capture by value, not by
    ///   reference. A function that takes const Store& only reads, and needs no write lock.
    /// @param begin the start of the time limit: the calls of one request share it
    template <typename Function>
    boost::asio::awaitable<std::invoke_result_t<Function&, Store&>>
    Run(Function function, StoreCall::Clock::time_point begin = StoreCall::Clock::now())
    {
        const auto call = std::make_shared<StoreCallOf<Function>>(std::move(function));
        // A named variable: see docs/service.md.
        const std::shared_ptr<StoreCall> shared = call;
        co_await Wait(shared, begin);
        co_return call->TakeResult();
    }

    /// Does not wait for the store.
    [[nodiscard]] StoreState State();

private:
    using Batch = std::vector<std::shared_ptr<StoreCall>>;

    [[nodiscard]] boost::asio::awaitable<void> Wait(std::shared_ptr<StoreCall> call,
                                                    StoreCall::Clock::time_point begin);
    void Enqueue(std::shared_ptr<StoreCall> call);
    /// The next batch of calls; empty at the end.
    void TakeBatch(Batch& batch);
    void RunBatches();
    [[nodiscard]] std::exception_ptr RunTogether(const Batch& batch, bool isWriting);
    void RunBatch(const Batch& batch);

    const std::unique_ptr<Store> m_store;
    const std::chrono::milliseconds m_longestCall;
    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    /// Separate queues, so that a flood of one kind does not delay the other.
    Batch m_waitingReads;
    Batch m_waitingWrites;
    bool m_hasWritten = false; ///< whether the last batch has written
    std::optional<StoreCall::Clock::time_point> m_batchBegin;
    bool m_isFailing = false;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace beacond
