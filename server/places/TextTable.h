// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace beacond {

/// A table of tab-separated columns, held in memory. A file whose name ends in ".xz" is decompressed.
class TextTable final
{
public:
    using Columns = std::span<const std::string_view>;

    /// Throws PlacesError if the file can't be read or decompressed, or is larger than 1 GiB.
    explicit TextTable(const std::filesystem::path& path);

    /// Calls `row` with the columns of each line, except empty lines and lines that begin with "#". The texts
    /// point into this object.
    void ForEach(const std::function<void(Columns)>& row) const;

private:
    std::string m_text;
};

} // namespace beacond
