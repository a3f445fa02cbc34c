// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The plugin below is part of this program.
#define QT_STATICPLUGIN

#include "service/BannerImages.h"

#include "fakes/FakePlatform.h"
#include "fakes/Memory.h"
#include "platform/ProcessorTime.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QImageIOPlugin>
#include <QImageReader>
#include <QImageWriter>
#include <QSignalSpy>
#include <QtEndian>
#include <QtPlugin>

#include <gtest/gtest.h>
#include <zlib.h>

namespace {

// Limit of processor time. Without a limit these pictures take seconds; the largest is allowed 383 ms.
constexpr double kMostOfAPicture = 1000.0;
constexpr qint64 kMegabyte = 1024LL * 1024;

QByteArray Written(const QImage& picture, const char* format, int quality = -1)
{
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    writer.setProgressiveScanWrite(true);
    EXPECT_TRUE(writer.write(picture)) << writer.errorString().toStdString();
    return buffer.data();
}

QImage Filled(int width, int height, const QColor& colour)
{
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

/// The pictures of a banner, which come one by one from their hosts.
class BannerImagesTest : public testing::Test
{
protected:
    /// The picture that is shown for these bytes.
    QImage Shown(const QByteArray& bytes)
    {
        m_images = std::make_unique<BannerImages>(m_http, QStringList(QStringLiteral("http://x.example/")));
        m_http.backgroundDone.back()(bytes);
        return m_images->Picture(0).toImage();
    }
    bool IsShown(const QByteArray& bytes) { return Shown(bytes).size() != BannerImages::Dot().size(); }
    void ExpectLeftOutInTime(const QByteArray& bytes)
    {
        const double before = ProcessorMilliseconds();
        EXPECT_FALSE(IsShown(bytes));
        EXPECT_LT(ProcessorMilliseconds() - before, kMostOfAPicture);
    }

private:
    FakeHttp m_http;
    std::unique_ptr<BannerImages> m_images;
};

TEST_F(BannerImagesTest, fourFormats_areShown)
{
    for (const char* const format : {"bmp", "png", "jpeg"}) {
        const QImage shown = Shown(Written(Filled(20, 10, Qt::red), format, 100));
        ASSERT_EQ(shown.size(), QSize(20, 10)) << format;
        EXPECT_GT(qRed(shown.pixel(10, 5)), 250) << format;
        EXPECT_LT(qBlue(shown.pixel(10, 5)), 5) << format;
    }
    const QByteArray gif =
        QByteArray::fromHex("47494638376102000200f00000ff00000000ff2c00000000020002000002028451003b");
    EXPECT_EQ(Shown(gif).pixelColor(1, 1), QColor(Qt::red));
}

// A reader that accepts every file while a test enables it.
bool takesAll = false;
int readers = 0;

class EveryImageHandler final : public QImageIOHandler
{
public:
    [[nodiscard]] bool canRead() const override { return true; }
    bool read(QImage* picture) override
    {
        *picture = Filled(30, 30, Qt::green);
        return true;
    }
    [[nodiscard]] QVariant option(ImageOption option) const override
    {
        return option == Size ? QVariant(QSize(30, 30)) : QVariant();
    }
    [[nodiscard]] bool supportsOption(ImageOption option) const override { return option == Size; }
};

} // namespace

class EveryImage final : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QImageIOHandlerFactoryInterface" FILE "EveryImage.json")

public:
    [[nodiscard]] Capabilities capabilities(QIODevice* device, const QByteArray& format) const override
    {
        const bool isWanted = takesAll && (format == "svg" || (format.isEmpty() && device != nullptr));
        return isWanted ? CanRead : Capabilities();
    }
    [[nodiscard]] QImageIOHandler* create(QIODevice* device, const QByteArray& format) const override
    {
        ++readers;
        auto* const handler = new EveryImageHandler; // the caller's
        handler->setDevice(device);
        handler->setFormat(format);
        return handler;
    }
};

