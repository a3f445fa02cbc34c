// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlTransfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <iterator>

namespace {

constexpr int kMostRedirects = 10;
constexpr qint64 kLongestHead = 256LL * 1024;
constexpr int kLongestPollMilliseconds = 1000;

using EasyHandle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using MultiHandle = std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)>;
using UrlHandle = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;
using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

QByteArray Escaped(const QByteArray& bytes)
{
    QByteArray wire;
    wire.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (value <= 0x20 || value >= 0x7F) {
            wire += '%' + QByteArray(1, byte).toHex().toUpper();
        } else {
            wire += byte;
        }
    }
    return wire;
}

// A part of the address that @p url and a redirect from there make; empty if they make none.
QByteArray UrlPart(const QByteArray& url, CURLUPart part, const QByteArray& redirect = QByteArray())
{
    const UrlHandle handle(curl_url(), &curl_url_cleanup);
    char* text = nullptr;
    if (curl_url_set(handle.get(), CURLUPART_URL, url.constData(), CURLU_PATH_AS_IS) != CURLUE_OK ||
        (!redirect.isEmpty() &&
         curl_url_set(handle.get(), CURLUPART_URL, redirect.constData(), CURLU_PATH_AS_IS) != CURLUE_OK) ||
        curl_url_get(handle.get(), part, &text, 0) != CURLUE_OK) {
        return {};
    }
    QByteArray result(text);
    curl_free(text);
    return result;
}

QByteArray WithoutFragment(const QByteArray& url)
{
    const qsizetype mark = url.indexOf('#');
    return mark < 0 ? url : url.left(mark);
}

bool IsLoopback(const QByteArray& host)
{
    const bool isNumber = std::all_of(host.begin(), host.end(),
                                      [](char byte) { return byte == '.' || (byte >= '0' && byte <= '9'); });
    return host.compare("localhost", Qt::CaseInsensitive) == 0 || (isNumber && host.startsWith("127.")) ||
           host == "[::1]";
}

} // namespace

QByteArray WireUrl(const QString& url)
{
    return Escaped(url.toUtf8());
}

struct CurlTransfer::Handles
{
    // The easy handle goes first: it is inside the other while it works.
    MultiHandle multi{curl_multi_init(), &curl_multi_cleanup};
    EasyHandle easy{curl_easy_init(), &curl_easy_cleanup};
    HeaderList headers{nullptr, &curl_slist_free_all};
};

CurlTransfer::CurlTransfer(const QString& url, const HttpLimits& limits, const QByteArray& certificates)
    : m_url(WireUrl(url))
    , m_limits(limits)
    , m_certificates(certificates)
    , m_handles(std::make_unique<Handles>())
{
}

CurlTransfer::~CurlTransfer() = default;

void CurlTransfer::Cancel()
{
    m_cancelled = true;
    curl_multi_wakeup(m_handles->multi.get());
}

Http::Reply CurlTransfer::Run()
{
    m_total.setRemainingTime(m_limits.totalMilliseconds);
    for (int redirects = 0; redirects <= kMostRedirects; ++redirects) {
        const bool isWhole = Request(false);
        if (!m_isRedirect) {
            return isWhole ? Http::Reply(m_body) : std::nullopt;
        }
        if (!FollowRedirect()) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

bool CurlTransfer::Reach()
{
    m_total.setRemainingTime(m_limits.totalMilliseconds);
    m_onlyReach = true;
    Request(true);
    return m_answered;
}

bool CurlTransfer::Request(bool asksAnew)
{
    m_body.clear();
    m_headBytes = 0;
    m_isRedirect = false;
    CURL* const easy = m_handles->easy.get();
    if (easy == nullptr || m_handles->multi == nullptr) {
        return false;
    }
    curl_easy_reset(easy);
    SetTarget();
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "DuskBeacon/1.0.5");
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // What a proxy says of the way to a server is no answer of the server.
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    // A look-up of a name can't be interrupted; given up, it ends by itself and holds up nobody.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &CurlTransfer::OnHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlTransfer::OnBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    if (!m_certificates.isEmpty()) {
        curl_easy_setopt(easy, CURLOPT_CAINFO, m_certificates.constData());
    }
    if (asksAnew) {
        // A cache on the way would answer although the world can't be reached.
        m_handles->headers.reset(curl_slist_append(nullptr, "Cache-Control: no-cache"));
        curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_handles->headers.get());
    }
    return Perform();
}

