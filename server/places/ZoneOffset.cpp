// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/ZoneOffset.h"

#include <absl/time/time.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace beacond {

namespace {

namespace fs = std::filesystem;

// Summer time without a change within this period counts as abolished.
constexpr absl::Duration kSeason = absl::Hours(24 * 366);
// Longer than Ramadan, and shorter than the four months of the shortest winter time of any zone.
constexpr absl::Duration kSomeWeeks = absl::Hours(24 * 60);

// Abseil also accepts paths, and names of its own for fixed offsets; both are not zones of the tz database.
bool IsZoneName(std::string_view name)
{
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
               c == '_' || c == '-' || c == '+';
    };
    return !name.empty() && name.front() != '/' && name != "localtime" && !name.starts_with("Fixed/") &&
           std::all_of(name.begin(), name.end(), allowed);
}

// Abseil caches each zone, and each failed lookup, by name until the process ends. An absolute path is read
// unchanged: one more slash in the path names the same file, but is a new name for the cache. Global, as that
// cache is.
std::atomic<std::size_t> slashes{1};

fs::path Database()
{
    const char* const folder = std::getenv("TZDIR");
    return folder == nullptr || *folder == '\0' ? "/usr/share/zoneinfo" : folder;
}

bool Load(std::string_view name, absl::TimeZone& zone)
{
    return IsZoneName(name) &&
           absl::LoadTimeZone(
               fs::absolute(Database()).string() + std::string(slashes, '/') + std::string(name), &zone);
}

fs::file_time_type NewestChange(const fs::path& folder)
{
    std::error_code ignored;
    fs::file_time_type newest = fs::last_write_time(folder, ignored);
    // Use increment(): operator++ throws if a folder vanishes meanwhile.
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, ignored);
    for (; entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
        newest = std::max(newest, entry->last_write_time(ignored));
    }
    return newest;
}

/// A period of one offset, half-open.
struct Period
{
    absl::TimeZone::CivilInfo info;
    absl::Time begin;
    absl::Time end;
};

absl::Time NextChange(const absl::TimeZone& zone, absl::Time after)
{
    absl::TimeZone::CivilTransition change;
    return zone.NextTransition(after, &change) ? zone.At(change.to).trans : absl::InfiniteFuture();
}

absl::Time LastChange(const absl::TimeZone& zone, absl::Time at)
{
    absl::TimeZone::CivilTransition change;
    // PrevTransition searches strictly before its argument, but a period includes the time of its change.
    return zone.PrevTransition(at + absl::Seconds(1), &change) ? zone.At(change.to).trans
                                                               : absl::InfinitePast();
}

Period PeriodAt(const absl::TimeZone& zone, absl::Time at)
{
    return {zone.At(at), LastChange(zone, at), NextChange(zone, at)};
}

/// The period after the next begin or end of summer time, if that is within a year of `now`.
std::optional<Period> OtherSeason(const absl::TimeZone& zone, const Period& present, absl::Time now)
{
    for (absl::Time change = present.end; change < now + kSeason; change = NextChange(zone, change)) {
        if (zone.At(change).is_dst != present.info.is_dst)
            return PeriodAt(zone, change);
    }
    return std::nullopt;
}

} // namespace

bool IsTimeZone(std::string_view name)
{
    absl::TimeZone zone;
    return Load(name, zone);
}

std::optional<std::chrono::minutes> StandardOffset(std::string_view zone, std::chrono::sys_seconds now)
{
    absl::TimeZone timeZone;
    if (!Load(zone, timeZone))
        return std::nullopt;
    const absl::Time at = absl::FromUnixSeconds(now.time_since_epoch().count());
    const Period present = PeriodAt(timeZone, at);
    const std::optional<Period> other = OtherSeason(timeZone, present, at);
    int seconds = present.info.offset;
    if (other) {
        const Period& lower = other->info.offset < present.info.offset ? *other : present;
        const Period& higher = other->info.offset < present.info.offset ? present : *other;
        // Only if the database marks the lower offset as daylight saving: otherwise a summer time that is
        // interrupted for Ramadan would count as the standard time.
        const bool isException = lower.info.is_dst && lower.end - lower.begin < kSomeWeeks;
        seconds = isException ? higher.info.offset : lower.info.offset;
    }
    return std::chrono::duration_cast<std::chrono::minutes>(std::chrono::seconds(seconds));
}

void ReloadZones()
{
    // Read zones again only after a change: the zones read before stay in memory.
    static fs::file_time_type known = fs::file_time_type::min();
    const fs::file_time_type newest = NewestChange(Database());
    if (newest != known) {
        known = newest;
        ++slashes;
    }
}

} // namespace beacond
