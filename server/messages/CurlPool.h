// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/ChannelOptions.h"

#include <curl/curl.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// The end of a transfer.
struct TransferEnd
{
    CURLcode code = CURLE_OK;
    long status = 0;       ///< of the last reply line, also of an incomplete reply; 0 for none
    std::string reply;     ///< the first bytes of the body
    std::string reason;    ///< of a failure, for the log; without address and text
    bool hasBegun = false; ///< the request or command may have been sent

    [[nodiscard]] bool IsWhole() const { return code == CURLE_OK; }
};

/// Connections to one provider. They are kept open for the next message. Thread-safe.
class CurlPool final
{
public:
    /// The bytes of a reply that are read; the rest is cut off.
    static constexpr std::size_t kLongestReply = std::size_t{16} * 1024;

    /// @param protocols allowed, such as "http,https"
    /// @param isAborted ends the transfers under way
    CurlPool(const ChannelOptions& options, const char* protocols, const std::atomic<bool>& isAborted);
    ~CurlPool();
    CurlPool(const CurlPool&) = delete;
    CurlPool& operator=(const CurlPool&) = delete;

    /// One transfer, without redirects and without a proxy. Returns at the timeout of the channel at the
    /// latest.
    /// @param prepare sets the options of the transfer
    [[nodiscard]] TransferEnd Perform(const std::function<void(CURL*)>& prepare);

private:
    struct Closer
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };
    using Handle = std::unique_ptr<CURL, Closer>;

    struct Idle
    {
        Handle handle;
        curl_socket_t socket = CURL_SOCKET_BAD; ///< of the kept connection
    };

    [[nodiscard]] Handle Take();
    void SetCommonOptions(CURL* handle) const;

    const std::chrono::milliseconds m_timeout;
    const std::string m_caFile;
    const std::string m_protocols;
    const std::atomic<bool>& m_isAborted;
    std::mutex m_mutex;
    std::vector<Idle> m_idle;
};

/// A list for libcurl. Throws std::bad_alloc.
class CurlList final
{
public:
    void Add(const std::string& text);
    [[nodiscard]] curl_slist* Get() const { return m_list.get(); }

private:
    struct Freer
    {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };
    std::unique_ptr<curl_slist, Freer> m_list;
};

} // namespace beacond
