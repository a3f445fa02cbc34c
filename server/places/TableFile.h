// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct archive;

namespace beacond {

/// The columns of a row of a table. The texts live until the next row is read.
class Columns final
{
public:
    [[nodiscard]] std::size_t size() const { return m_texts.size(); }
    [[nodiscard]] std::string_view operator[](std::size_t column) const { return m_texts[column]; }

    /// The columns after the first one.
    [[nodiscard]] Columns WithoutFirst() const;

    /// The row's file and line, for the operator: "CA_full.txt, line 7".
    [[nodiscard]] std::string Position() const;

private:
    friend class TableFile;
    std::vector<std::string_view> m_texts;
    std::string m_table;
    std::size_t m_line = 0;
};

/// Reads the tables of tab-separated columns in a file: the file itself, plain or compressed (xz, gzip,
/// bzip2, zstd), or each file in it if it is a zip archive. Holds one row in memory. Each function throws
/// PlacesError if the file can't be read or decompressed, has a line over 256 KiB, over 2 GiB of text, or
/// over 100 files in it.
class TableFile final
{
public:
    explicit TableFile(const std::filesystem::path& path);
    ~TableFile();
    TableFile(const TableFile&) = delete;
    TableFile& operator=(const TableFile&) = delete;

    /// Goes to the first table, later to the next one. False after the last.
    [[nodiscard]] bool NextTable();

    /// The name of the current table, for the operator: "CA_full.txt", "CA_full.csv.zip: CA_full.txt".
    [[nodiscard]] const std::string& TableName() const { return m_row.m_table; }

    /// The next row of the table, or null after the last. Skips empty lines and lines that begin with "#".
    [[nodiscard]] const Columns* NextRow();

private:
    [[nodiscard]] bool NextLine(std::string_view& line);
    void ReadMore();
    void Split(std::string_view line);
    [[noreturn]] void Fail(const std::string& reason) const;

    std::string m_name;
    std::unique_ptr<archive, int (*)(archive*)> m_archive;
    std::string m_text;      ///< the part that has been read and not been returned yet
    std::size_t m_begin = 0; ///< of the next line in it
    bool m_isAtEnd = false;
    std::uint64_t m_bytes = 0; ///< of text, in all tables
    std::size_t m_tables = 0;
    Columns m_row;
};

} // namespace beacond
