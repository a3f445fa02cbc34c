// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/HttpTemplate.h"

#include "messages/Channel.h"
#include "support/Ascii.h"

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <utility>

namespace beacond {

namespace {

using Encoder = std::string (*)(std::string_view);

constexpr std::array<std::string_view, 7> kNames = {"{address}", "{number}",   "{text}",  "{subject}",
                                                    "{id}",      "{language}", "{secret}"};
constexpr std::string_view kDigits = "0123456789ABCDEF";

// The placeholder at the start of the text; empty for none.
std::string_view PlaceholderAt(std::string_view text)
{
    const auto found = std::find_if(kNames.begin(), kNames.end(),
                                    [&](std::string_view name) { return text.starts_with(name); });
    return found == kNames.end() ? std::string_view() : *found;
}

bool HasPlaceholder(std::string_view text)
{
    return std::any_of(kNames.begin(), kNames.end(),
                       [&](std::string_view name) { return text.find(name) != std::string_view::npos; });
}

// For a URL and for a form.
std::string PercentEncoded(std::string_view text)
{
    constexpr std::string_view kUnreserved = "-._~";
    std::string encoded;
    for (const char c : text) {
        if (IsLetterOrDigit(c) || kUnreserved.find(c) != std::string_view::npos) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
        }
    }
    return encoded;
}

// For the inside of a JSON string.
std::string JsonEscaped(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            escaped += {'\\', c};
        } else if (byte < 0x20 || byte == 0x7F) {
            escaped += std::string("\\u00") + kDigits[byte >> 4U] + kDigits[byte & 15U];
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::string AsItIs(std::string_view text)
{
    return std::string(text);
}

std::string_view ValueOf(std::string_view placeholder, const OutgoingMessage& message,
                         std::string_view secret)
{
    const std::string_view address = message.address;
    const std::array<std::string_view, kNames.size()> values = {
        address,      address.substr(address.starts_with('+') ? 1 : 0),
        message.text, message.subject,
        message.id,   message.language,
        secret};
    return values[static_cast<std::size_t>(std::find(kNames.begin(), kNames.end(), placeholder) -
                                           kNames.begin())];
}

// One pass: a placeholder in a value is text.
std::string Filled(std::string_view pattern, const OutgoingMessage& message, std::string_view secret,
                   Encoder encode)
{
    std::string filled;
    while (!pattern.empty()) {
        const std::string_view placeholder = PlaceholderAt(pattern);
        if (placeholder.empty()) {
            filled += pattern.front();
            pattern.remove_prefix(1);
        } else {
            filled += encode(ValueOf(placeholder, message, secret));
            pattern.remove_prefix(placeholder.size());
        }
    }
    return filled;
}

bool IsPrintable(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < '\x7F'; });
}

const std::string& BodyOf(const ChannelOptions& options, const std::string& language)
{
    const auto found = options.bodies.find(language);
    return found == options.bodies.end() ? options.body : found->second;
}

Encoder EncoderOfBody(const std::string& type)
{
    return type == "json" ? &JsonEscaped : type == "form" ? &PercentEncoded : &AsItIs;
}

bool IsHeaderName(std::string_view name)
{
    return !name.empty() && std::all_of(name.begin(), name.end(),
                                        [](char c) { return IsLetterOrDigit(c) || c == '-' || c == '_'; });
}

std::string InLowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), &ToLower);
    return lower;
}

std::optional<std::string> ProblemOfHeader(const std::string& header)
{
    const std::size_t colon = header.find(':');
    if (colon == std::string::npos || !IsHeaderName(std::string_view(header).substr(0, colon)) ||
        !IsPrintable(header)) {
        return "\"Name: value\" in ASCII is expected, without a placeholder in the name";
    }
    // These fields determine where the request goes and where it ends.
    const std::string name = InLowerCase(header.substr(0, colon));
    for (const char* const own : {"host", "content-length", "transfer-encoding", "connection", "expect"}) {
        if (name == own) {
            return "the field \"" + name + "\" can't be set";
        }
    }
    for (const char* const unfit : {"{text}", "{subject}"}) {
        if (header.find(unfit) != std::string::npos) {
            return std::string(unfit) + " can't stand in a header field";
        }
    }
    return std::nullopt;
}

