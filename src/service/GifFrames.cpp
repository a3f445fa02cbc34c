// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/GifFrames.h"

#include <array>

namespace {

constexpr qsizetype kHeader = 13;
constexpr qsizetype kFrameHeader = 9;
constexpr int kMostBits = 12;
constexpr int kMostCodes = 1 << kMostBits;
constexpr int kMostBitsOfPixel = 8;

// Goes over the blocks of a file; behind its end everything is 0.
class GifBytes final
{
public:
    explicit GifBytes(const QByteArray& bytes)
        : m_bytes(bytes)
    {
    }
    [[nodiscard]] bool IsAtEnd() const { return m_at >= m_bytes.size(); }
    unsigned int Next() { return IsAtEnd() ? 0U : static_cast<unsigned char>(m_bytes[m_at++]); }
    /// Over so many bytes and the table of colours that the flags announce, which stand @p flagsAt.
    void SkipHeader(qsizetype length, qsizetype flagsAt)
    {
        const qsizetype at = m_at + flagsAt;
        const unsigned int flags = at < m_bytes.size() ? static_cast<unsigned char>(m_bytes[at]) : 0U;
        m_at += length + ((flags & 0x80U) != 0 ? 3LL << ((flags & 7U) + 1U) : 0);
    }
    /// The content of the blocks up to the empty one.
    QByteArray TakeBlocks()
    {
        QByteArray content;
        for (unsigned int length = Next(); length > 0; length = Next()) {
            content += m_bytes.mid(m_at, length);
            m_at += length;
        }
        return content;
    }

private:
    const QByteArray& m_bytes;
    qsizetype m_at = 0;
};

// Unpacks nothing: a code stands for a row of pixels, and each new one for a row that is one longer.
class PixelCount final
{
public:
    explicit PixelCount(int bitsOfPixel)
        : m_bitsOfPixel(bitsOfPixel)
        , m_clear(1 << bitsOfPixel)
    {
        m_lengths.fill(1);
        Clear();
    }
    /// How many bits the next code has.
    [[nodiscard]] int Bits() const { return m_bits; }
    [[nodiscard]] qint64 Pixels() const { return m_pixels; }
    /// False for the code that ends the frame.
    bool Take(int code)
    {
        if (code == m_clear) {
            Clear();
            return true;
        }
        if (code == m_clear + 1) {
            return false;
        }
        const int length = code < m_next ? m_lengths.at(static_cast<std::size_t>(code)) : m_before + 1;
        if (m_before > 0 && m_next < kMostCodes) {
            m_lengths.at(static_cast<std::size_t>(m_next++)) = m_before + 1;
            m_bits += m_next == 1 << m_bits && m_bits < kMostBits ? 1 : 0;
        }
        m_before = length;
        m_pixels += length;
        return true;
    }

private:
    void Clear()
    {
        m_next = m_clear + 2;
        m_bits = m_bitsOfPixel + 1;
        m_before = 0;
    }

    int m_bitsOfPixel = 0;
    int m_clear = 0;
    int m_next = 0;
    int m_bits = 0;
    /// Length of the row before; 0 if there is none.
    int m_before = 0;
    qint64 m_pixels = 0;
    std::array<int, kMostCodes> m_lengths{};
};

bool UnpacksToAtMost(const QByteArray& packed, int bitsOfPixel, qint64 mostPixels)
{
    PixelCount count(bitsOfPixel);
    unsigned int waiting = 0;
    int waitingBits = 0;
    for (const char byte : packed) {
        waiting |= static_cast<unsigned int>(static_cast<unsigned char>(byte)) << waitingBits;
        waitingBits += 8;
        while (waitingBits >= count.Bits()) {
            const int bits = count.Bits();
            if (!count.Take(static_cast<int>(waiting & ((1U << bits) - 1U)))) {
                return count.Pixels() <= mostPixels;
            }
            waiting >>= bits;
            waitingBits -= bits;
        }
        if (count.Pixels() > mostPixels) {
            return false;
        }
    }
    return count.Pixels() <= mostPixels;
}

} // namespace

bool HasModestFrames(const QByteArray& gif, qint64 mostPixels)
{
    GifBytes bytes(gif);
    bytes.SkipHeader(kHeader, 10);
    while (!bytes.IsAtEnd()) {
        switch (bytes.Next()) {
        case '!':
            bytes.Next();
            bytes.TakeBlocks();
            break;
        case ',': {
            bytes.SkipHeader(kFrameHeader, 8);
            const auto bitsOfPixel = static_cast<int>(bytes.Next());
            if (bitsOfPixel > kMostBitsOfPixel ||
                !UnpacksToAtMost(bytes.TakeBlocks(), bitsOfPixel, mostPixels)) {
                return false;
            }
            break;
        }
        case ';':
            return true;
        default:
            return false;
        }
    }
    return true;
}
