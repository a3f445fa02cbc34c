// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/FileLayout.h"

#include <filesystem>
#include <span>
#include <string_view>

namespace beacond {

/// A places file, mapped and checked: each index and each text in it lies inside the file. Its items point
/// into the mapping and live as long as this object. Replacing the file by a rename doesn't touch the
/// mapping.
class PlacesFile final
{
public:
    /// Throws PlacesError if the file is missing, damaged, cut off or of another version.
    explicit PlacesFile(const std::filesystem::path& path);
    ~PlacesFile();
    PlacesFile(const PlacesFile&) = delete;
    PlacesFile& operator=(const PlacesFile&) = delete;

    [[nodiscard]] std::span<const layout::Scope> Scopes() const { return m_scopes; }
    [[nodiscard]] std::span<const layout::Region> Regions() const { return m_regions; }
    [[nodiscard]] std::span<const layout::Place> Places() const { return m_places; }
    [[nodiscard]] std::span<const layout::Name> Names() const { return m_names; }
    [[nodiscard]] std::span<const layout::Id> Ids() const { return m_ids; }
    [[nodiscard]] std::span<const layout::Shipped> Shipped() const { return m_shipped; }
    [[nodiscard]] std::span<const layout::Text> Zones() const { return m_zones; }
    [[nodiscard]] std::span<const layout::Code> Codes() const { return m_codes; }
    [[nodiscard]] const char* TextAt(layout::Text text) const { return m_texts.data() + text; }

private:
    void Map(const std::filesystem::path& path);
    void Check() const;
    void TakeSections();
    void CheckTexts() const;
    void CheckIndexes() const;
    template <typename Item>
    [[nodiscard]] std::span<const Item> Take(layout::SectionKind kind) const;

    std::string_view m_bytes;
    std::span<const layout::Scope> m_scopes;
    std::span<const layout::Region> m_regions;
    std::span<const layout::Place> m_places;
    std::span<const layout::Name> m_names;
    std::span<const layout::Id> m_ids;
    std::span<const layout::Shipped> m_shipped;
    std::span<const layout::Text> m_zones;
    std::span<const layout::Code> m_codes;
    std::span<const char> m_texts;
};

} // namespace beacond
