// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The channels that send a message by an HTTP request: to an SMS provider by the operator's template, or to a
// topic of an ntfy server.
#include "messages/ChannelTypes.h"
#include "messages/CurlPool.h"
#include "messages/HttpTemplate.h"
#include "support/Ascii.h"

#include <algorithm>
#include <fstream>
#include <string_view>

namespace beacond {

namespace {

bool Contains(const std::vector<std::int64_t>& numbers, long number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

TransferEnd Send(CurlPool& pool, const std::string& method, const ProviderRequest& request)
{
    CurlList headers;
    headers.Add("Expect:");
    for (const std::string& header : request.headers) {
        headers.Add(header);
    }
    return pool.Perform([&](CURL* handle) {
        curl_easy_setopt(handle, CURLOPT_URL, request.url.c_str());
        curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers.Get());
        curl_easy_setopt(handle, CURLOPT_USERAGENT, "dusk-beacond");
        if (method != "GET") {
            curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE,
                             static_cast<curl_off_t>(request.body.size()));
            curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body.c_str());
            curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, method.c_str());
        }
    });
}

// By the rules for replies in server/service.toml.example.
SendResult ResultOf(const TransferEnd& end, const ChannelOptions& options)
{
    const auto has = [&](const std::string& text) {
        return !text.empty() && end.reply.find(text) != std::string::npos;
    };
    const std::string reason =
        (end.reason.empty() ? "" : end.reason + ", ") + "status " + std::to_string(end.status);
    if (end.status == 0) {
        return {end.hasBegun ? Handover::Unknown : Handover::RetryLater, end.reason};
    }
    if (Contains(options.refused, end.status) || has(options.refusedText)) {
        return {Handover::Refused, reason};
    }
    if (Contains(options.accepted, end.status)) {
        if (options.acceptedText.empty() || has(options.acceptedText)) {
            return {Handover::Accepted};
        }
        return {Handover::Unknown, reason + ", other text"};
    }
    // The request has arrived: an error of the provider does not tell whether the message was taken before.
    return {Contains(options.notTaken, end.status) ? Handover::RetryLater : Handover::Unknown, reason};
}

class HttpChannel final : public Channel
{
public:
    explicit HttpChannel(const ChannelOptions& options)
        : Channel(options)
        , m_options(options)
        , m_secret(ReadSecret(options.secretFile))
        , m_pool(options, "http,https", IsAborted())
    {
    }

private:
    SendResult SendNow(const OutgoingMessage& message) override
    {
        const std::optional<ProviderRequest> request = FillTemplate(m_options, message, m_secret);
        if (!request) {
            return {Handover::Refused, "the address can't stand in a header field"};
        }
        return ResultOf(beacond::Send(m_pool, m_options.method, *request), m_options);
    }

    const ChannelOptions m_options;
    const std::string m_secret;
    CurlPool m_pool;
};

class NtfyChannel final : public Channel
{
public:
    explicit NtfyChannel(const ChannelOptions& options)
        : Channel(options)
        , m_options(options)
        , m_token(ReadSecret(options.secretFile))
        , m_pool(options, "http,https", IsAborted())
    {
    }

private:
    SendResult SendNow(const OutgoingMessage& message) override
    {
        if (!IsAllowed(message.address)) {
            return {Handover::Refused, "not a topic of a listed server"};
        }
        ProviderRequest request{message.address, {"Content-Type: text/plain; charset=utf-8"}, message.text};
        if (!m_token.empty()) {
            request.headers.push_back("Authorization: Bearer " + m_token);
        }
        return ResultOf(beacond::Send(m_pool, "POST", request), m_options);
    }

    [[nodiscard]] bool IsAllowed(std::string_view address) const
    {
        constexpr std::size_t kLongestTopic = 64;
        return std::any_of(m_options.servers.begin(), m_options.servers.end(), [&](std::string_view server) {
            if (!address.starts_with(server) || !address.substr(server.size()).starts_with('/')) {
                return false;
            }
            const std::string_view topic = address.substr(server.size() + 1);
            return !topic.empty() && topic.size() <= kLongestTopic &&
                   std::all_of(topic.begin(), topic.end(),
                               [](char c) { return IsLetterOrDigit(c) || c == '-' || c == '_'; });
        });
    }

    const ChannelOptions m_options;
    const std::string m_token;
    CurlPool m_pool;
};

} // namespace

std::string ReadSecret(const std::filesystem::path& file)
{
    if (file.empty()) {
        return {};
    }
    constexpr std::size_t kLongest = 4096;
    std::ifstream stream(file, std::ios::binary);
    std::string secret;
    const bool isRead = std::filesystem::is_regular_file(file) && std::getline(stream, secret);
    const bool isUsable =
        isRead && !secret.empty() && secret.size() <= kLongest &&
        std::all_of(secret.begin(), secret.end(), [](char c) { return c >= ' ' && c < '\x7F'; });
    if (!isUsable) {
        throw ChannelError(file.string() + ": one line of printable ASCII is expected");
    }
    return secret;
}

std::unique_ptr<Channel> MakeHttpChannel(const ChannelOptions& options)
{
    return std::make_unique<HttpChannel>(options);
}

std::unique_ptr<Channel> MakeNtfyChannel(const ChannelOptions& options)
{
    return std::make_unique<NtfyChannel>(options);
}

} // namespace beacond
