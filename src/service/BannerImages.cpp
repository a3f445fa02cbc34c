// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/BannerImages.h"

#include "platform/Http.h"
#include "service/GifFrames.h"
#include "service/PngChunks.h"

#include <algorithm>
#include <array>

namespace {

constexpr HttpLimits kImageLimits{2LL * 1024 * 1024, 10, 10'000};
// Faster than this nobody sees it, and a clock has better things to do.
constexpr int kShortestFrameMilliseconds = 50;
// All pictures that move, together: about two hundredths of a slow core.
constexpr qint64 kMostCostPerSecond = 5'000'000;

// The bytes of a data address (RFC 2397); nothing if it is none or too long.
QByteArray BytesOf(const QString& address)
{
    const qsizetype comma = address.indexOf(u',');
    if (comma < 0 || address.size() > 2 * kImageLimits.bytes) {
        return {};
    }
    const QByteArray bytes = QByteArray::fromPercentEncoding(address.mid(comma + 1).toLatin1());
    return address.left(comma).endsWith(u";base64", Qt::CaseInsensitive) ? QByteArray::fromBase64(bytes)
                                                                         : bytes;
}

// One of the four formats that are shown, by the first bytes; empty for anything else. The library would hand
// them to each reader that is installed, and one of drawings opens the files that they name.
QByteArray FormatOf(const QByteArray& bytes)
{
    constexpr std::array<std::pair<QByteArrayView, const char*>, 4> kMarks{
        {{"\x89PNG\r\n\x1a\n", "png"}, {"GIF8", "gif"}, {"\xFF\xD8\xFF", "jpeg"}, {"BM", "bmp"}}};
    const auto* const found = std::find_if(kMarks.begin(), kMarks.end(),
                                           [&](const auto& mark) { return bytes.startsWith(mark.first); });
    return found == kMarks.end() ? QByteArray() : QByteArray(found->second);
}

qint64 PixelsOf(const QSize& size)
{
    return static_cast<qint64>(size.width()) * size.height();
}

// A small file can hold minutes of decoding: pixels behind a picture's last one, or a picture in thousands of
// steps, each of which goes over it whole. Usual are ten steps.
bool IsDecodedSoon(const QByteArray& format, const QByteArray& bytes, qint64 pixels)
{
    if (format == "png") {
        // Eight bytes are the longest pixel, and each row has one more.
        constexpr qint64 kMostBytesOfPixel = 9;
        return HasModestPixels(bytes, kMostBytesOfPixel * pixels);
    }
    if (format == "gif") {
        return HasModestFrames(bytes, BannerImages::kMostPixels);
    }
    // A step can't hold the mark of one (ITU-T T.81, B.1.1.5). A profile or a small picture inside the file
    // can, but not so many.
    constexpr qsizetype kMostSteps = 64;
    return format != "jpeg" || bytes.count("\xFF\xDA") <= kMostSteps;
}

} // namespace

BannerImages::BannerImages(Http& http, const QStringList& addresses)
{
    for (const QString& address : addresses) {
        const auto number = static_cast<qsizetype>(m_images.size());
        m_images.push_back(std::make_unique<Image>());
        m_images.back()->shown = Dot();
        if (address.startsWith(u"data:", Qt::CaseInsensitive)) {
            Start(number, BytesOf(address));
            continue;
        }
        // A picture has no fragments to show; unlike in a request of ours, a "#" is none of the server's.
        http.FetchInBackground(
            address.section(u'#', 0, 0), kImageLimits, this,
            [this, number](const Http::Reply& reply) { Start(number, reply.value_or(QByteArray())); });
    }
}

QPixmap BannerImages::Dot()
{
    QPixmap dot(1, 1);
    dot.fill(Qt::transparent);
    return dot;
}

QPixmap BannerImages::Picture(qsizetype number) const
{
    const bool isThere = number >= 0 && number < static_cast<qsizetype>(m_images.size());
    return isThere ? m_images[static_cast<std::size_t>(number)]->shown : Dot();
}

void BannerImages::SetRunning(bool running)
{
    m_running = running;
    for (const std::unique_ptr<Image>& image : m_images) {
        if (!running) {
            image->timer.stop();
        } else if (image->isMoving) {
            image->timer.start();
        }
    }
}

bool BannerImages::Rewind(Image& image)
{
    image.buffer.close();
    image.buffer.setBuffer(&image.bytes);
    image.buffer.open(QIODevice::ReadOnly);
    image.reader = std::make_unique<QImageReader>(&image.buffer, image.format);
    image.reader->setAutoDetectImageFormat(false);
    const QSize size = image.reader->size();
    return size.isValid() && PixelsOf(size) <= kMostPixels;
}

bool BannerImages::MayBeShown(Image& image) const
{
    // A file's bytes alone may be too many: those aren't looked into.
    if (image.format.isEmpty() || m_cost + image.bytes.size() > kMostCost || !Rewind(image)) {
        return false;
    }
    const qint64 pixels = PixelsOf(image.reader->size());
    image.cost = pixels + image.bytes.size();
    return m_cost + image.cost <= kMostCost && IsDecodedSoon(image.format, image.bytes, pixels);
}

int BannerImages::ShortestFrameMilliseconds() const
{
    qint64 cost = 0;
    for (const std::unique_ptr<Image>& image : m_images) {
        cost += image->isMoving ? image->cost : 0;
    }
    return std::max(kShortestFrameMilliseconds, static_cast<int>(cost * 1000 / kMostCostPerSecond));
}

void BannerImages::Start(qsizetype number, const QByteArray& bytes)
{
    Image& image = *m_images[static_cast<std::size_t>(number)];
    image.format = FormatOf(bytes);
    image.bytes = image.format == "png" ? PlainPng(bytes) : bytes;
    if (!MayBeShown(image)) {
        image.reader.reset();
        image.bytes.clear();
        return;
    }
    m_cost += image.cost;
    image.loopsLeft = image.reader->loopCount();
    image.timer.setSingleShot(true);
    connect(&image.timer, &QTimer::timeout, this, [this, number] { ShowNextFrame(number); });
    ShowNextFrame(number);
}

void BannerImages::ShowNextFrame(qsizetype number)
{
    Image& image = *m_images[static_cast<std::size_t>(number)];
    QImage frame = image.reader->read();
    const bool mayRepeat = image.loopsLeft != 0 && image.reader->supportsAnimation();
    if (frame.isNull() && mayRepeat && Rewind(image)) {
        image.loopsLeft -= image.loopsLeft > 0 ? 1 : 0;
        frame = image.reader->read();
    }
    image.isMoving = !frame.isNull() && image.reader->supportsAnimation();
    if (!image.isMoving) {
        image.reader.reset();
        image.bytes.clear();
    }
    if (frame.isNull()) {
        return;
    }
    const QSize before = image.shown.size();
    image.shown = QPixmap::fromImage(frame);
    if (image.isMoving) {
        image.timer.setInterval(std::max(image.reader->nextImageDelay(), ShortestFrameMilliseconds()));
    }
    if (image.isMoving && m_running) {
        image.timer.start();
    }
    emit Changed(number, before != image.shown.size());
}
