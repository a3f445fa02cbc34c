// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/WebAd.h"

#include "fakes/FakePlatform.h"
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"
#include "platform/ProcessorTime.h"
#include "service/BannerImages.h"
#include "support/RuntimeError.h"

#include <QApplication>
#include <QBuffer>
#include <QContextMenuEvent>
#include <QFile>
#include <QImage>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

// Share of a core. Without limits it is a whole one.
constexpr double kMostPerCent = 20.0;

// Two frames of 2 by 2 pixels, red and blue, 100 ms each, for ever.
const QByteArray kGif = QByteArray::fromHex("47494638396102000200f00000ff00000000ff21ff0b4e45545343415045322e"
                                            "30030100000021f9040000000a002c00000000020002"
                                            "000002028451002"
                                            "1f904000a0000002c0000000002000200000202"
                                            "8c53003b");

QByteArray Png(int width, int height, Qt::GlobalColor colour)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// The network, with a count of the background requests that were answered.
class CountedHttp final : public Http
{
public:
    [[nodiscard]] bool Reach(const QString& url) override { return m_http.Reach(url); }
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& limits) override
    {
        return m_http.Fetch(url, limits);
    }
    void Notify(const QString& url, const HttpLimits& limits) override { m_http.Notify(url, limits); }
    void FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                           std::function<void(Reply)> done) override
    {
        m_http.FetchInBackground(url, limits, context, [this, done = std::move(done)](const Reply& reply) {
            done(reply);
            ++told;
        });
    }

    int told = 0;

private:
    CurlHttp m_http;
};

class WebAdTest : public testing::Test
{
protected:
    WebAdTest()
    {
        strip.resize(468, 60);
        strip.OnLink([this](const QString& address) { followed << address; });
        strip.show();
    }

