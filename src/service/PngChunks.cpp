// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/PngChunks.h"

#include <QtEndian>

// The library reads what is packed and never writes to it.
#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <array>
#include <set>

namespace {

constexpr qsizetype kSignature = 8;
constexpr qsizetype kLength = 4;
constexpr qsizetype kType = 4;
constexpr qsizetype kCheck = 4;

// Hands the chunks to @p visit, the type and the whole of each, until that answers false.
template <typename Visit>
void WalkChunks(const QByteArray& png, Visit visit)
{
    QByteArrayView rest = QByteArrayView(png).sliced(std::min(kSignature, png.size()));
    while (rest.size() >= kLength + kType + kCheck) {
        const qint64 size = kLength + kType + qint64{qFromBigEndian<quint32>(rest.data())} + kCheck;
        if (size > rest.size() || !visit(rest.sliced(kLength, kType), rest.first(size))) {
            return;
        }
        rest = rest.sliced(size);
    }
}

// Counts what comes out and keeps nothing of it.
class Unpacked final
{
public:
    Unpacked() { m_isGood = inflateInit(&m_stream) == Z_OK; }
    ~Unpacked() { inflateEnd(&m_stream); }
    Unpacked(const Unpacked&) = delete;
    Unpacked& operator=(const Unpacked&) = delete;

    /// False when there is nothing more to be had, or more than @p mostBytes already.
    bool Take(QByteArrayView packed, qint64 mostBytes)
    {
        m_stream.next_in = reinterpret_cast<const Bytef*>(packed.data());
        m_stream.avail_in = static_cast<uInt>(packed.size());
        do {
            m_stream.next_out = m_scratch.data();
            m_stream.avail_out = static_cast<uInt>(m_scratch.size());
            const int status = m_isGood ? inflate(&m_stream, Z_NO_FLUSH) : Z_STREAM_ERROR;
            m_bytes += static_cast<qint64>(m_scratch.size()) - m_stream.avail_out;
            m_isGood = status == Z_OK || status == Z_BUF_ERROR;
        } while (m_isGood && m_stream.avail_out == 0 && m_bytes <= mostBytes);
        return m_isGood && m_bytes <= mostBytes;
    }
    [[nodiscard]] qint64 Bytes() const { return m_bytes; }

private:
    z_stream m_stream{};
    std::array<Bytef, 16384> m_scratch{};
    qint64 m_bytes = 0;
    bool m_isGood = false;
};

} // namespace

QByteArray PlainPng(const QByteArray& png)
{
    // Each stands once but for the pixels, and the colours ahead of those; the reader writes a line into the
    // log for every other one.
    std::set<QByteArrayView> wanted{"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    QByteArray plain = png.left(kSignature);
    WalkChunks(png, [&](QByteArrayView type, QByteArrayView whole) {
        if (wanted.contains(type)) {
            plain.append(whole);
        }
        if (type == "IDAT") {
            wanted = {"IDAT", "IEND"};
        } else {
            wanted.erase(type);
        }
        return type != "IEND";
    });
    return plain;
}

bool HasModestPixels(const QByteArray& png, qint64 mostBytes)
{
    Unpacked unpacked;
    WalkChunks(png, [&](QByteArrayView type, QByteArrayView whole) {
        return type != "IDAT" || unpacked.Take(whole.sliced(kLength + kType).chopped(kCheck), mostBytes);
    });
    return unpacked.Bytes() <= mostBytes;
}
