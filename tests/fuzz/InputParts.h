// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// An input in parts with a line "%%" between them, so that the corpus can be read and written by hand.
class InputParts final
{
public:
    InputParts(const std::uint8_t* data, std::size_t size)
        : m_rest(reinterpret_cast<const char*>(data), size)
    {
    }

    /// The next part; empty after the last.
    [[nodiscard]] std::string Next()
    {
        constexpr std::string_view kBetween("\n%%\n");
        const std::size_t end = std::min(m_rest.find(kBetween), m_rest.size());
        std::string part(m_rest.substr(0, end));
        m_rest.remove_prefix(std::min(end + kBetween.size(), m_rest.size()));
        return part;
    }
    /// The input that Next has not returned yet, lines "%%" included.
    [[nodiscard]] std::string_view Rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

/// One byte at a time, for the actions of a user; 0 after the last.
class Choices final
{
public:
    explicit Choices(std::string bytes)
        : m_bytes(std::move(bytes))
    {
    }

    [[nodiscard]] bool AreLeft() const { return m_at < m_bytes.size(); }
    [[nodiscard]] int Next() { return AreLeft() ? static_cast<unsigned char>(m_bytes[m_at++]) : 0; }
    /// From 0 to @p count - 1; a digit chooses its own value.
    [[nodiscard]] int Among(std::ptrdiff_t count)
    {
        const int byte = Next();
        const int choice = byte >= '0' ? byte - '0' : byte;
        return count > 0 ? static_cast<int>(choice % count) : 0;
    }

private:
    std::string m_bytes;
    std::size_t m_at = 0;
};
