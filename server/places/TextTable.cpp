// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/TextTable.h"

#include <utility>

namespace beacond {

TextTable::TextTable(std::filesystem::path path)
    : m_path(std::move(path))
{
}

void TextTable::ForEach(const std::function<void(const Columns&)>& row) const
{
    TableFile file(m_path);
    while (file.NextTable()) {
        while (const Columns* const columns = file.NextRow())
            row(*columns);
    }
}

} // namespace beacond
