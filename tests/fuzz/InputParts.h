// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

/// An input in parts with a line "%%" between them, so that the corpus can be read and written by hand.
class InputParts final
{
public:
    InputParts(const std::uint8_t* data, std::size_t size)
        : m_rest(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
    {
    }

    /// Empty behind the last part.
    [[nodiscard]] QByteArray Next()
    {
        constexpr QByteArrayView kBetween("\n%%\n");
        const qsizetype end = m_rest.indexOf(kBetween);
        const QByteArray part = end < 0 ? m_rest : m_rest.left(end);
        m_rest = end < 0 ? QByteArray() : m_rest.mid(end + kBetween.size());
        return part;
    }

private:
    QByteArray m_rest;
};

/// One byte at a time, for what a user does; 0 behind the last.
class Choices final
{
public:
    explicit Choices(const QByteArray& bytes)
        : m_bytes(bytes)
    {
    }

    [[nodiscard]] bool AreLeft() const { return m_at < m_bytes.size(); }
    [[nodiscard]] int Next() { return AreLeft() ? static_cast<unsigned char>(m_bytes[m_at++]) : 0; }
    /// From 0 to @p count - 1; digits choose as one reads them.
    [[nodiscard]] int Among(qsizetype count)
    {
        const int byte = Next();
        const int choice = byte >= '0' ? byte - '0' : byte;
        return count > 0 ? static_cast<int>(choice % count) : 0;
    }

private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
};
