// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/FileLayout.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace beacond {

/// The texts of a places file under construction.
class TextPool
{
public:
    /// The offset of the text; adds it only if it is not there yet.
    layout::Text Share(std::string_view text);

    /// The offset of a new copy of the text.
    layout::Text Append(std::string_view text);

    [[nodiscard]] const std::string& Bytes() const { return m_bytes; }

private:
    std::string m_bytes;
    std::unordered_map<std::string, layout::Text> m_shared;
};

/// The sections of a places file.
struct FileContents
{
    std::vector<layout::Scope> scopes;
    std::vector<layout::Region> regions;
    std::vector<layout::Place> places;
    std::vector<layout::Name> names;
    std::vector<layout::Id> ids;
    std::vector<layout::Shipped> shipped;
    std::vector<layout::Text> zones;
    std::vector<layout::Code> codes;
    TextPool texts;
};

/// Writes the file `out`: to a file beside it with ".new" appended to the name, which replaces `out` after it
/// has been synced to the disk. The replaced file is kept under the name of `out` with ".previous" appended;
/// an earlier ".previous" file is overwritten. On failure, or while another process writes `out`, throws
/// PlacesError and leaves the existing file as it was.
void WritePlacesFile(const FileContents& contents, const std::filesystem::path& out);

} // namespace beacond