Q_IMPORT_PLUGIN(EveryImage)

namespace {

TEST_F(BannerImagesTest, otherFormats_areReadByNoReader)
{
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg'><image href='file:///x'/></svg>";
    takesAll = true;
    QBuffer buffer;
    buffer.setData(drawing);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    ASSERT_EQ(QImageReader(&buffer).size(), QSize(30, 30)) << "Qt asks every installed reader";
    readers = 0;
    for (const QByteArray& bytes :
         {drawing, QByteArray("GIF"), QByteArray("\x89PNG"), QByteArray("P6 1 1 255 abc"),
          Written(Filled(20, 10, Qt::red), "png").prepend(' ')}) {
        EXPECT_FALSE(IsShown(bytes)) << bytes.left(20).toStdString();
    }
    // A valid signature with invalid content: still no other reader is tried.
    for (const char* const bytes : {"BM", "GIF89a", "\x89PNG\r\n\x1a\n", "\xFF\xD8\xFF"}) {
        EXPECT_FALSE(IsShown(bytes)) << bytes;
    }
    EXPECT_EQ(readers, 0);
    takesAll = false;
}

TEST_F(BannerImagesTest, picturesNotShownOrNotAnimated_areNotKept)
{
    const QByteArray bodies[] = {QByteArray(1000, 'x'),
                                 Written(Filled(2000, 2000, Qt::red), "jpeg"),
                                 Written(Filled(20, 10, Qt::red), "jpeg"),
                                 Written(Filled(20, 10, Qt::red), "jpeg").left(300),
                                 Written(Filled(20, 10, Qt::red), "bmp"),
                                 QByteArray("GIF89a\0", 7),
                                 "BM" + QByteArray(BannerImages::kMostCost, 'x')};
    for (const QByteArray& body : bodies) {
        QByteArray own(body.constData(), body.size());
        static_cast<void>(Shown(own));
        EXPECT_TRUE(own.isDetached()) << "still in use: " << own.left(10).toHex().toStdString();
    }
}

// A frame of 1000 by 1000 pixels with codes far beyond its last pixel: first each code is a run of pixels one
// longer than the run before, then the longest run is repeated.
QByteArray EndlessGif(int longestRows, int frames = 1)
{
    QByteArray packed;
    unsigned int waiting = 0;
    int waitingBits = 0;
    const auto put = [&](unsigned int code, int bits) {
        waiting |= code << waitingBits;
        for (waitingBits += bits; waitingBits >= 8; waitingBits -= 8) {
            packed += static_cast<char>(waiting & 255U);
            waiting >>= 8;
        }
    };
    put(256, 9);
    put(0, 9);
    int bits = 9;
    for (unsigned int next = 258; next < 4096; ++next) {
        put(next, bits);
        bits += next + 1 == 1U << bits && bits < 12 ? 1 : 0;
    }
    for (int i = 0; i < longestRows; ++i) {
        put(4095, 12);
    }
    put(257, 12);
    put(0, 12);
    QByteArray frame(",\0\0\0\0\xE8\x03\xE8\x03\0\x08", 11);
    for (qsizetype at = 0; at < packed.size(); at += 255) {
        const QByteArray block = packed.mid(at, 255);
        frame += static_cast<char>(block.size()) + block;
    }
    frame += '\0';
    return QByteArray("GIF89a\xE8\x03\xE8\x03\xF7\0\0", 13) + QByteArray(768, '\x7F') +
           frame.repeated(frames) + ';';
}

// A progressive picture whose last step is repeated.
QByteArray JpegInSteps(int side, int repetitions)
{
    const QByteArray bytes = Written(Filled(side, side, Qt::black), "jpeg");
    const qsizetype last = bytes.lastIndexOf("\xFF\xDA");
    const QByteArray step = bytes.sliced(last, bytes.size() - 2 - last);
    return bytes.first(last) + step.repeated(repetitions) + bytes.last(2);
}

TEST_F(BannerImagesTest, pictureInThousandsOfProgressiveSteps_isNotShown)
{
    EXPECT_TRUE(IsShown(JpegInSteps(1000, 1)));
    ExpectLeftOutInTime(JpegInSteps(1000, 12'000));
}

TEST_F(BannerImagesTest, pictureWithEndlessPixels_isNotShown)
{
    EXPECT_TRUE(IsShown(EndlessGif(0)));
    // A fifth of the steps that a file can hold, so that a failure does not take minutes.
    ExpectLeftOutInTime(EndlessGif(250'000));
}

TEST_F(BannerImagesTest, animationOfLongFrames_pausesTenTimesAsLong)
{
    FakeHttp http;
    const BannerImages images(http, {QStringLiteral("http://x.example/")});
    QSignalSpy frames(&images, &BannerImages::Changed);
    QElapsedTimer time;
    time.start();
    // Each frame takes 100 ms or so, less than its limit.
    const double before = ProcessorMilliseconds();
    http.backgroundDone.front()(EndlessGif(25'000, 3));
    const double frame = ProcessorMilliseconds() - before;
    ASSERT_EQ(frames.count(), 1);
    ASSERT_TRUE(frames.wait(60'000));
    EXPECT_GT(static_cast<double>(time.elapsed()), 5 * frame) << "a half, since reading the file counts here";
}

TEST_F(BannerImagesTest, pictureAfterOneThatTookTooLong_isNotShown)
{
    FakeHttp http;
    const QString address = QStringLiteral("http://x.example/");
    const BannerImages images(http, {address, address});
    http.backgroundDone.front()(EndlessGif(250'000));
    http.backgroundDone.back()(Written(Filled(20, 10, Qt::red), "png"));
    EXPECT_EQ(images.Picture(1).size(), BannerImages::Dot().size());
}

QByteArray Chunk(const QByteArray& type, const QByteArray& content)
{
    QByteArray chunk(4, '\0');
    qToBigEndian(static_cast<quint32>(content.size()), chunk.data());
    chunk += type + content;
    QByteArray check(4, '\0');
    qToBigEndian(static_cast<quint32>(::crc32(0, reinterpret_cast<const Bytef*>(chunk.constData()) + 4,
                                              static_cast<uInt>(chunk.size() - 4))),
                 check.data());
    return chunk + check;
}

QByteArray Packed(const QByteArray& bytes, int level)
{
    // Without the length at the front.
    return qCompress(bytes, level).sliced(4);
}

/// A true-colour picture.
QByteArray PngOf(int side, const QByteArray& chunks)
{
    QByteArray size(4, '\0');
    qToBigEndian(static_cast<quint32>(side), size.data());
    return QByteArray("\x89PNG\r\n\x1a\n") + Chunk("IHDR", size + size + QByteArray("\x08\x02\0\0\0", 5)) +
           chunks + Chunk("IEND", QByteArray());
}

/// One colour, uncompressed.
QByteArray PlainPixels(int side, const QByteArray& pixel)
{
    return Packed((QByteArray(1, '\0') + pixel.repeated(side)).repeated(side), 0);
}

TEST_F(BannerImagesTest, palettePngWithTexts_isShown)
{
    QImage picture(40, 20, QImage::Format_Indexed8);
    picture.setColorTable({qRgb(255, 0, 0), qRgba(0, 0, 0, 0), qRgba(0, 0, 255, 128)});
    picture.fill(0);
    picture.setPixel(1, 0, 1);
    picture.setPixel(2, 0, 2);
    picture.setText(QStringLiteral("Title"), QStringLiteral("Dates of the new harvest"));
    picture.setText(QStringLiteral("Long"), QStringLiteral("text ").repeated(1000));
    const QByteArray png = Written(picture, "png");
    for (const char* const chunk : {"PLTE", "tRNS", "tEXt", "zTXt"}) {
        ASSERT_TRUE(png.contains(chunk)) << chunk;
    }
    const QImage shown = Shown(png).convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(shown, picture.convertToFormat(QImage::Format_ARGB32));
    EXPECT_EQ(shown.pixel(1, 0), qRgba(0, 0, 0, 0));
    EXPECT_EQ(qAlpha(shown.pixel(2, 0)), 128);
}

TEST_F(BannerImagesTest, repeatedPalettes_areDropped)
{
    QImage picture(10, 10, QImage::Format_Indexed8);
    picture.setColorTable({qRgb(255, 0, 0), qRgba(0, 0, 0, 0)});
    picture.fill(0);
    const QByteArray png = Written(picture, "png");
    const qsizetype pixels = png.indexOf("IDAT") - 4;
    const QByteArray again = Chunk("PLTE", QByteArray(6, '\x7F')) + Chunk("tRNS", QByteArray(2, '\0'));
    testing::internal::CaptureStderr();
    const QImage shown = Shown(png.first(pixels) + again.repeated(100) + png.sliced(pixels));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the reader logs each of them";
    EXPECT_EQ(shown.pixelColor(5, 5), QColor(Qt::red));
}

TEST_F(BannerImagesTest, pixelsInSeveralChunks_areShown)
{
    const QByteArray pixels = PlainPixels(10, "\xFF\x11\x22");
    EXPECT_TRUE(IsShown(PngOf(10, Chunk("IDAT", pixels.first(40)) + Chunk("IDAT", QByteArray()) +
                                      Chunk("IDAT", pixels.sliced(40)))));
    EXPECT_FALSE(IsShown(PngOf(10, Chunk("IDAT", pixels).chopped(1)).chopped(12))) << "cut";
}

// The picture with the largest colour depth and size that is allowed.
TEST_F(BannerImagesTest, deepestPng_isShown)
{
    QImage picture(1, 10'000, QImage::Format_RGBA64);
    picture.fill(Qt::red);
    EXPECT_TRUE(IsShown(Written(picture, "png")));
    QImage square(1000, 1000, QImage::Format_RGBA64);
    square.fill(Qt::red);
    EXPECT_TRUE(IsShown(Written(square, "png")));
}

TEST_F(BannerImagesTest, pngWithEndlessTexts_takesLittleMemory)
{
    // libpng refuses more than eight million bytes.
    const QByteArray blanks = Packed(QByteArray(7'900'000, ' '), 9);
    QByteArray texts;
    for (int number = 0; number < 10; ++number) {
        texts += Chunk("zTXt", "Text" + QByteArray::number(number) + QByteArray(2, '\0') + blanks);
    }
    const QByteArray png = PngOf(10, texts + Chunk("IDAT", PlainPixels(10, "\xFF\x11\x22")));
    const qint64 before = Memory::ForgetPeak();
    EXPECT_TRUE(IsShown(png));
    if (Memory::kIsTrue) {
        EXPECT_LT(Memory::Peak() - before, 4 * kMegabyte);
    }
}

// A thousand megabytes of zeros, compressed.
QByteArray GigabyteOfZeros()
{
    const QByteArray zeros(kMegabyte, '\0');
    z_stream stream = {};
    EXPECT_EQ(deflateInit(&stream, 9), Z_OK);
    const auto pack = [&] {
        QByteArray packed(kMegabyte, '\0');
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(zeros.constData()));
        stream.avail_in = static_cast<uInt>(zeros.size());
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        EXPECT_EQ(deflate(&stream, Z_FULL_FLUSH), Z_OK);
        return packed.first(packed.size() - stream.avail_out);
    };
    const QByteArray first = pack();
    const QByteArray next = pack();
    deflateEnd(&stream);
    return first + next.repeated(1023);
}

TEST_F(BannerImagesTest, pngWithEndlessPixels_isNotShown)
{
    const QByteArray png = PngOf(100, Chunk("IDAT", GigabyteOfZeros()));
    ASSERT_LT(png.size(), 2 * kMegabyte);
    ExpectLeftOutInTime(png);
}

} // namespace

#include "BannerImagesTest.moc"
