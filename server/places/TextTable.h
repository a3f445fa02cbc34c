// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/TableFile.h"

#include <filesystem>
#include <functional>

namespace beacond {

/// A file with one table.
class TextTable final
{
public:
    using Columns = beacond::Columns;

    explicit TextTable(std::filesystem::path path);

    /// Calls `row` with the columns of each row. Throws PlacesError as TableFile does.
    void ForEach(const std::function<void(const Columns&)>& row) const;

private:
    std::filesystem::path m_path;
};

} // namespace beacond
