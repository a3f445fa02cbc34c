// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/MailMessage.h"

#include "messages/Channel.h"
#include "support/Base64.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace beacond {

namespace {

constexpr std::size_t kBase64Line = 76;
// Base64 of 42 bytes, with "=?UTF-8?B?" and "?=", is below the limit of 75 characters for an encoded word.
constexpr std::size_t kBytesOfAWord = 42;

bool IsControl(char c)
{
    return (c >= '\0' && c < ' ') || c == '\x7F';
}

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Names of days and months that do not depend on the locale.
std::string DateText(std::chrono::system_clock::time_point date)
{
    constexpr std::array kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
    std::tm utc{};
    ::gmtime_r(&seconds, &utc);
    std::array<char, 32> rest{};
    (void)std::strftime(rest.data(), rest.size(), " %Y %H:%M:%S +0000", &utc);
    return std::string(kDays[static_cast<std::size_t>(utc.tm_wday)]) + ", " + std::to_string(utc.tm_mday) +
           ' ' + kMonths[static_cast<std::size_t>(utc.tm_mon)] + rest.data();
}

std::string InLines(std::string_view base64)
{
    std::string lines;
    for (; !base64.empty(); base64.remove_prefix(std::min(kBase64Line, base64.size()))) {
        lines.append(base64.substr(0, kBase64Line)).append("\r\n");
    }
    return lines;
}

std::string WithoutBreaks(std::string_view text)
{
    std::string line(text);
    std::replace_if(line.begin(), line.end(), &IsControl, ' ');
    return line;
}

// Whether each line can be sent without an encoding.
bool IsPlain(std::string_view text)
{
    constexpr std::size_t kLongestLine = 78; // RFC 5322, section 2.1.1
    std::size_t length = 0;
    return std::all_of(text.begin(), text.end(), [&length](char c) {
        length = c == '\n' ? 0 : length + 1;
        return length <= kLongestLine && (c == '\n' || (c >= ' ' && c < '\x7F'));
    });
}

} // namespace

std::string HeaderText(std::string_view text)
{
    constexpr std::size_t kLongestPlain = 60;
    std::string line = WithoutBreaks(text);
    const bool isAscii =
        std::none_of(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (isAscii && line.size() <= kLongestPlain && line.find("=?") == std::string::npos) {
        return line;
    }
    std::string words;
    for (std::size_t begin = 0; begin < line.size();) {
        std::size_t end = std::min(begin + kBytesOfAWord, line.size());
        // A word holds whole characters.
        while (end < line.size() && end > begin + 1 && IsContinuation(line[end])) {
            --end;
        }
        words += (words.empty() ? "=?UTF-8?B?" : "\r\n =?UTF-8?B?") +
                 EncodeBase64(std::string_view(line).substr(begin, end - begin)) + "?=";
        begin = end;
    }
    return words;
}

std::string MailText(const MailSender& sender, const OutgoingMessage& message,
                     std::chrono::system_clock::time_point date)
{
    const std::string from = WithoutBreaks(sender.from);
    const std::string domain = from.substr(from.find('@') + 1);
    std::string mail = "Date: " + DateText(date) + "\r\nFrom: Dusk Beacon <" + from + ">\r\nTo: <" +
                       WithoutBreaks(message.address) + ">\r\nSubject: " + HeaderText(message.subject) +
                       "\r\nMessage-ID: <" + WithoutBreaks(message.id) + '@' + domain +
                       ">\r\nAuto-Submitted: auto-generated\r\n";
    if (const std::string replyTo = WithoutBreaks(sender.replyTo); !replyTo.empty()) {
        mail += "Reply-To: <" + replyTo + ">\r\nList-Unsubscribe: <mailto:" + replyTo + "?subject=STOP>\r\n";
    }
    std::string text;
    for (const char c : message.text + '\n') {
        text += c == '\n' ? "\r\n" : std::string(1, c);
    }
    const bool isPlain = IsPlain(message.text);
    return mail +
           "MIME-Version: 1.0\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: " +
           (isPlain ? "7bit\r\n\r\n" + text : "base64\r\n\r\n" + InLines(EncodeBase64(text)));
}

} // namespace beacond
