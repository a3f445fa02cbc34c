// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlTransfer.h"

#include "platform/SystemHttp.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int kMostRedirects = 10;

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

// A part of @p url, or of the target of @p redirect relative to it; empty if that is no valid URL.
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

// Called just before a request is sent. libcurl sends a request again only if a kept connection fails before
// the first line of the reply; this makes it use a fresh connection and no other kept one, hence once.
int OnRequest(void* easy, char* /*remoteIp*/, char* /*localIp*/, int /*remotePort*/, int /*localPort*/)
{
    curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, 1L);
    return CURL_PREREQFUNC_OK;
}

} // namespace

QByteArray WireUrl(const QString& url)
{
    return Escaped(url.toUtf8());
}

CurlTransfer::CurlTransfer(const QString& url, const HttpLimits& limits, const QByteArray& certificates)
    : m_url(WireUrl(url))
    , m_limits(limits)
    , m_certificates(certificates)
{
}

bool CurlTransfer::Prepare()
{
    if (m_total.isForever()) {
        m_total.setRemainingTime(m_limits.totalMilliseconds);
    }
    m_body.clear();
    m_isRedirect = false;
    CURL* const easy = m_easy.get();
    if (easy == nullptr || m_total.hasExpired()) {
        return false;
    }
    curl_easy_reset(easy);
    SetTarget();
    SetLimits();
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "DuskBeacon/1.0.5");
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // The reply of a proxy to CONNECT is no reply of the server.
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    // A name look-up cannot be interrupted: do not wait for its thread.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &OnRequest);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, easy);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &CurlTransfer::OnHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlTransfer::OnBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    UseSystemCertificates(easy, m_onlyReach);
    if (!m_certificates.isEmpty()) {
        curl_easy_setopt(easy, CURLOPT_CAINFO, m_certificates.constData());
    }
    return true;
}

bool CurlTransfer::Reach()
{
    m_onlyReach = true;
    if (!Prepare()) {
        return false;
    }
    CURL* const easy = m_easy.get();
    // A cache would answer even if the server can't be reached.
    const HeaderList headers(curl_slist_append(nullptr, "Cache-Control: no-cache"), &curl_slist_free_all);
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_perform(easy);
    return m_answered;
}

void CurlTransfer::SetLimits()
{
    CURL* const easy = m_easy.get();
    const auto left = static_cast<long>(std::max<qint64>(m_total.remainingTime(), 1));
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, left);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_limits.connectMilliseconds));
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, static_cast<long>(m_limits.silenceSeconds));
}

void CurlTransfer::SetTarget()
{
    CURL* const easy = m_easy.get();
    const QByteArray host = UrlPart(m_url, CURLUPART_HOST);
    if (IsLoopback(host)) {
        // The proxy does not apply to this computer.
        curl_easy_setopt(easy, CURLOPT_PROXY, "");
    } else {
        UseSystemProxy(easy, UrlPart(m_url, CURLUPART_SCHEME), host);
    }
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    const qsizetype mark = m_url.indexOf('#');
    if (mark < 0) {
        curl_easy_setopt(easy, CURLOPT_URL, m_url.constData());
        return;
    }
    // A "#" in a typed value is part of the value and no fragment; a proxy without a tunnel would cut it off.
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

// CURLOPT_FOLLOWLOCATION does not serve: libcurl reads the body of a redirect without a limit, follows
// redirects from http over https back to http, and sends our request target to each server.
bool CurlTransfer::FollowRedirect()
{
    if (!m_isRedirect || ++m_redirects > kMostRedirects) {
        return false;
    }
    // The fragment of a redirect is not sent, unlike a "#" in a URL of the program.
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
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    return status;
}

bool CurlTransfer::TakeHeader(const QByteArray& line)
{
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
    return !m_onlyReach && !m_isRedirect;
}

std::size_t CurlTransfer::OnHeader(char* bytes, std::size_t size, std::size_t count, void* self)
{
    const QByteArray line(bytes, static_cast<qsizetype>(size * count));
    return static_cast<CurlTransfer*>(self)->TakeHeader(line) ? size * count : 0;
}

std::size_t CurlTransfer::OnBody(char* bytes, std::size_t size, std::size_t count, void* self)
{
    auto& transfer = *static_cast<CurlTransfer*>(self);
    const std::size_t taken = size * count;
    const auto length = static_cast<qsizetype>(taken);
    if (transfer.m_body.size() + length > transfer.m_limits.bytes) {
        return 0;
    }
    transfer.m_body.append(bytes, length);
    return taken;
}
