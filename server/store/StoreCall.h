// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"

#include <chrono>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>

namespace beacond {

/// A call of the store. Shared by its caller and the store's thread, because the caller may give up first.
class StoreCall
{
public:
    using Clock = std::chrono::steady_clock;

    explicit StoreCall(bool isWriting)
        : m_isWriting(isWriting)
    {
    }
    virtual ~StoreCall() = default;
    StoreCall(const StoreCall&) = delete;
    StoreCall& operator=(const StoreCall&) = delete;

    /// Caller: before the call is handed to the store's thread.
    /// @param deadline the call must have begun by then
    /// @param wake called once at the end of the call; never during or after GiveUp
    void Prepare(Clock::time_point deadline, std::function<void()> wake);
    /// Caller: throws the exception of the call, or StoreError if the call has not ended.
    void RequireEnd();
    /// Caller: a call that has not begun is dropped; one that has begun may still be stored.
    void GiveUp();

    [[nodiscard]] bool IsWriting() const { return m_isWriting; }
    /// Store's thread: whether the call changes the store and has not begun yet.
    [[nodiscard]] bool IsPendingWrite();
    /// Store's thread: runs the call unless its caller has given up or its deadline has passed. Keeps its
    /// exception.
    void Run(Store& store);
    /// Store's thread: whether the call has thrown.
    [[nodiscard]] bool HasFailed() const { return m_error != nullptr; }
    /// Store's thread: wakes the caller.
    /// @param batchError the error of the call's transaction; null if it was committed
    void End(const std::exception_ptr& batchError);

private:
    enum class State { Waiting, Begun, Ended, GivenUp };

    virtual void Work(Store& store) = 0;
    [[nodiscard]] bool Begin();
    [[nodiscard]] bool MayBegin() const;

    const bool m_isWriting;
    std::mutex m_mutex;
    State m_state = State::Waiting;
    Clock::time_point m_deadline;
    std::function<void()> m_wake;
    std::exception_ptr m_error;
};

/// A call with its function and its result.
/// @tparam Function takes Store&, or const Store& if it only reads
template <typename Function>
class StoreCallOf final : public StoreCall
{
public:
    using Result = std::invoke_result_t<Function&, Store&>;

    explicit StoreCallOf(Function function)
        : StoreCall(!std::is_invocable_v<Function&, const Store&>)
        , m_function(std::move(function))
    {
    }

    /// Call it once, after RequireEnd.
    [[nodiscard]] Result TakeResult() { return std::move(*m_result); }

private:
    void Work(Store& store) override { m_result.emplace(m_function(store)); }

    Function m_function;
    std::optional<Result> m_result;
};

} // namespace beacond
