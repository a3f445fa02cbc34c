// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/IncomingText.h"

#include "support/Ascii.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>

namespace beacond {

namespace {

// A wish stands at the beginning of a text; the rest may be the quoted message in a form of its own.
constexpr std::size_t kBytesRead = 2'000;
constexpr std::size_t kMostWords = 100;

// The whole first line. These words end messages in many countries; the pages of the service are in English,
// and the others are the words for it that telephone companies of Muslim countries and of Europe know.
constexpr std::array<std::string_view, 19> kStops = {
    "stop",  "stopall", "stop all", "please stop", "stop please", "unsubscribe", "cancel",
    "end",   "quit",    "arret",    "stopp",       "berhenti",    "dur",         "توقف",
    "ايقاف", "إيقاف",   "الغاء",    "إلغاء",       "بند"};
constexpr std::array<std::string_view, 5> kReplyMarks = {"re", "aw", "fw", "fwd", "tr"};

// Letters and digits in small letters without accents, each other run of characters as one space.
std::string FoldedLine(std::string_view line)
{
    UErrorCode failure = U_ZERO_ERROR;
    const icu::Normalizer2* const folding = icu::Normalizer2::getNFKCCasefoldInstance(failure);
    const icu::Normalizer2* const taking = icu::Normalizer2::getNFDInstance(failure);
    const icu::Normalizer2* const joining = icu::Normalizer2::getNFCInstance(failure);
    const auto read = icu::UnicodeString::fromUTF8({line.data(), static_cast<std::int32_t>(line.size())});
    const icu::UnicodeString text = taking->normalize(folding->normalize(read, failure), failure);
    icu::UnicodeString folded;
    bool isApart = false;
    for (std::int32_t i = 0; U_SUCCESS(failure) && i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 character = text.char32At(i);
        const bool isMark = u_charType(character) == U_NON_SPACING_MARK;
        // Marks of the Latin script are accents; an Arabic hamza belongs to its letter.
        if (isMark && character < 0x0370) {
            continue;
        }
        if (u_isalnum(character) != 0 || isMark) {
            if (isApart && !folded.isEmpty()) {
                folded.append(static_cast<UChar32>(' '));
            }
            isApart = false;
            folded.append(character);
        } else {
            isApart = true;
        }
    }
    std::string result;
    joining->normalize(folded, failure).toUTF8String(result);
    return result;
}

std::string WithoutReplyMark(const std::string& line)
{
    const std::size_t space = line.find(' ');
    const std::string first = line.substr(0, space);
    const bool isMark = std::find(kReplyMarks.begin(), kReplyMarks.end(), first) != kReplyMarks.end();
    return isMark && space != std::string::npos ? line.substr(space + 1) : line;
}

bool IsStop(const std::string& line)
{
    return std::find(kStops.begin(), kStops.end(), line) != kStops.end();
}

bool HasTest(const std::string& line)
{
    return (' ' + line + ' ').find(" test ") != std::string::npos;
}

// The lines that the sender wrote, folded, without empty ones.
std::vector<std::string> OwnLines(std::string_view text)
{
    std::vector<std::string> lines;
    text = text.substr(0, kBytesRead);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view line = Trimmed(text.substr(0, end), " \t");
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line == "--") {
            break; // the signature follows
        }
        if (std::string folded = line.starts_with('>') ? std::string() : FoldedLine(line); !folded.empty()) {
            lines.push_back(std::move(folded));
        }
    }
    return lines;
}

} // namespace

Wish WishOf(std::string_view subject, std::string_view text)
{
    const std::string title = WithoutReplyMark(FoldedLine(subject.substr(0, kBytesRead)));
    const std::vector<std::string> lines = OwnLines(text);
    if (IsStop(title) || (!lines.empty() && IsStop(lines.front()))) {
        return Wish::Stop;
    }
    return HasTest(title) || std::any_of(lines.begin(), lines.end(), &HasTest) ? Wish::SignUp : Wish::None;
}

std::vector<std::string> WordsOf(std::string_view text)
{
    constexpr std::string_view kSpace = " \t\r\n";
    std::vector<std::string> words;
    while (words.size() < kMostWords) {
        text = Trimmed(text, kSpace);
        if (text.empty()) {
            break;
        }
        const std::size_t end = std::min(text.find_first_of(kSpace), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return words;
}

} // namespace beacond
