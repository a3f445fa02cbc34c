// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Hook.h"

#include "http/Query.h"
#include "support/Ascii.h"
#include "support/Utf8.h"

#include <boost/json.hpp>
#include <sodium.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <functional>
#include <iterator>

namespace beacond {

namespace {

namespace json = boost::json;

constexpr std::size_t kShortestSecret = 16;
constexpr std::size_t kLongestSecret = 4'096;
constexpr std::size_t kLongestId = 512;

using Mac = std::array<unsigned char, crypto_auth_hmacsha256_BYTES>;

const unsigned char* Bytes(std::string_view text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::string ReadSecret(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string content(kLongestSecret, '\0');
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(stream.gcount()));
    std::string secret(Trimmed(content, " \t\r\n"));
    if (secret.size() < kShortestSecret) {
        throw HookError(file.string() + ": a secret of at least 16 characters is expected");
    }
    return secret;
}

Mac MacOf(std::string_view secret, std::string_view text)
{
    Mac mac{};
    crypto_auth_hmacsha256_state state{};
    crypto_auth_hmacsha256_init(&state, Bytes(secret), secret.size());
    crypto_auth_hmacsha256_update(&state, Bytes(text), text.size());
    crypto_auth_hmacsha256_final(&state, mac.data());
    return mac;
}

bool AreSame(const Mac& left, const Mac& right)
{
    return sodium_memcmp(left.data(), right.data(), left.size()) == 0;
}

std::optional<Mac> DecodedMac(std::string_view text)
{
    constexpr std::string_view kLabel = "sha256=";
    if (text.starts_with(kLabel)) {
        text.remove_prefix(kLabel.size());
    }
    Mac mac{};
    std::size_t size = 0;
    const char* end = nullptr;
    const bool isHex = text.size() == 2 * mac.size();
    const int result =
        isHex ? sodium_hex2bin(mac.data(), mac.size(), text.data(), text.size(), nullptr, &size, &end)
              : sodium_base642bin(mac.data(), mac.size(), text.data(), text.size(), nullptr, &size, &end,
                                  sodium_base64_VARIANT_ORIGINAL);
    const bool isWhole = result == 0 && size == mac.size() && end == text.data() + text.size();
    return isWhole ? std::optional(mac) : std::nullopt;
}

// The text or number at the end of a path of names and positions; empty if there is none.
std::string ValueAt(const json::value& root, std::string_view path)
{
    const json::value* value = &root;
    while (value != nullptr && !path.empty()) {
        const std::size_t dot = std::min(path.find('.'), path.size());
        const std::string_view step = path.substr(0, dot);
        path.remove_prefix(std::min(dot + 1, path.size()));
        if (const json::object* const object = value->if_object()) {
            value = object->if_contains(json::string_view(step.data(), step.size()));
        } else if (const json::array* const items = value->if_array()) {
            std::size_t position = items->size();
            std::from_chars(step.data(), step.data() + step.size(), position);
            value = items->if_contains(position);
        } else {
            value = nullptr;
        }
    }
    if (value == nullptr || value->is_object() || value->is_array()) {
        return {};
    }
    const json::string* const text = value->if_string();
    return text != nullptr ? std::string(text->data(), text->size()) : json::serialize(*value);
}

using Fields = std::function<std::string(const std::string& name)>;

// Nothing if the body is malformed.
Fields FieldsOf(const std::string& format, std::string_view body)
{
    if (format == "json") {
        boost::system::error_code failure;
        json::value root = json::parse(json::string_view(body.data(), body.size()), failure);
        if (failure) {
            return {};
        }
        return [root = std::move(root)](const std::string& name) { return ValueAt(root, name); };
    }
    return [body](const std::string& name) { return Query(body, Query::Plus::Space).Value(name); };
}

std::optional<int> Number(std::string_view text)
{
    int number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = failure == std::errc() && end == text.data() + text.size() && IsDigit(text[0]);
    return isWhole ? std::optional(number) : std::nullopt;
}

// "Z", or an offset in hours and minutes, in minutes.
std::optional<std::chrono::minutes> ParseOffset(std::string_view text)
{
    if (text == "Z" || text == "z") {
        return std::chrono::minutes(0);
    }
    const bool isEast = text.starts_with('+');
    if (text.size() < 5 || (!isEast && text[0] != '-')) {
        return std::nullopt;
    }
    const std::optional<int> hours = Number(text.substr(1, 2));
    const std::optional<int> minutes = Number(text.substr(text[3] == ':' ? 4 : 3));
    if (!hours || !minutes || *hours > 23 || *minutes > 59) {
        return std::nullopt;
    }
    const std::chrono::minutes offset(*hours * 60 + *minutes);
    return isEast ? offset : -offset;
}

} // namespace

std::optional<std::chrono::sys_seconds> ParseMessageTime(std::string_view text)
{
    using namespace std::chrono;
    constexpr std::size_t kMostDigits = 13;
    constexpr std::size_t kDigitsOfMilliseconds = 13;
    if (!text.empty() && text.size() <= kMostDigits && std::all_of(text.begin(), text.end(), &IsDigit)) {
        std::int64_t number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        return sys_seconds(seconds(text.size() == kDigitsOfMilliseconds ? number / 1000 : number));
    }
    constexpr std::size_t kSeconds = 19; // "2026-11-22T10:00:00"
    if (text.size() <= kSeconds || (text[10] != 'T' && text[10] != ' ')) {
        return std::nullopt;
    }
    const auto field = [text](std::size_t begin, std::size_t size) {
        return Number(text.substr(begin, size));
    };
    const auto yearNumber = field(0, 4);
    const auto monthNumber = field(5, 2);
    const auto dayNumber = field(8, 2);
    const auto hour = field(11, 2);
    const auto minute = field(14, 2);
    const auto second = field(17, 2);
    std::string_view rest = text.substr(kSeconds);
    if (rest.starts_with('.')) {
        rest.remove_prefix(std::min(rest.find_first_not_of("0123456789", 1), rest.size()));
    }
    const auto offset = ParseOffset(rest);
    if (!yearNumber || !monthNumber || !dayNumber || !hour || !minute || !second || !offset) {
        return std::nullopt;
    }
    const year_month_day date{year(*yearNumber), month(static_cast<unsigned>(*monthNumber)),
                              day(static_cast<unsigned>(*dayNumber))};
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    return sys_days(date) + hours(*hour) + minutes(*minute) + seconds(*second) - *offset;
}

Hook::Hook(HookOptions options)
    : m_options(std::move(options))
    , m_secret(ReadSecret(m_options.secretFile))
{
}

bool Hook::IsGenuine(std::string_view proof, std::string_view body) const
{
    if (m_options.proof == "secret") {
        // Hashes have one length: the comparison of the texts would reveal that of the secret.
        return AreSame(MacOf(m_secret, proof), MacOf(m_secret, m_secret));
    }
    const std::optional<Mac> mac = DecodedMac(Trimmed(proof));
    return mac && AreSame(*mac, MacOf(m_secret, body));
}

std::optional<HookMessage> Hook::Read(std::string_view body) const
{
    const Fields fields = FieldsOf(m_options.format, body);
    if (!fields) {
        return std::nullopt;
    }
    HookMessage message;
    message.id = fields(m_options.id);
    if (!m_options.time.empty()) {
        message.time = ParseMessageTime(fields(m_options.time));
    }
    if (message.id.empty() || message.id.size() > kLongestId ||
        message.time.has_value() == m_options.time.empty()) {
        return std::nullopt;
    }
    std::string text = fields(m_options.text);
    std::optional<std::string> sender =
        NormalisedPhoneNumber(m_options.senderPrefix + fields(m_options.sender));
    if (sender && IsValidUtf8(text)) {
        message.text = IncomingText{{AddressKind::Sms, std::move(*sender)}, {}, std::move(text)};
    }
    return message;
}

} // namespace beacond
