// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"

#include <boost/asio/awaitable.hpp>

#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace beacond {

/// The one thread that touches the store. Calls that wait together are committed together, so that a herd of
/// them costs one wait for the disk. A call is answered after its commit.
class StoreThread final
{
public:
    explicit StoreThread(std::unique_ptr<Store> store);
    /// Ends after the calls that already wait.
    ~StoreThread();
    StoreThread(const StoreThread&) = delete;
    StoreThread& operator=(const StoreThread&) = delete;

    /// Runs @p call with the store, answers its result on the executor of the awaiting coroutine. Throws what
    /// the call throws, StoreError if the commit fails or too many calls wait.
    template <typename Call>
    boost::asio::awaitable<std::invoke_result_t<Call, Store&>> Run(Call call)
    {
        std::optional<std::invoke_result_t<Call, Store&>> result;
        // Named: GCC 12 destroys some temporaries of an await twice.
        std::function<void(Store&)> work = [&result, &call](Store& store) { result.emplace(call(store)); };
        co_await Wait(std::move(work));
        co_return std::move(*result);
    }

private:
    struct Job
    {
        std::function<void(Store&)> work;
        std::function<void(std::exception_ptr)> done;
        std::exception_ptr error;
    };

    [[nodiscard]] boost::asio::awaitable<void> Wait(std::function<void(Store&)> work);
    void Enqueue(Job job);
    void RunJobs();
    void RunBatch(std::vector<Job>& batch);

    std::unique_ptr<Store> m_store;
    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    std::vector<Job> m_waiting;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace beacond
