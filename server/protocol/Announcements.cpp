// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/Announcements.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

namespace beacond {

namespace {

// FNV-1a. The value must stay the same for an installation for ever, so that it can't depend on the version
// of a library.
std::uint64_t StableHash(std::string_view text)
{
    std::uint64_t hash = 14695981039346656037ULL;
    for (const char byte : text) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
    }
    return hash ^ (hash >> 32);
}

bool IsFor(const Strip& strip, std::string_view dist, std::string_view country, const std::string& day)
{
    return (strip.dist.empty() || strip.dist == dist) &&
           (strip.country.empty() || strip.country == country) && (strip.from.empty() || strip.from <= day) &&
           (strip.until.empty() || day <= strip.until);
}

// The whole numbers before and after the point. 1.10 is newer than 1.9; 1 and 1.0 are the same.
using Version = std::array<std::int64_t, 2>;

Version VersionOf(std::string_view text)
{
    Version parts{};
    if (IsVersionNumber(text)) {
        const char* const end = text.data() + text.size();
        const char* const point = std::from_chars(text.data(), end, parts[0]).ptr;
        if (point != end) {
            std::from_chars(point + 1, end, parts[1]);
        }
    }
    return parts;
}

std::pair<Version, Version> VersionOf(std::string_view name, std::string_view sequence)
{
    return {VersionOf(name), VersionOf(sequence)};
}

} // namespace

std::string DayText(std::chrono::sys_seconds time)
{
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(time));
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
    return text.data();
}

int WaitMinutes(std::string_view identifier)
{
    return 10 + static_cast<int>(StableHash(identifier) % 5);
}

const Strip* ChooseStrip(const Announcements& announcements, std::string_view identifier,
                         std::string_view dist, std::string_view country, std::chrono::sys_seconds now)
{
    const std::string day = DayText(now);
    std::vector<const Strip*> fitting;
    for (const Strip& strip : announcements.strips) {
        if (IsFor(strip, dist, country, day)) {
            fitting.push_back(&strip);
        }
    }
    if (fitting.empty()) {
        return nullptr;
    }
    // Rotate by time: requests come one wait time apart, so no state is kept.
    const auto turn = static_cast<std::uint64_t>(now.time_since_epoch().count()) /
                      static_cast<std::uint64_t>(60 * WaitMinutes(identifier));
    return fitting[(StableHash(identifier) + turn) % fitting.size()];
}

const Release* NewerRelease(const Announcements& announcements, std::string_view name,
                            std::string_view sequence)
{
    const auto newest = std::max_element(
        announcements.releases.begin(), announcements.releases.end(), [](const Release& a, const Release& b) {
            return VersionOf(a.name, a.sequence) < VersionOf(b.name, b.sequence);
        });
    if (newest == announcements.releases.end() ||
        VersionOf(newest->name, newest->sequence) <= VersionOf(name, sequence)) {
        return nullptr;
    }
    return &*newest;
}

bool IsVersionNumber(std::string_view text)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction = point < text.size() ? text.substr(point + 1) : std::string_view("0");
    return !whole.empty() && !fraction.empty() && text.size() <= 15 &&
           std::all_of(whole.begin(), whole.end(), isDigit) &&
           std::all_of(fraction.begin(), fraction.end(), isDigit);
}

} // namespace beacond
