// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/PictureBytes.h"

#include "platform/ProcessorTime.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace {

// Bytes of one read: decoding them takes a few milliseconds at most.
constexpr qint64 kPortion = 256;

// Without a format Qt would try each installed reader, and the SVG reader opens the files that a drawing
// names.
QByteArray FormatOf(const QByteArray& file)
{
    constexpr std::array<std::pair<QByteArrayView, const char*>, 4> kMarks{
        {{"\x89PNG\r\n\x1a\n", "png"}, {"GIF8", "gif"}, {"\xFF\xD8\xFF", "jpeg"}, {"BM", "bmp"}}};
    const auto* const found =
        std::ranges::find_if(kMarks, [&](const auto& mark) { return file.startsWith(mark.first); });
    return found == kMarks.end() ? QByteArray() : QByteArray(found->second);
}

// The PNG without texts, profiles and times: the reader decompresses them, up to a thousandfold, before it
// reports the size. QImageReader's allocation limit does not help: it counts only pixels, and too many of
// those are refused by the reported size. Only pixels may have several chunks, and the palette must come
// before them: the reader logs a line for each other chunk. An incomplete chunk is dropped with everything
// after it. Source of the format: PNG, third edition, 5.3 and 11.
QByteArray PlainPng(const QByteArray& file)
{
    constexpr qsizetype kSignature = 8;
    constexpr qsizetype kLength = 4;
    constexpr qsizetype kAroundContent = 12;
    std::set<QByteArrayView> wanted{"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    QByteArray plain = file.left(kSignature);
    for (QByteArrayView rest = QByteArrayView(file).sliced(kSignature); rest.size() >= kAroundContent;) {
        const qint64 size = kAroundContent + qint64{qFromBigEndian<quint32>(rest.data())};
        if (size > rest.size()) {
            break;
        }
        const QByteArrayView type = rest.sliced(kLength, 4);
        if (wanted.contains(type)) {
            plain.append(rest.first(size));
        }
        if (type == "IDAT") {
            wanted = {"IDAT", "IEND"};
        } else {
            wanted.erase(type);
        }
        rest = rest.sliced(size);
    }
    return plain;
}

} // namespace

PictureBytes::PictureBytes(const QByteArray& file)
    : m_format(FormatOf(file))
    , m_bytes(m_format == "png" ? PlainPng(file) : file)
{
    // Unbuffered: a buffer would return more than a portion.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void PictureBytes::LimitTime(int milliseconds)
{
    m_end = ProcessorMilliseconds() + milliseconds;
    m_isOverdue = false;
}

bool PictureBytes::seek(qint64 position)
{
    m_at = position;
    return QIODevice::seek(position);
}

qint64 PictureBytes::readData(char* data, qint64 most)
{
    m_isOverdue = m_isOverdue || ProcessorMilliseconds() > m_end;
    // The readers of the other formats interpret a short read as the end of the file.
    const bool hasPortions = m_format == "gif" || m_format == "jpeg";
    const qint64 portion = hasPortions ? std::min(most, kPortion) : most;
    const qint64 size = m_isOverdue ? 0 : std::clamp<qint64>(m_bytes.size() - m_at, 0, portion);
    std::copy_n(m_bytes.constData() + m_at, size, data);
    m_at += size;
    return size;
}

qint64 PictureBytes::writeData(const char* /*data*/, qint64 /*size*/)
{
    return -1;
}
