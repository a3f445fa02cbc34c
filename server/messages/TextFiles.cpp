// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/TextFiles.h"

#include "support/Ascii.h"
#include "support/Utf8.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <map>
#include <vector>

namespace beacond {

namespace {

// A long message has 10 parts at most on most phones; a wish stands at its beginning.
constexpr std::size_t kLongestText = 16UL * 1024;

std::string FromBytes(std::string_view bytes)
{
    return IsValidUtf8(bytes) ? std::string(bytes) : FromWindows1252(bytes);
}

std::string FromUtf16(std::string_view bytes, bool isBigEndian)
{
    icu::UnicodeString text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto high = static_cast<unsigned char>(bytes[isBigEndian ? i : i + 1]);
        const auto low = static_cast<unsigned char>(bytes[isBigEndian ? i + 1 : i]);
        text.append(static_cast<char16_t>(high * 256U + low));
    }
    std::string result;
    text.toUTF8String(result); // a lone surrogate becomes U+FFFD
    return result;
}

std::optional<IncomingText> TextFrom(std::string_view number, std::string text)
{
    std::optional<std::string> sender = NormalisedPhoneNumber(number);
    if (!sender) {
        return std::nullopt;
    }
    return IncomingText{{AddressKind::Sms, std::move(*sender)}, {}, std::move(text)};
}

std::vector<std::string_view> SplitAt(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

} // namespace

std::optional<IncomingText> ReadGammuFile(std::string_view name, std::string_view content)
{
    constexpr std::string_view kEnd = ".txt";
    constexpr std::size_t kParts = 5;
    if (!name.starts_with("IN") || !name.ends_with(kEnd)) {
        return std::nullopt;
    }
    const std::vector<std::string_view> parts = SplitAt(name.substr(0, name.size() - kEnd.size()), '_');
    if (parts.size() != kParts || parts[4] != "00") {
        return std::nullopt;
    }
    content = content.substr(0, kLongestText);
    const bool isBigEndian = content.starts_with("\xFE\xFF");
    const bool isUtf16 = isBigEndian || content.starts_with("\xFF\xFE");
    return TextFrom(parts[3], isUtf16 ? FromUtf16(content.substr(2), isBigEndian) : FromBytes(content));
}

std::optional<IncomingText> ReadSmstoolsFile(std::string_view content)
{
    std::map<std::string, std::string, std::less<>> fields;
    for (;;) {
        const std::size_t end = content.find('\n');
        if (end == std::string_view::npos) {
            return std::nullopt; // no empty line: the header is not whole
        }
        const std::string_view line = Trimmed(content.substr(0, end), " \t\r");
        content.remove_prefix(end + 1);
        if (line.empty()) {
            break;
        }
        const std::size_t colon = std::min(line.find(':'), line.size());
        std::string name(line.substr(0, colon));
        std::transform(name.begin(), name.end(), name.begin(), &ToLower);
        fields.emplace(std::move(name), Trimmed(line.substr(std::min(colon + 1, line.size())), " \t"));
    }
    std::string alphabet = fields["alphabet"];
    std::transform(alphabet.begin(), alphabet.end(), alphabet.begin(), &ToLower);
    if (fields["report"] == "yes" || alphabet == "binary") {
        return std::nullopt;
    }
    // The number of an international sender is written without its "+"; 91 is the type of such an address.
    const std::string number = (fields["from_toa"].starts_with("91") ? "+" : "") + fields["from"];
    content = content.substr(0, kLongestText);
    const bool isUtf16 = alphabet.starts_with("ucs");
    return TextFrom(number.starts_with("++") ? number.substr(1) : number,
                    isUtf16 ? FromUtf16(content, true) : FromBytes(content));
}

} // namespace beacond
