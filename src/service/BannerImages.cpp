// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/BannerImages.h"

#include "platform/Http.h"
#include "platform/ProcessorTime.h"
#include "service/PictureBytes.h"

#include <QImageReader>
#include <QTimer>

#include <algorithm>

namespace {

constexpr HttpLimits kImageLimits{2LL * 1024 * 1024, 10, 10'000};
// Limit the frame rate: frames are decoded on the UI thread, and a higher rate is not visible.
constexpr int kShortestFrameMilliseconds = 50;
// Limit for all animations together: about 2 per cent of a slow core.
constexpr qint64 kMostCostPerSecond = 5'000'000;
// The pause between two frames as a multiple of the processor time of the first, which its pixels do not
// limit.
constexpr double kPauseInTimesOfAFrame = 10.0;

// Limit of processor time for a frame: a fixed part and a part for its pixels. The largest ordinary pictures
// take 30 ms of the 383 that they are allowed, so that those on a slow or emulated machine are shown too.
constexpr int kMillisecondsOfAPicture = 50;
constexpr qint64 kPixelsOfAMillisecond = 3'000;

// The bytes of a data URL (RFC 2397); empty if it is invalid or too long.
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

qint64 PixelsOf(const QSize& size)
{
    return static_cast<qint64>(size.width()) * size.height();
}

} // namespace

struct BannerImages::Image
{
    /// The next frame; a null image at the end, or if decoding takes too long.
    [[nodiscard]] QImage Read()
    {
        const QImage frame = reader->read();
        return file->IsOverdue() ? QImage() : frame;
    }
    void Rewind()
    {
        file->seek(0);
        reader = std::make_unique<QImageReader>(file.get(), file->Format());
        reader->setAutoDetectImageFormat(false);
    }
    void Forget()
    {
        reader.reset();
        file.reset();
    }

    std::unique_ptr<PictureBytes> file;
    std::unique_ptr<QImageReader> reader;
    QPixmap shown = Dot();
    QTimer timer;
    qint64 pixels = 0;
    qint64 cost = 0;
    int loopsLeft = 0;
    bool isMoving = false;
};

BannerImages::BannerImages(Http& http, const QStringList& addresses)
{
    for (const QString& address : addresses) {
        const auto number = static_cast<qsizetype>(m_images.size());
        m_images.push_back(std::make_unique<Image>());
        if (address.startsWith(u"data:", Qt::CaseInsensitive)) {
            Start(number, BytesOf(address));
            continue;
        }
        // Drop the fragment: it means nothing for a picture. A "#" in a request to the service is sent.
        http.FetchInBackground(
            address.section(u'#', 0, 0), kImageLimits, this,
            [this, number](const Http::Reply& reply) { Start(number, reply.value_or(QByteArray())); });
    }
}

BannerImages::~BannerImages() = default;

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

bool BannerImages::MayBeShown(Image& image) const
{
    // Check the size of the file first, before its header is decoded.
    if (image.file->Format().isEmpty() || m_cost + image.file->size() > kMostCost) {
        return false;
    }
    image.Rewind();
    const QSize size = image.reader->size();
    image.pixels = PixelsOf(size);
    image.cost = image.pixels + image.file->size();
    return size.isValid() && image.pixels <= kMostPixels && m_cost + image.cost <= kMostCost;
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
    image.file = std::make_unique<PictureBytes>(bytes);
    if (!MayBeShown(image)) {
        image.Forget();
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
    const double start = ProcessorMilliseconds();
    image.file->LimitTime(kMillisecondsOfAPicture + static_cast<int>(image.pixels / kPixelsOfAMillisecond));
    QImage frame = image.Read();
    if (frame.isNull() && !image.file->IsOverdue() && image.loopsLeft != 0 &&
        image.reader->supportsAnimation()) {
        image.loopsLeft -= image.loopsLeft > 0 ? 1 : 0;
        image.Rewind();
        frame = image.Read();
    }
    if (image.file->IsOverdue()) {
        // Load no other picture of this banner.
        m_cost = kMostCost;
    }
    image.isMoving = !frame.isNull() && image.reader->supportsAnimation();
    if (image.isMoving) {
        const auto pause = static_cast<int>((ProcessorMilliseconds() - start) * kPauseInTimesOfAFrame);
        image.timer.setInterval(
            std::max({image.reader->nextImageDelay(), ShortestFrameMilliseconds(), pause}));
    } else {
        image.Forget();
    }
    if (frame.isNull()) {
        return;
    }
    const QSize before = image.shown.size();
    image.shown = QPixmap::fromImage(frame);
    if (image.isMoving && m_running) {
        image.timer.start();
    }
    emit Changed(number, before != image.shown.size());
}
