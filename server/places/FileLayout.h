// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

// The places file: a header, then one array for each section, each at a multiple of 8 bytes. Numbers are in
// the machine's own byte order. A text is the offset of NUL-terminated UTF-8 in the section of texts. A
// change of any of these types needs a new version.
namespace beacond::layout {

static_assert(std::endian::native == std::endian::little,
              "a places file is not moved to a machine of another byte order");

inline constexpr std::array<char, 8> kMagic = {'D', 'B', 'P', 'L', 'A', 'C', 'E', 'S'};
inline constexpr std::uint32_t kVersion = 2;

enum class SectionKind { Scopes, Regions, Places, Names, Ids, Shipped, Zones, Codes, Texts };
inline constexpr std::size_t kSections = 9;

struct Section
{
    std::uint64_t offset; ///< from the start of the file
    std::uint64_t count;  ///< of items, not bytes
};

struct Header
{
    std::array<char, 8> magic;
    std::uint32_t version;
    std::uint32_t sectionCount;
    std::uint64_t size;     ///< of the whole file
    std::uint64_t checksum; ///< CRC-64 (as in ECMA-182) of all bytes after this field
    std::array<Section, kSections> sections;
};

using Text = std::uint32_t;

/// A row of the list of countries and states; the rows are in the order of the list.
struct Scope
{
    Text id;
    Text name;
    std::uint32_t firstRegion;
    std::uint32_t regionCount;
};

/// Places and names are grouped by region: a state, or a whole country, or the places of a country outside
/// its states.
struct Region
{
    Text country; ///< two letters
    Text name;    ///< the state's own name, or the country's
    std::uint32_t firstPlace;
    std::uint32_t placeCount;
    std::uint32_t firstName;
    std::uint32_t nameCount;
};

/// The part of a place that a list shows beside its name, so that two places of one name differ.
enum class Distinction : std::uint8_t { None, FirstDivision, SecondDivision, Coordinates };
inline constexpr std::uint8_t kDistinctions = 4;

inline constexpr std::int16_t kNoElevation = std::numeric_limits<std::int16_t>::min();
inline constexpr std::uint16_t kNotShipped = std::numeric_limits<std::uint16_t>::max();
inline constexpr double kUnitsPerDegree = 100000.0;

/// Within a region the largest place comes first.
struct Place
{
    std::uint32_t id; ///< of GeoNames
    Text name;
    std::int32_t latitude;  ///< in units, north positive
    std::int32_t longitude; ///< in units, east positive
    std::uint32_t population;
    Text firstDivision;  ///< may be empty
    Text secondDivision; ///< may be empty
    std::uint16_t region;
    std::uint16_t zone;
    std::int16_t elevation; ///< in metres
    std::uint16_t shipped;
    std::uint8_t inCountry; ///< Distinction in a list of the whole country
    std::uint8_t inRegion;  ///< Distinction in a list of the region
    std::uint16_t reserved;
};

/// In order of rank. A spelling is a further name that people use like the shown one: "München" of Munich. A
/// word is the rest of a shown name or a spelling from a later word on, or its short or full form.
enum class NameKind : std::uint8_t { Primary, Spelling, Word, Alias, AliasWord };
inline constexpr std::uint32_t kNameKinds = 8; ///< as many as three bits can tell apart

/// A folded name, or its rest from a later word on. Sorted within a region by the bytes of the text.
struct Name
{
    Text text;
    std::uint32_t placeAndKind; ///< the place's number times kNameKinds, plus the kind

    [[nodiscard]] std::uint32_t Place() const { return placeAndKind / kNameKinds; }
    [[nodiscard]] NameKind Kind() const { return static_cast<NameKind>(placeAndKind % kNameKinds); }
};

/// Sorted by id. A place that is listed twice is here with its first row.
struct Id
{
    std::uint32_t id;
    std::uint32_t place;
};

/// A place of the program's own list; sorted by the bytes of atlasId.
struct Shipped
{
    Text atlasId;
    Text key;
    Text state;
    std::uint32_t place;
};

/// A postal code without spaces, in capitals; sorted by the bytes of the code, then the best place first.
struct Code
{
    Text code;
    std::uint32_t place;
};

static_assert(sizeof(Header) == 32 + kSections * sizeof(Section) && sizeof(Place) == 40 && sizeof(Name) == 8);
static_assert(std::is_trivially_copyable_v<Header> && std::is_trivially_copyable_v<Place>);

} // namespace beacond::layout
