// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/PlacesFile.h"

#include "places/PlacesError.h"

#include <fcntl.h>
#include <lzma.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>

namespace beacond {

namespace {

const layout::Header& HeaderOf(std::string_view bytes)
{
    return *reinterpret_cast<const layout::Header*>(bytes.data());
}

void Demand(bool condition, const char* reason)
{
    if (!condition)
        throw PlacesError(reason);
}

/// Whether all of `first` to `first + count` lies within `size`.
bool IsWithin(std::uint64_t first, std::uint64_t count, std::uint64_t size)
{
    return first <= size && count <= size - first;
}

} // namespace

PlacesFile::PlacesFile(const std::filesystem::path& path)
{
    Map(path);
    try {
        Check();
        TakeSections();
        CheckTexts();
        CheckIndexes();
    } catch (const PlacesError& error) {
        munmap(const_cast<char*>(m_bytes.data()), m_bytes.size());
        throw PlacesError("places file " + path.string() + ": " + error.what());
    }
}

PlacesFile::~PlacesFile()
{
    munmap(const_cast<char*>(m_bytes.data()), m_bytes.size());
}

void PlacesFile::Map(const std::filesystem::path& path)
{
    const auto fail = [&path] {
        throw PlacesError("places file " + path.string() + ": " + std::generic_category().message(errno));
    };
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        fail();
    struct stat status = {};
    const bool known = fstat(file, &status) == 0;
    const auto size = static_cast<std::size_t>(status.st_size);
    const bool large = known && S_ISREG(status.st_mode) && size >= sizeof(layout::Header);
    void* bytes = large ? mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0) : MAP_FAILED;
    const int error = errno;
    close(file);
    if (known && !large)
        throw PlacesError("places file " + path.string() + ": too short to be one");
    errno = error;
    if (bytes == MAP_FAILED)
        fail();
    m_bytes = {static_cast<const char*>(bytes), size};
}

void PlacesFile::Check() const
{
    const layout::Header& header = HeaderOf(m_bytes);
    Demand(header.magic == layout::kMagic, "not a places file");
    Demand(header.version >= layout::kVersion,
           "made by an older version of this program; import the places again");
    Demand(header.version <= layout::kVersion, "made by a newer version of this program");
    Demand(header.sectionCount == layout::kSections && header.size == m_bytes.size(),
           "cut off or lengthened");
    const std::string_view covered = m_bytes.substr(offsetof(layout::Header, sections));
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(covered.data());
    Demand(header.checksum == lzma_crc64(bytes, covered.size(), 0), "damaged: its checksum is wrong");
}

template <typename Item>
std::span<const Item> PlacesFile::Take(layout::SectionKind kind) const
{
    const layout::Section& section = HeaderOf(m_bytes).sections.at(static_cast<std::size_t>(kind));
    Demand(section.offset % alignof(std::uint64_t) == 0 && section.offset <= m_bytes.size() &&
               section.count <= (m_bytes.size() - section.offset) / sizeof(Item),
           "a section lies outside the file");
    return {reinterpret_cast<const Item*>(m_bytes.data() + section.offset), section.count};
}

void PlacesFile::TakeSections()
{
    using Kind = layout::SectionKind;
    m_scopes = Take<layout::Scope>(Kind::Scopes);
    m_regions = Take<layout::Region>(Kind::Regions);
    m_places = Take<layout::Place>(Kind::Places);
    m_names = Take<layout::Name>(Kind::Names);
    m_ids = Take<layout::Id>(Kind::Ids);
    m_shipped = Take<layout::Shipped>(Kind::Shipped);
    m_zones = Take<layout::Text>(Kind::Zones);
    m_codes = Take<layout::Code>(Kind::Codes);
    m_texts = Take<char>(Kind::Texts);
}

void PlacesFile::CheckTexts() const
{
    Demand(!m_texts.empty() && m_texts.back() == '\0', "its texts don't end");
    const auto demand = [this](layout::Text text) {
        Demand(text < m_texts.size(), "a text lies outside the file");
    };
    for (const layout::Scope& scope : m_scopes) {
        demand(scope.id);
        demand(scope.name);
    }
    for (const layout::Region& region : m_regions) {
        demand(region.country);
        demand(region.name);
    }
    for (const layout::Place& place : m_places) {
        demand(place.name);
        demand(place.firstDivision);
        demand(place.secondDivision);
    }
    for (const layout::Shipped& shipped : m_shipped) {
        demand(shipped.atlasId);
        demand(shipped.key);
        demand(shipped.state);
    }
    std::for_each(m_names.begin(), m_names.end(), [&demand](const layout::Name& name) { demand(name.text); });
    std::for_each(m_codes.begin(), m_codes.end(), [&demand](const layout::Code& code) { demand(code.code); });
    std::for_each(m_zones.begin(), m_zones.end(), demand);
}

void PlacesFile::CheckIndexes() const
{
    const auto demandPlace = [this](std::uint32_t place) {
        Demand(place < m_places.size(), "a place lies outside the file");
    };
    for (const layout::Scope& scope : m_scopes)
        Demand(IsWithin(scope.firstRegion, scope.regionCount, m_regions.size()),
               "a region lies outside the file");
    for (const layout::Region& region : m_regions) {
        Demand(IsWithin(region.firstPlace, region.placeCount, m_places.size()) &&
                   IsWithin(region.firstName, region.nameCount, m_names.size()),
               "a region's places lie outside the file");
        for (const layout::Name& name : m_names.subspan(region.firstName, region.nameCount))
            Demand(name.Place() - region.firstPlace < region.placeCount, "a name of another region's place");
    }
    constexpr auto kRightAngle = static_cast<std::int32_t>(90 * layout::kUnitsPerDegree);
    const auto isWithin = [](std::int32_t units, std::int32_t most) {
        return units >= -most && units <= most;
    };
    for (const layout::Place& place : m_places) {
        Demand(isWithin(place.latitude, kRightAngle) && isWithin(place.longitude, 2 * kRightAngle),
               "a place lies outside the globe");
        Demand(place.region < m_regions.size() && place.zone < m_zones.size() &&
                   (place.shipped == layout::kNotShipped || place.shipped < m_shipped.size()) &&
                   place.inCountry < layout::kDistinctions && place.inRegion < layout::kDistinctions,
               "a place's row is damaged");
    }
    std::for_each(m_ids.begin(), m_ids.end(), [&](const layout::Id& id) { demandPlace(id.place); });
    std::for_each(m_shipped.begin(), m_shipped.end(),
                  [&](const layout::Shipped& s) { demandPlace(s.place); });
    std::for_each(m_codes.begin(), m_codes.end(), [&](const layout::Code& code) { demandPlace(code.place); });
}

} // namespace beacond
