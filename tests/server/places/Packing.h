// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <archive.h>
#include <archive_entry.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

enum class Packing { Xz, Gzip, Bzip2, Zstd };

namespace packing {

/// Writes files by a writer whose format is set.
inline std::string Written(archive* writer, const std::vector<std::pair<std::string, std::string>>& files)
{
    std::string bytes(std::size_t{4} << 20, '\0');
    std::size_t size = 0;
    archive_write_open_memory(writer, bytes.data(), bytes.size(), &size);
    for (const auto& [name, content] : files) {
        archive_entry* const entry = archive_entry_new();
        archive_entry_set_pathname(entry, name.c_str());
        archive_entry_set_size(entry, static_cast<std::int64_t>(content.size()));
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_write_header(writer, entry);
        archive_write_data(writer, content.data(), content.size());
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    bytes.resize(size);
    return bytes;
}

} // namespace packing

/// The content as a compressed file.
[[nodiscard]] inline std::string Packed(Packing packing, const std::string& content)
{
    archive* const writer = archive_write_new();
    archive_write_set_format_raw(writer);
    switch (packing) {
    case Packing::Xz:
        archive_write_add_filter_xz(writer);
        break;
    case Packing::Gzip:
        archive_write_add_filter_gzip(writer);
        break;
    case Packing::Bzip2:
        archive_write_add_filter_bzip2(writer);
        break;
    case Packing::Zstd:
        archive_write_add_filter_zstd(writer);
        break;
    }
    return packing::Written(writer, {{"data", content}});
}

/// A zip archive of files: names and contents.
[[nodiscard]] inline std::string Zipped(const std::vector<std::pair<std::string, std::string>>& files)
{
    archive* const writer = archive_write_new();
    archive_write_set_format_zip(writer);
    return packing::Written(writer, files);
}