    void Navigate(const QString& page)
    {
        QFile file(QStringLiteral("page.html"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(page.toUtf8());
        file.close();
        strip.Navigate(platform.files, file.fileName());
    }
    [[nodiscard]] QColor At(int x, int y) { return strip.grab().toImage().pixelColor(x, y); }
    [[nodiscard]] bool Becomes(const QColor& colour, int x, int y)
    {
        return QTest::qWaitFor([&] { return At(x, y) == colour; }, 5000);
    }

    FakePlatform platform;
    CountedHttp http;
    WebAd strip{http, nullptr};
    QStringList followed;
};

TEST_F(WebAdTest, bannerOfItsSize_justFits)
{
    const QByteArray bytes = Png(468, 60, Qt::green);
    const LoopbackServer server(LoopbackServer::Answer(bytes));
    Navigate(QStringLiteral("<img src=\"%1\">").arg(server.Url(QStringLiteral("/banner.png?a=%20[b]"))));
    EXPECT_TRUE(Becomes(Qt::green, 0, 0));
    EXPECT_EQ(At(467, 59), QColor(Qt::green));
    EXPECT_EQ(server.RequestLines(), std::vector{QByteArray("GET /banner.png?a=%20[b] HTTP/1.1")});
}

TEST_F(WebAdTest, pictureWithASize_isScaled)
{
    const LoopbackServer server(LoopbackServer::Answer(Png(4, 4, Qt::green)));
    Navigate(QStringLiteral("<img width=100 height=50 src=\"%1\">").arg(server.Url()));
    EXPECT_TRUE(Becomes(Qt::green, 95, 45));
}

TEST_F(WebAdTest, dataPicture_needsNoNetwork)
{
    Navigate(QStringLiteral("<img width=50 height=50 src=\"data:image/png;base64,%1\">")
                 .arg(QString::fromLatin1(Png(4, 4, Qt::blue).toBase64())));
    EXPECT_EQ(At(45, 45), QColor(Qt::blue));
}

TEST_F(WebAdTest, doubleClickOnText_selectsNothing)
{
    Navigate(QStringLiteral("<b>Advertisement</b>"));
    QTest::mouseDClick(strip.viewport(), Qt::LeftButton, {}, QPoint(30, 8));
    EXPECT_FALSE(strip.textCursor().hasSelection());
}

TEST_F(WebAdTest, animatedPicture_moves)
{
    Navigate(QStringLiteral("<img width=50 height=50 src=\"data:image/gif;base64,%1\">")
                 .arg(QString::fromLatin1(kGif.toBase64())));
    EXPECT_TRUE(Becomes(Qt::red, 25, 25));
    EXPECT_TRUE(Becomes(Qt::blue, 25, 25));
    EXPECT_TRUE(Becomes(Qt::red, 25, 25)) << "and begins anew";
    strip.hide();
    const QColor still = At(25, 25);
    QTest::qWait(300);
    EXPECT_EQ(At(25, 25), still) << "nobody looks";
    strip.show();
    EXPECT_TRUE(Becomes(still == Qt::red ? Qt::blue : Qt::red, 25, 25));
}

TEST_F(WebAdTest, animationWithoutRepetition_staysAtItsLastFrame)
{
    QByteArray gif = kGif;
    gif.remove(gif.indexOf("\x21\xff"), 19);
    Navigate(QStringLiteral("<img width=50 height=50 src=\"data:image/gif;base64,%1\">")
                 .arg(QString::fromLatin1(gif.toBase64())));
    EXPECT_TRUE(Becomes(Qt::blue, 25, 25));
    QTest::qWait(300);
    EXPECT_EQ(At(25, 25), QColor(Qt::blue));
}

TEST_F(WebAdTest, pictures_areRequestedWithTheirLimits)
{
    FakeHttp fake;
    const BannerImages images(fake, {QStringLiteral("http://x.example/a.png")});
    EXPECT_EQ(fake.backgroundRequests, QStringList(QStringLiteral("http://x.example/a.png")));
    EXPECT_EQ(fake.backgroundLimits, (HttpLimits{2'097'152, 10, 10'000}));
}

TEST_F(WebAdTest, pictureWithAFragment_isRequestedWithoutIt)
{
    const LoopbackServer server(LoopbackServer::Answer(Png(4, 4, Qt::green)));
    Navigate(QStringLiteral("<img width=50 height=50 src=\"%1\">")
                 .arg(server.Url(QStringLiteral("/a.png?b=1&amp;c=2#d#e"))));
    EXPECT_TRUE(Becomes(Qt::green, 25, 25));
    EXPECT_EQ(server.RequestLines(), std::vector{QByteArray("GET /a.png?b=1&c=2 HTTP/1.1")});
}

// A picture of the largest allowed size with two small frames at the highest rate.
QByteArray HugeGif()
{
    QByteArray gif = kGif;
    gif[6] = gif[8] = static_cast<char>(0xE8);
    gif[7] = gif[9] = 3;
    return gif;
}

TEST_F(WebAdTest, sixteenHugePicturesThatMove_takeLittleTime)
{
    const QString picture = QStringLiteral("<img width=20 height=20 src=\"data:image/gif;base64,%1\">")
                                .arg(QString::fromLatin1(HugeGif().toBase64()));
    Navigate(picture.repeated(16));
    ASSERT_TRUE(Becomes(Qt::red, 0, 0)) << "the first ones are shown";
    EXPECT_EQ(At(15 * 20 + 10, 10), At(460, 55)) << "the last one is more than all may have together";
    constexpr int kWaitMilliseconds = 2000;
    const double before = ProcessorMilliseconds();
    QTest::qWait(kWaitMilliseconds);
    const double share = (ProcessorMilliseconds() - before) / kWaitMilliseconds * 100.0;
    std::cout << "figure: sixteen huge moving pictures take " << share << " % of a core\n";
    EXPECT_LT(share, kMostPerCent);
}

TEST_F(WebAdTest, invalidPicture_leavesTheTextAlone)
{
    const QByteArray bodies[] = {"",
                                 "<html>404</html>",
                                 Png(2000, 2000, Qt::red),
                                 "GIF89a",
                                 Png(4, 4, Qt::red).left(40),
                                 QByteArray(3 * 1024 * 1024, 'x'),
                                 "<svg xmlns='http://www.w3.org/2000/svg'/>"};
    for (const QByteArray& body : bodies) {
        const LoopbackServer server(LoopbackServer::Answer(body));
        http.told = 0;
        Navigate(QStringLiteral("<img src=\"%1\"><b>text</b>").arg(server.Url()));
        EXPECT_TRUE(QTest::qWaitFor([&] { return http.told == 1; }));
        EXPECT_EQ(server.Requests().size(), 1);
        EXPECT_TRUE(strip.toPlainText().endsWith(QStringLiteral("text")));
        EXPECT_NE(At(2, 2), QColor(Qt::red));
    }
}

TEST_F(WebAdTest, localFiles_areNeverRead)
{
    QFile file(QStringLiteral("secret.png"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(Png(100, 50, Qt::red));
    file.close();
    const QString path = platform.folder.path() + QStringLiteral("/secret.png");
    for (const QString& source : {path, QStringLiteral("file://") + path, QStringLiteral("secret.png"),
                                  QStringLiteral("image:secret.png"), QStringLiteral("qrc:/secret.png")}) {
        Navigate(
            QStringLiteral("<img width=100 height=50 src=\"%1\"><table background=\"%1\"><tr><td>x</table>"
                           "<p style=\"background-image:url(%1)\">y</p>")
                .arg(source));
        EXPECT_NE(At(50, 25), QColor(Qt::red)) << source.toStdString();
    }
}

TEST_F(WebAdTest, newPage_dropsThePicturesOfTheOldOne)
{
    const LoopbackServer server(LoopbackServer::Hang());
    Navigate(QStringLiteral("<img src=\"%1\">").arg(server.Url()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.Requests().size() == 1; }));
    Navigate(QStringLiteral("<b>new</b>"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; })) << "the request goes on";
    EXPECT_EQ(strip.toPlainText(), QStringLiteral("new"));
}

TEST_F(WebAdTest, nextPage_showsItsOwnPictures)
{
    // The pictures of every page are numbered from 0, so that those of two pages share their names.
    const LoopbackServer server(LoopbackServer::Answer(Png(4, 4, Qt::red)));
    const LoopbackServer silent(LoopbackServer::Hang());
    const QString page = QStringLiteral("<img width=50 height=50 src=\"%1\">");
    Navigate(page.arg(server.Url()));
    ASSERT_TRUE(Becomes(Qt::red, 25, 25));
    Navigate(page.arg(QStringLiteral("data:image/png;base64,") +
                      QString::fromLatin1(Png(4, 4, Qt::blue).toBase64())));
    EXPECT_EQ(At(25, 25), QColor(Qt::blue));
    Navigate(page.arg(server.Url()));
    ASSERT_TRUE(Becomes(Qt::red, 25, 25));
    Navigate(page.arg(silent.Url()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return silent.Requests().size() == 1; }));
    EXPECT_NE(At(25, 25), QColor(Qt::red));
}

TEST_F(WebAdTest, linkUnderTheMouse_isFollowed)
{
    Navigate(QStringLiteral("<a href=\"https://x.example/?a=1&amp;b=%20c\"><font size=7>HERE</font></a>"));
    QTest::mouseMove(strip.viewport(), QPoint(20, 15));
    QTest::mouseClick(strip.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 15));
    EXPECT_EQ(followed, QStringList(QStringLiteral("https://x.example/?a=1&b=%20c")));
    EXPECT_EQ(strip.toPlainText(), QStringLiteral("HERE"));
}

TEST_F(WebAdTest, linkByKeyboard_isFollowed)
{
    Navigate(QStringLiteral("<a href=\"http://x.example/\">here</a>"));
    strip.setFocus();
    QTest::keyClick(&strip, Qt::Key_Tab);
    QTest::keyClick(&strip, Qt::Key_Return);
    EXPECT_EQ(followed, QStringList(QStringLiteral("http://x.example/")));
}

TEST_F(WebAdTest, wheel_scrollsNothing_andNoBarsShow)
{
    Navigate(QStringLiteral("line<br>").repeated(30));
    ASSERT_GT(strip.verticalScrollBar()->maximum(), 0);
    QWheelEvent wheel(QPointF(5, 5), strip.viewport()->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -240),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(strip.viewport(), &wheel);
    EXPECT_EQ(strip.verticalScrollBar()->value(), 0);
    EXPECT_EQ(strip.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(strip.verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(strip.toolTip(), QString());
}

TEST_F(WebAdTest, rightClick_opensNoMenu)
{
    Navigate(QStringLiteral("<b>text</b>"));
    QContextMenuEvent click(QContextMenuEvent::Mouse, QPoint(5, 5),
                            strip.viewport()->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(strip.viewport(), &click);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(click.isAccepted());
}

TEST_F(WebAdTest, otherResources_areNeverLoaded)
{
    Navigate(QStringLiteral("<b>text</b>"));
    const QUrl own = QUrl::fromLocalFile(QStringLiteral(__FILE__));
    for (const int type : {QTextDocument::HtmlResource, QTextDocument::StyleSheetResource}) {
        EXPECT_EQ(strip.document()->resource(type, own).toByteArray(), QByteArray()) << type;
    }
}

TEST_F(WebAdTest, missingFile_throws)
{
    Navigate(QStringLiteral("<b>old</b>"));
    EXPECT_THROW(strip.Navigate(platform.files, QStringLiteral("nothing.html")), RuntimeError);
    EXPECT_EQ(strip.toPlainText(), QStringLiteral("old"));
}

} // namespace
