// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ArgumentChecks.h"

#include "messages/Address.h"
#include "protocol/Announcements.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string>

namespace beacond {

std::string CheckVersionNumber(const std::string& text)
{
    return IsVersionNumber(text) ? std::string() : "a number such as 6 is expected";
}

std::string CheckDay(const std::string& text)
{
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    const bool isRead = std::sscanf(text.c_str(), "%4d-%2u-%2u", &year, &month, &day) == 3;
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    const bool isDay = isRead && date.ok() && DayText(std::chrono::sys_days(date)) == text;
    return isDay ? std::string() : "a day such as 2027-03-10 is expected";
}

std::string CheckCountry(const std::string& text)
{
    const bool isCountry = text.size() == 2 &&
                           std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    return isCountry ? std::string() : "two capital letters are expected";
}

std::string CheckPageAddress(const std::string& text)
{
    const bool isHttp = text.starts_with("http://") || text.starts_with("https://");
    const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
    const std::size_t host = text.find("//") + 2;
    const bool hasHost = isHttp && host < text.size() && text[host] != '/';
    return hasHost && isPlain ? std::string() : "an http or https address in ASCII is expected";
}

// The program shows no longer strips; other characters must be numeric entities.
void RequireStrip(const Strip& strip)
{
    constexpr std::size_t kLargest = 16UL * 1024;
    const bool isAscii = std::all_of(strip.html.begin(), strip.html.end(), [](char c) {
        return c == '\n' || c == '\r' || c == '\t' || (c >= ' ' && c < '\x7F');
    });
    if (strip.html.empty() || strip.html.size() > kLargest || !isAscii) {
        throw UsageError("a strip is 1 to 16384 characters of ASCII");
    }
    if (!strip.from.empty() && !strip.until.empty() && strip.until < strip.from) {
        throw UsageError("the last day comes before the first");
    }
}

Address RequireAddress(const std::string& argument)
{
    std::string text = argument;
    if (argument == "-") {
        text.clear();
        std::getline(std::cin, text);
    }
    std::optional<Address> address = ParseAddress(text);
    if (!address) {
        throw UsageError('"' + text +
                         "\" is no mail address, no phone number with its country, and no ntfy topic");
    }
    return *std::move(address);
}

} // namespace beacond