void CurlTransfer::SetTarget()
{
    CURL* const easy = m_handles->easy.get();
    const QByteArray host = UrlPart(m_url, CURLUPART_HOST);
    if (IsLoopback(host)) {
        // What the environment says of proxies is not meant for this computer itself.
        curl_easy_setopt(easy, CURLOPT_PROXY, "");
    }
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    const qsizetype mark = m_url.indexOf('#');
    if (mark < 0) {
        curl_easy_setopt(easy, CURLOPT_URL, m_url.constData());
        return;
    }
    // A "#" in what a user typed is a part of the value and no fragment; a proxy would cut it off.
    const QByteArray address = m_url.left(mark);
    qsizetype path = address.indexOf("://") + 3;
    while (path < mark && m_url[path] != '/' && m_url[path] != '?') {
        ++path;
    }
    const QByteArray target = m_url.mid(path);
    curl_easy_setopt(easy, CURLOPT_URL, address.constData());
    curl_easy_setopt(easy, CURLOPT_HTTPPROXYTUNNEL, 1L);
    curl_easy_setopt(easy, CURLOPT_REQUEST_TARGET,
                     (target.startsWith('/') ? target : '/' + target).constData());
}

int CurlTransfer::MillisecondsLeft() const
{
    return static_cast<int>(std::min(m_total.remainingTime(), m_silence.remainingTime()));
}

bool CurlTransfer::Perform()
{
    CURLM* const multi = m_handles->multi.get();
    CURL* const easy = m_handles->easy.get();
    curl_multi_add_handle(multi, easy);
    m_silence.setRemainingTime(m_limits.silenceMilliseconds);
    bool isWhole = false;
    int running = 1;
    while (running > 0 && !m_cancelled) {
        if (curl_multi_perform(multi, &running) != CURLM_OK) {
            break;
        }
        int left = 0;
        if (const CURLMsg* const message = curl_multi_info_read(multi, &left); message != nullptr) {
            isWhole = message->msg == CURLMSG_DONE && message->data.result == CURLE_OK;
            break;
        }
        const int wait = MillisecondsLeft();
        if (wait == 0) {
            break;
        }
        curl_multi_poll(multi, nullptr, 0, std::min(wait, kLongestPollMilliseconds), nullptr);
    }
    curl_multi_remove_handle(multi, easy);
    return isWhole;
}

bool CurlTransfer::FollowRedirect()
{
    // A fragment of a redirect is the browser's business, unlike a "#" of ours.
    const QByteArray target =
        WithoutFragment(UrlPart(WithoutFragment(m_url), CURLUPART_URL, Escaped(m_location)));
    const QByteArray scheme = UrlPart(target, CURLUPART_SCHEME);
    if (scheme != "https" && (scheme != "http" || UrlPart(m_url, CURLUPART_SCHEME) != "http")) {
        return false;
    }
    m_url = target;
    return true;
}

long CurlTransfer::Status() const
{
    long status = 0;
    curl_easy_getinfo(m_handles->easy.get(), CURLINFO_RESPONSE_CODE, &status);
    return status;
}

bool CurlTransfer::TakeHeader(const QByteArray& line)
{
    m_silence.setRemainingTime(m_limits.silenceMilliseconds);
    m_headBytes += line.size();
    if (line.startsWith("HTTP/")) {
        m_answered = true;
        m_location.clear();
    } else if (line.left(9).compare("location:", Qt::CaseInsensitive) == 0) {
        m_location = line.mid(9).trimmed();
    } else if (line.trimmed().isEmpty() && !m_location.isEmpty()) {
        constexpr long kRedirects[] = {301, 302, 303, 307, 308};
        m_isRedirect =
            std::find(std::begin(kRedirects), std::end(kRedirects), Status()) != std::end(kRedirects);
    }
    return !m_onlyReach && !m_isRedirect && m_headBytes <= kLongestHead;
}

std::size_t CurlTransfer::OnHeader(char* bytes, std::size_t size, std::size_t count, void* self)
{
    const QByteArray line(bytes, static_cast<qsizetype>(size * count));
    return static_cast<CurlTransfer*>(self)->TakeHeader(line) ? size * count : 0;
}

std::size_t CurlTransfer::OnBody(char* bytes, std::size_t size, std::size_t count, void* self)
{
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.m_silence.setRemainingTime(transfer.m_limits.silenceMilliseconds);
    const std::size_t taken = size * count;
    const auto length = static_cast<qsizetype>(taken);
    if (transfer.m_body.size() + length > transfer.m_limits.bytes) {
        return 0;
    }
    transfer.m_body.append(bytes, length);
    return taken;
}
