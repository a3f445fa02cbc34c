// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlThread.h"

#include "platform/CurlTransfer.h"
#include "platform/SystemHttp.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

namespace {

CURLM* NewHandle()
{
    PrepareForHttp();
    // Without curl_global_cleanup: an abandoned name look-up may still run at the end.
    curl_global_init(CURL_GLOBAL_DEFAULT);
    return curl_multi_init();
}

} // namespace

CurlThread::CurlThread(std::function<void(int, const Http::Reply&)> done)
    : m_done(std::move(done))
    , m_multi(NewHandle(), &curl_multi_cleanup)
{
}

CurlThread::~CurlThread()
{
    if (!m_thread.joinable()) {
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_orders.isEnd = true;
    }
    Wake();
    m_thread.join();
}

void CurlThread::Start(int number, std::unique_ptr<CurlTransfer> transfer)
{
    if (!HasThread()) {
        m_done(number, std::nullopt);
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_orders.started.push_back({number, std::move(transfer)});
    }
    Wake();
}

void CurlThread::Cancel(int number)
{
    {
        const std::lock_guard lock(m_mutex);
        m_orders.cancelled.push_back(number);
    }
    Wake();
}

bool CurlThread::HasThread()
{
    if (m_multi == nullptr) {
        return false;
    }
    try {
        if (!m_thread.joinable()) {
            m_thread = std::thread([this] { Run(); });
        }
    } catch (const std::system_error&) {
        // The next request tries to start it again.
        return false;
    }
    return true;
}

void CurlThread::Wake()
{
    curl_multi_wakeup(m_multi.get());
}

void CurlThread::Run()
{
    while (TakeOrders()) {
        int count = 0;
        CURLMcode result = curl_multi_perform(m_multi.get(), &count);
        while (const CURLMsg* const message = curl_multi_info_read(m_multi.get(), &count)) {
            if (message->msg == CURLMSG_DONE) {
                Finish(message->easy_handle, message->data.result == CURLE_OK);
            }
        }
        if (result == CURLM_OK) {
            // Returns early for libcurl's time-outs and for curl_multi_wakeup.
            result = curl_multi_poll(m_multi.get(), nullptr, 0, std::numeric_limits<int>::max(), nullptr);
        }
        // Out of memory, usually. The transfers would neither continue nor reach libcurl's time-outs.
        while (result != CURLM_OK && !m_running.empty()) {
            m_done(Remove(m_running.begin()).number, std::nullopt);
        }
    }
    while (!m_running.empty()) {
        static_cast<void>(Remove(m_running.begin()));
    }
}

bool CurlThread::TakeOrders()
{
    Orders orders;
    {
        const std::lock_guard lock(m_mutex);
        std::swap(orders, m_orders);
    }
    for (Numbered& next : orders.started) {
        Begin(std::move(next));
    }
    for (const int number : orders.cancelled) {
        const auto found = std::find_if(m_running.begin(), m_running.end(),
                                        [&](const Numbered& running) { return running.number == number; });
        if (found != m_running.end()) {
            static_cast<void>(Remove(found));
            m_done(number, std::nullopt);
        }
    }
    return !orders.isEnd;
}

void CurlThread::Begin(Numbered next)
{
    if (m_running.empty()) {
        m_kept.EndUnclean();
    }
    const bool isReady = next.transfer->Prepare();
    if (isReady) {
        m_kept.Watch(next.transfer->Handle());
    }
    if (isReady && curl_multi_add_handle(m_multi.get(), next.transfer->Handle()) == CURLM_OK) {
        m_running.push_back(std::move(next));
    } else {
        m_done(next.number, std::nullopt);
    }
}

void CurlThread::Finish(CURL* easy, bool isWhole)
{
    m_kept.Keep(easy);
    Numbered ended = Remove(std::find_if(m_running.begin(), m_running.end(), [&](const Numbered& running) {
        return running.transfer->Handle() == easy;
    }));
    if (ended.transfer->FollowRedirect()) {
        Begin(std::move(ended));
    } else {
        m_done(ended.number, isWhole ? Http::Reply(ended.transfer->Body()) : std::nullopt);
    }
}

CurlThread::Numbered CurlThread::Remove(std::vector<Numbered>::iterator running)
{
    curl_multi_remove_handle(m_multi.get(), running->transfer->Handle());
    Numbered removed = std::move(*running);
    m_running.erase(running);
    return removed;
}
