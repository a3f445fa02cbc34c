// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreCall.h"

namespace beacond {

void StoreCall::Prepare(Clock::time_point deadline, std::function<void()> wake)
{
    const std::lock_guard lock(m_mutex);
    m_deadline = deadline;
    m_wake = std::move(wake);
}

void StoreCall::RequireEnd()
{
    const std::lock_guard lock(m_mutex);
    if (m_state != State::Ended) {
        throw StoreError("the store has not answered in time");
    }
    if (m_error) {
        std::rethrow_exception(m_error);
    }
}

void StoreCall::GiveUp()
{
    const std::lock_guard lock(m_mutex);
    m_wake = nullptr;
    if (m_state != State::Ended) {
        m_state = State::GivenUp;
    }
}

bool StoreCall::MayBegin() const
{
    return m_state == State::Waiting && Clock::now() < m_deadline;
}

bool StoreCall::IsPendingWrite()
{
    const std::lock_guard lock(m_mutex);
    return m_isWriting && MayBegin();
}

bool StoreCall::Begin()
{
    const std::lock_guard lock(m_mutex);
    m_state = MayBegin() ? State::Begun : State::GivenUp;
    return m_state == State::Begun;
}

void StoreCall::Run(Store& store)
{
    if (!Begin()) {
        return;
    }
    try {
        Work(store);
    } catch (...) {
        m_error = std::current_exception();
    }
}

void StoreCall::End(const std::exception_ptr& batchError)
{
    // Wake under the lock: after GiveUp the executor may be gone.
    const std::lock_guard lock(m_mutex);
    if (batchError) {
        m_error = batchError;
    }
    if (m_state != State::GivenUp) {
        m_state = State::Ended;
        try {
            m_wake();
        } catch (...) {
            // Out of memory: the caller resumes at its time limit, with the result.
        }
        m_wake = nullptr;
    }
}

} // namespace beacond
