// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/TableFile.h"

#include "places/PlacesError.h"
#include "places/Tokens.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace beacond {

namespace {

constexpr std::size_t kPart = std::size_t{64} << 10;
constexpr std::size_t kLongestLine = std::size_t{256} << 10;
constexpr std::uint64_t kMostBytes = std::uint64_t{2} << 30;
constexpr std::size_t kMostTables = 100;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char* kDamaged = "damaged or cut off";

} // namespace

Columns Columns::WithoutFirst() const
{
    Columns rest = *this;
    rest.m_texts.erase(rest.m_texts.begin());
    return rest;
}

std::string Columns::Position() const
{
    return m_table + ", line " + std::to_string(m_line);
}

TableFile::TableFile(const std::filesystem::path& path)
    : m_name(path.string())
    , m_archive(archive_read_new(), &archive_read_free)
{
    archive* const reader = m_archive.get();
    archive_read_support_filter_xz(reader);
    archive_read_support_filter_gzip(reader);
    archive_read_support_filter_bzip2(reader);
    archive_read_support_filter_zstd(reader);
    archive_read_support_format_zip(reader);
    archive_read_support_format_raw(reader);
    archive_read_support_format_empty(reader);
    // Each kind of table is read in a pass of its own, so that a pipe would be empty at the second one.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        Fail(error ? error.message() : "not a regular file");
    if (archive_read_open_filename(reader, path.c_str(), kPart) != ARCHIVE_OK) {
        const int reason = archive_errno(reader);
        // The library's own errors are -1 and, for content of a wrong format, EILSEQ.
        const bool isOfTheSystem = reason > 0 && reason != EILSEQ;
        Fail(isOfTheSystem ? std::generic_category().message(reason) : kDamaged);
    }
}

TableFile::~TableFile() = default;

bool TableFile::NextTable()
{
    archive_entry* entry = nullptr;
    const int result = archive_read_next_header(m_archive.get(), &entry);
    if (result == ARCHIVE_EOF)
        return false;
    if (result < ARCHIVE_WARN)
        Fail(kDamaged);
    if (++m_tables > kMostTables)
        Fail("more than " + std::to_string(kMostTables) + " files in it");
    m_row.m_table = m_name;
    if (archive_format(m_archive.get()) == ARCHIVE_FORMAT_ZIP) {
        const char* const name = archive_entry_pathname_utf8(entry);
        // A terminal interprets control characters.
        m_row.m_table += ": " + (name && IsText(name) ? name : "file " + std::to_string(m_tables));
    }
    m_row.m_line = 0;
    m_text.clear();
    m_begin = 0;
    m_isAtEnd = false;
    return true;
}

const Columns* TableFile::NextRow()
{
    std::string_view line;
    while (NextLine(line)) {
        if (m_row.m_line == 1 && line.starts_with(kByteOrderMark))
            line.remove_prefix(kByteOrderMark.size());
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;
        Split(line);
        return &m_row;
    }
    return nullptr;
}

bool TableFile::NextLine(std::string_view& line)
{
    std::size_t end = m_text.find('\n', m_begin);
    while (end == std::string::npos && !m_isAtEnd) {
        m_text.erase(0, m_begin);
        m_begin = 0;
        const std::size_t searched = m_text.size();
        ReadMore();
        end = m_text.find('\n', searched);
    }
    const bool isLast = end == std::string::npos;
    if (isLast && m_begin == m_text.size())
        return false;
    line = std::string_view(m_text).substr(m_begin, (isLast ? m_text.size() : end) - m_begin);
    m_begin = isLast ? m_text.size() : end + 1;
    ++m_row.m_line;
    return true;
}

void TableFile::ReadMore()
{
    const std::size_t before = m_text.size();
    if (before > kLongestLine)
        Fail("line " + std::to_string(m_row.m_line + 1) + " is longer than 256 KiB");
    m_text.resize(before + kPart);
    const la_ssize_t count = archive_read_data(m_archive.get(), m_text.data() + before, kPart);
    if (count < 0)
        Fail(kDamaged);
    m_text.resize(before + static_cast<std::size_t>(count));
    m_isAtEnd = count == 0;
    m_bytes += static_cast<std::size_t>(count);
    if (m_bytes > kMostBytes)
        Fail("larger than 2 GiB");
}

void TableFile::Split(std::string_view line)
{
    m_row.m_texts.clear();
    for (std::size_t begin = 0; begin <= line.size();) {
        const std::size_t end = std::min(line.find('\t', begin), line.size());
        m_row.m_texts.push_back(line.substr(begin, end - begin));
        begin = end + 1;
    }
}

void TableFile::Fail(const std::string& reason) const
{
    throw PlacesError(m_name + ": " + reason);
}

} // namespace beacond
