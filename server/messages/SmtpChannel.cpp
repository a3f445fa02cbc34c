// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/ChannelTypes.h"
#include "messages/CurlPool.h"
#include "messages/MailAddress.h"
#include "messages/MailMessage.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace beacond {

namespace {

struct Upload
{
    std::string_view rest;
    bool isWhole = false; ///< the end of the message may have been sent
};

std::size_t OnUpload(char* buffer, std::size_t, std::size_t count, void* data)
{
    auto& upload = *static_cast<Upload*>(data);
    const std::size_t taken = std::min(count, upload.rest.size());
    std::memcpy(buffer, upload.rest.data(), taken);
    upload.rest.remove_prefix(taken);
    upload.isWhole = upload.rest.empty();
    return taken;
}

SendResult ResultOf(const TransferEnd& end, const Upload& upload)
{
    constexpr long kLastOfSuccess = 299;
    constexpr long kTemporary = 400;
    constexpr long kPermanent = 500;
    if (end.IsWhole() && upload.isWhole && end.status <= kLastOfSuccess) {
        return {Handover::Accepted};
    }
    const std::string reason = end.reason + " (status " + std::to_string(end.status) + ')';
    if (upload.isWhole && end.status < kTemporary) {
        return {Handover::Unknown, reason};
    }
    // Other commands are refused because of the configuration, which the operator can correct.
    const bool isForThisMessage = upload.isWhole || end.reason.starts_with("RCPT failed");
    return {isForThisMessage && end.status >= kPermanent ? Handover::Refused : Handover::RetryLater, reason};
}

class SmtpChannel final : public Channel
{
public:
    explicit SmtpChannel(const ChannelOptions& options)
        : Channel(options)
        , m_url((options.tls == "tls" ? "smtps://" : "smtp://") + options.server + '/' +
                options.from.substr(options.from.find('@') + 1))
        , m_usesStartTls(options.tls == "starttls")
        , m_user(options.user)
        , m_password(ReadSecret(options.passwordFile))
        , m_sender{options.from, options.replyTo}
        , m_pool(options, "smtp,smtps", IsAborted())
    {
    }

private:
    SendResult SendNow(const OutgoingMessage& message) override
    {
        if (NormalisedMailAddress(message.address) != message.address) {
            return {Handover::Refused, "not a mail address"};
        }
        const std::string mail = MailText(m_sender, message, std::chrono::system_clock::now());
        Upload upload{mail};
        CurlList recipients;
        recipients.Add('<' + message.address + '>');
        const TransferEnd end = m_pool.Perform([&](CURL* handle) {
            curl_easy_setopt(handle, CURLOPT_URL, m_url.c_str());
            curl_easy_setopt(handle, CURLOPT_USE_SSL,
                             long{m_usesStartTls ? CURLUSESSL_ALL : CURLUSESSL_NONE});
            if (!m_user.empty()) {
                curl_easy_setopt(handle, CURLOPT_USERNAME, m_user.c_str());
                curl_easy_setopt(handle, CURLOPT_PASSWORD, m_password.c_str());
            }
            curl_easy_setopt(handle, CURLOPT_MAIL_FROM, ('<' + m_sender.from + '>').c_str());
            curl_easy_setopt(handle, CURLOPT_MAIL_RCPT, recipients.Get());
            curl_easy_setopt(handle, CURLOPT_SASL_IR, 1L);
            curl_easy_setopt(handle, CURLOPT_UPLOAD, 1L);
            curl_easy_setopt(handle, CURLOPT_READFUNCTION, &OnUpload);
            curl_easy_setopt(handle, CURLOPT_READDATA, &upload);
        });
        return ResultOf(end, upload);
    }

    const std::string m_url;
    const bool m_usesStartTls;
    const std::string m_user;
    const std::string m_password;
    const MailSender m_sender;
    CurlPool m_pool;
};

} // namespace

std::unique_ptr<Channel> MakeSmtpChannel(const ChannelOptions& options)
{
    return std::make_unique<SmtpChannel>(options);
}

} // namespace beacond