// A value outside a string could change the structure.
bool IsEachPlaceholderInAString(std::string_view json)
{
    bool isInString = false;
    while (!json.empty()) {
        if (json.front() == '\\' && isInString && json.size() > 1) {
            json.remove_prefix(2);
            continue;
        }
        if (!isInString && !PlaceholderAt(json).empty()) {
            return false;
        }
        isInString = isInString != (json.front() == '"');
        json.remove_prefix(1);
    }
    return !isInString;
}

std::optional<ChannelProblem> ProblemOfBody(const ChannelOptions& options, const std::string& key,
                                            const std::string& body)
{
    if (options.bodyType == "json" && !IsEachPlaceholderInAString(body)) {
        return ChannelProblem{key, "in JSON each placeholder stands in quotes"};
    }
    return std::nullopt;
}

} // namespace

bool IsLoopbackHost(std::string_view host)
{
    const bool isNumber =
        std::all_of(host.begin(), host.end(), [](char c) { return IsDigit(c) || c == '.'; });
    return host == "localhost" || host == "[::1]" || host == "::1" || (isNumber && host.starts_with("127."));
}

std::optional<std::string> ProblemOfAddress(const std::string& url)
{
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> parsed(curl_url(), &curl_url_cleanup);
    const auto part = [&](CURLUPart which) {
        char* text = nullptr;
        const bool isThere = curl_url_get(parsed.get(), which, &text, 0) == CURLUE_OK;
        std::string copy = isThere ? text : "";
        curl_free(text);
        return copy;
    };
    if (!IsPrintable(url) || url.find(' ') != std::string::npos ||
        curl_url_set(parsed.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK ||
        !part(CURLUPART_USER).empty() || !part(CURLUPART_PASSWORD).empty()) {
        return "an https address is expected, without a user name";
    }
    const std::string scheme = part(CURLUPART_SCHEME);
    if (scheme != "https" && (scheme != "http" || !IsLoopbackHost(part(CURLUPART_HOST)))) {
        return "an https address is expected; http is for the loopback only";
    }
    return std::nullopt;
}

std::optional<ChannelProblem> ProblemOfTemplate(const ChannelOptions& options)
{
    const std::size_t host = options.url.find("://");
    const std::size_t path =
        host == std::string::npos ? std::string::npos : options.url.find_first_of("/?#", host + 3);
    if (HasPlaceholder(options.url.substr(0, path))) {
        return ChannelProblem{"url", "a placeholder can't stand in the scheme or in the host"};
    }
    const OutgoingMessage sample{"a", "a", "a", "a", "a"};
    const std::string url = Filled(options.url, sample, "a", &PercentEncoded);
    if (const auto problem = ProblemOfAddress(url)) {
        return ChannelProblem{"url", *problem};
    }
    if (url.find_first_of("{}") != std::string::npos) {
        return ChannelProblem{"url", "unknown placeholder"};
    }
    for (const std::string& header : options.headers) {
        if (const auto problem = ProblemOfHeader(header)) {
            return ChannelProblem{"headers", *problem};
        }
    }
    for (const auto& [language, body] : options.bodies) {
        if (auto problem = ProblemOfBody(options, "bodies", body)) {
            return problem;
        }
    }
    return ProblemOfBody(options, "body", options.body);
}

std::optional<ProviderRequest> FillTemplate(const ChannelOptions& options, const OutgoingMessage& message,
                                            std::string_view secret)
{
    ProviderRequest request;
    request.url = Filled(options.url, message, secret, &PercentEncoded);
    bool hasType = false;
    for (const std::string& header : options.headers) {
        const std::string& filled = request.headers.emplace_back(Filled(header, message, secret, &AsItIs));
        if (!IsPrintable(filled)) {
            return std::nullopt;
        }
        hasType = hasType || InLowerCase(header).starts_with("content-type:");
    }
    if (options.method != "GET") {
        request.body =
            Filled(BodyOf(options, message.language), message, secret, EncoderOfBody(options.bodyType));
        if (!hasType) {
            request.headers.emplace_back(options.bodyType == "json" ? "Content-Type: application/json"
                                         : options.bodyType == "form"
                                             ? "Content-Type: application/x-www-form-urlencoded"
                                             : "Content-Type: text/plain; charset=utf-8");
        }
    }
    return request;
}

} // namespace beacond
