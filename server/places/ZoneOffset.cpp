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

// Summer time that is not due within this time has been abolished.
constexpr absl::Duration kSeason = absl::Hours(24 * 366);
// Ramadan with some days on both sides; the shortest winter time of a zone is four months.
constexpr absl::Duration kSomeWeeks = absl::Hours(24 * 60);

// Abseil reads any path and the offsets that it names itself; those are no zones of the tz database.
bool IsZoneName(std::string_view name)
{
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
               c == '_' || c == '-' || c == '+';
    };
    return !name.empty() && name.front() != '/' && name != "localtime" && !name.starts_with("Fixed/") &&
           std::all_of(name.begin(), name.end(), allowed);
}

// Abseil keeps each zone, and each failure to find one, under the zone's name until the process ends. It
// reads an absolute path as it stands: one more slash in the path names the same file, and reads it again.
// Belongs to the process, as that cache does.
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
    // By increment: the operator throws where a folder vanishes meanwhile.
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, ignored);
    for (; entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
        newest = std::max(newest, entry->last_write_time(ignored));
    }
    return newest;
}

/// A time without a change of the offset, half-open.
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
    // PrevTransition looks before its argument, and a period begins at its change.
    return zone.PrevTransition(at + absl::Seconds(1), &change) ? zone.At(change.to).trans
                                                               : absl::InfinitePast();
}

Period PeriodAt(const absl::TimeZone& zone, absl::Time at)
{
    return {zone.At(at), LastChange(zone, at), NextChange(zone, at)};
}

/// The period from `now` on in which summer time begins or ends, if that is within a year.
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
        // Only where the database itself calls the lower offset the exception: elsewhere a summer time that
        // was interrupted for Ramadan would pass for the standard time.
        const bool isException = lower.info.is_dst && lower.end - lower.begin < kSomeWeeks;
        seconds = isException ? higher.info.offset : lower.info.offset;
    }
    return std::chrono::duration_cast<std::chrono::minutes>(std::chrono::seconds(seconds));
}

void ReadZonesAgain()
{
    // The zones read before stay in memory: read them again only after a change.
    static fs::file_time_type known = fs::file_time_type::min();
    const fs::file_time_type newest = NewestChange(Database());
    if (newest != known) {
        known = newest;
        ++slashes;
    }
}

} // namespace beacond
