// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"
#include "platform/KeptSockets.h"

#include <curl/curl.h>

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class CurlTransfer;

/// The one thread that runs all transfers concurrently. A connection with a complete reply is kept and reused
/// for the next request to that server.
class CurlThread final
{
public:
    /// @param done called once for each transfer that ends before the destruction, with its number; on the
    /// thread or inside Start
    explicit CurlThread(std::function<void(int number, const Http::Reply& reply)> done);
    /// Ends all transfers and closes the connections, at once.
    ~CurlThread();
    CurlThread(const CurlThread&) = delete;
    CurlThread& operator=(const CurlThread&) = delete;

    /// The transfer fails if there is no thread or no memory for it.
    void Start(int number, std::unique_ptr<CurlTransfer> transfer);
    /// Ends the transfer of that number as a failure if it is still running.
    void Cancel(int number);

private:
    struct Numbered
    {
        int number = 0;
        std::unique_ptr<CurlTransfer> transfer;
    };
    struct Orders
    {
        std::vector<Numbered> started;
        std::vector<int> cancelled;
        bool isEnd = false;
    };
    [[nodiscard]] bool HasThread();
    void Wake();
    void Run();
    /// False when the thread must end.
    [[nodiscard]] bool TakeOrders();
    void Begin(Numbered next);
    void Finish(CURL* easy, bool isWhole);
    [[nodiscard]] Numbered Remove(std::vector<Numbered>::iterator running);

    std::function<void(int, const Http::Reply&)> m_done;
    /// Used by the thread only and, after its end, by the destruction of the multi handle, which closes the
    /// sockets.
    KeptSockets m_kept;
    std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> m_multi;
    std::mutex m_mutex;
    Orders m_orders;
    /// Used by the thread only.
    std::vector<Numbered> m_running;
    std::thread m_thread;
};
