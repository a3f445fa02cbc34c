// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/ChannelOptions.h"

#include "support/Ascii.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace beacond {

namespace {

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsName(std::string_view text)
{
    constexpr std::size_t kLongest = 32;
    return !text.empty() && text.size() <= kLongest && std::all_of(text.begin(), text.end(), [](char c) {
        return IsLetterOrDigit(c) || c == '-' || c == '_';
    });
}

} // namespace

std::optional<ChannelProblem> ProblemOf(const ChannelOptions& options)
{
    if (!IsName(options.name)) {
        return ChannelProblem{"name", "up to 32 letters, digits, hyphens and underscores are expected"};
    }
    if (!IsOneOf(options.type, {"smtp", "ntfy", "http", "spool"})) {
        return ChannelProblem{"type", R"("smtp", "ntfy", "http" or "spool" is expected)"};
    }
    if (!IsOneOf(options.kind, {"mail", "sms", "ntfy"})) {
        return ChannelProblem{"kind", R"("mail", "sms" or "ntfy" is expected)"};
    }
    if (options.type == "spool" && options.folder.empty()) {
        return ChannelProblem{"folder", "a path is expected"};
    }
    return std::nullopt;
}

} // namespace beacond
