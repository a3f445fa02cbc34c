// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/CurlPool.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace beacond {

namespace {

constexpr std::chrono::milliseconds kLongestConnect{5000};
// Shorter than the time for which servers keep an idle connection: a server that closes it while a request is
// on its way would leave the fate of that request unknown.
constexpr long kLongestIdleSeconds = 4;
constexpr std::size_t kLongestHeader = std::size_t{64} * 1024;

struct Transfer
{
    TransferEnd& end;
    const std::atomic<bool>& isAborted;
    std::chrono::steady_clock::time_point deadline;
    int requests = 0;
    std::size_t headerBytes = 0;
    bool isCut = false;
};

std::size_t OnReply(const char* bytes, std::size_t, std::size_t count, void* data)
{
    auto& transfer = *static_cast<Transfer*>(data);
    std::string& reply = transfer.end.reply;
    const std::size_t taken = std::min(count, CurlPool::kLongestReply - reply.size());
    reply.append(bytes, taken);
    transfer.isCut = taken < count;
    return taken;
}

std::size_t OnHeader(const char*, std::size_t, std::size_t count, void* data)
{
    auto& transfer = *static_cast<Transfer*>(data);
    transfer.headerBytes += count;
    return transfer.headerBytes > kLongestHeader ? 0 : count;
}

// libcurl sends a request again if a kept connection ends before the first byte of the reply. The provider
// may have taken the first one: leave the repetition to the caller, who counts it.
int OnRequest(void* data, char*, char*, int, int)
{
    auto& transfer = *static_cast<Transfer*>(data);
    transfer.end.hasBegun = true;
    return transfer.requests++ == 0 ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

// The deadline: when libcurl ends a connection of SMTP, it waits for the server beyond its own timeout.
int OnProgress(void* data, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    const auto& transfer = *static_cast<Transfer*>(data);
    return transfer.isAborted || std::chrono::steady_clock::now() > transfer.deadline ? 1 : 0;
}

} // namespace

CurlPool::CurlPool(const ChannelOptions& options, const char* protocols, const std::atomic<bool>& isAborted)
    : m_timeout(options.timeout)
    , m_caFile(options.caFile.string())
    , m_protocols(protocols)
    , m_isAborted(isAborted)
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

CurlPool::~CurlPool()
{
    // Otherwise libcurl would wait for the server's reply to its QUIT.
    for (const Idle& idle : m_idle) {
        ::shutdown(idle.socket, SHUT_RDWR);
    }
}

CurlPool::Handle CurlPool::Take()
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_idle.empty()) {
            Handle handle = std::move(m_idle.back().handle);
            m_idle.pop_back();
            curl_easy_reset(handle.get());
            return handle;
        }
    }
    Handle handle(curl_easy_init());
    if (handle == nullptr) {
        throw std::bad_alloc();
    }
    return handle;
}

void CurlPool::SetCommonOptions(CURL* handle) const
{
    const auto timeout = static_cast<long>(m_timeout.count());
    const auto connect = static_cast<long>(std::min(m_timeout, kLongestConnect).count());
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, timeout);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, connect);
    curl_easy_setopt(handle, CURLOPT_MAXAGE_CONN, kLongestIdleSeconds);
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, m_protocols.c_str());
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
    // A resolver that hangs must not delay the end of the service.
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
    if (!m_caFile.empty()) {
        curl_easy_setopt(handle, CURLOPT_CAINFO, m_caFile.c_str());
        curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    }
}

TransferEnd CurlPool::Perform(const std::function<void(CURL*)>& prepare)
{
    Handle handle = Take();
    SetCommonOptions(handle.get());
    prepare(handle.get());
    TransferEnd end;
    Transfer transfer{end, m_isAborted, std::chrono::steady_clock::now() + m_timeout};
    std::array<char, CURL_ERROR_SIZE> error{};
    curl_easy_setopt(handle.get(), CURLOPT_ERRORBUFFER, error.data());
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, &OnReply);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &transfer);
    curl_easy_setopt(handle.get(), CURLOPT_HEADERFUNCTION, &OnHeader);
    curl_easy_setopt(handle.get(), CURLOPT_HEADERDATA, &transfer);
    curl_easy_setopt(handle.get(), CURLOPT_PREREQFUNCTION, &OnRequest);
    curl_easy_setopt(handle.get(), CURLOPT_PREREQDATA, &transfer);
    curl_easy_setopt(handle.get(), CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(handle.get(), CURLOPT_XFERINFOFUNCTION, &OnProgress);
    curl_easy_setopt(handle.get(), CURLOPT_XFERINFODATA, &transfer);
    end.code = curl_easy_perform(handle.get());
    curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &end.status);
    if (transfer.isCut) {
        end.code = CURLE_OK; // the part that counts has arrived
    }
    if (end.code != CURLE_OK) {
        end.reason = error.front() != '\0' ? error.data() : curl_easy_strerror(end.code);
    }
    curl_socket_t socket = CURL_SOCKET_BAD;
    curl_easy_getinfo(handle.get(), CURLINFO_ACTIVESOCKET, &socket);
    // The callbacks must not be used again with the objects of this call.
    curl_easy_reset(handle.get());
    const std::lock_guard lock(m_mutex);
    m_idle.push_back({std::move(handle), socket});
    return end;
}

void CurlList::Add(const std::string& text)
{
    curl_slist* const list = curl_slist_append(m_list.get(), text.c_str());
    if (list == nullptr) {
        throw std::bad_alloc();
    }
    (void)m_list.release();
    m_list.reset(list);
}

} // namespace beacond
