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

/// The one thread on which all transfers run side by side. A connection whose reply is whole is kept, and the
/// next request to that server goes out on it.
class CurlThread final
{
public:
    /// @param done called once for each transfer that ends before the destruction, with its number; on that
    /// thread or inside Start
    explicit CurlThread(std::function<void(int number, const Http::Reply& reply)> done);
    /// Ends all transfers and closes the connections, at once.
    ~CurlThread();
    CurlThread(const CurlThread&) = delete;
    CurlThread& operator=(const CurlThread&) = delete;

    /// A transfer for which there is no thread or no memory fails.
    void Start(int number, std::unique_ptr<CurlTransfer> transfer);
    /// Lets the transfer of that number fail, if it still runs.
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
    /// False once the thread is to end.
    [[nodiscard]] bool TakeOrders();
    void Begin(Numbered next);
    void Finish(CURL* easy, bool isWhole);
    [[nodiscard]] Numbered Remove(std::vector<Numbered>::iterator running);

    std::function<void(int, const Http::Reply&)> m_done;
    /// Of the thread alone; once that has ended, of the multi handle, which closes the sockets.
    KeptSockets m_kept;
    std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> m_multi;
    std::mutex m_mutex;
    Orders m_orders;
    /// Of the thread alone.
    std::vector<Numbered> m_running;
    std::thread m_thread;
};
