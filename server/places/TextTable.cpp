// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/TextTable.h"

#include "places/PlacesError.h"

#include <lzma.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <memory>
#include <system_error>
#include <vector>

namespace beacond {

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 30;
constexpr std::uint64_t kMostMemory = std::uint64_t{256} << 20;

std::string Contents(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::array<char, 65536> part{};
    while (file.read(part.data(), part.size()) || file.gcount() > 0) {
        text.append(part.data(), static_cast<std::size_t>(file.gcount()));
        if (text.size() > kMostBytes)
            throw PlacesError(path.string() + ": larger than 1 GiB");
    }
    if (!file.eof())
        throw PlacesError(path.string() + ": " + std::generic_category().message(errno));
    return text;
}

std::string Unpacked(const std::string& packed, const std::filesystem::path& path)
{
    lzma_stream stream = LZMA_STREAM_INIT;
    const std::unique_ptr<lzma_stream, void (*)(lzma_stream*)> end(&stream, lzma_end);
    lzma_ret result = lzma_stream_decoder(&stream, kMostMemory, LZMA_CONCATENATED);
    std::string text;
    std::vector<char> part(std::size_t{1} << 20);
    stream.next_in = reinterpret_cast<const std::uint8_t*>(packed.data());
    stream.avail_in = packed.size();
    while (result == LZMA_OK && text.size() <= kMostBytes) {
        stream.next_out = reinterpret_cast<std::uint8_t*>(part.data());
        stream.avail_out = part.size();
        result = lzma_code(&stream, LZMA_FINISH);
        text.append(part.data(), part.size() - stream.avail_out);
    }
    if (text.size() > kMostBytes)
        throw PlacesError(path.string() + ": larger than 1 GiB");
    if (result != LZMA_STREAM_END)
        throw PlacesError(path.string() + ": damaged or cut off");
    return text;
}

void Split(std::string_view line, std::vector<std::string_view>& columns)
{
    columns.clear();
    for (std::size_t begin = 0; begin <= line.size();) {
        const std::size_t end = std::min(line.find('\t', begin), line.size());
        columns.push_back(line.substr(begin, end - begin));
        begin = end + 1;
    }
}

} // namespace

TextTable::TextTable(const std::filesystem::path& path)
    : m_text(Contents(path))
{
    if (path.extension() == ".xz")
        m_text = Unpacked(m_text, path);
}

void TextTable::ForEach(const std::function<void(Columns)>& row) const
{
    std::vector<std::string_view> columns;
    const std::string_view text = m_text;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string_view line = text.substr(begin, end - begin);
        begin = end + 1;
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;
        Split(line, columns);
        row(columns);
    }
}

} // namespace beacond
