// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "service/WebAd.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

// A picture of 468 by 60 pixels as advertisers make them.
QString DrawnBanner()
{
    QImage image(468, 60, QImage::Format_RGB32);
    image.fill(QColor(0x1f, 0x4e, 0x5f));
    QPainter painter(&image);
    painter.setPen(QColor(0xf2, 0xc1, 0x4e));
    painter.drawRect(0, 0, 467, 59);
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(26);
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, QStringLiteral("Dates of the new harvest"));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QString::fromLatin1(bytes.toBase64());
}

struct PictureRow
{
    const char* name;
    QString page;
    /// Colours that must be seen.
    std::vector<QColor> colours;
};

std::vector<PictureRow> Rows()
{
    return {
        {"default",
         QStringLiteral(
             "<div align=\"center\"><b><font size=\"5\" color=\"#1f4e5f\">Dusk Beacon</font></b><br>"
             "Peace be upon you. May each prayer find you ready.</div>"),
         {QColor(0x1f, 0x4e, 0x5f), Qt::black}},
        {"picture",
         QStringLiteral("<a href=\"http://x.example/\"><img border=0 width=468 height=60 "
                        "src=\"data:image/png;base64,%1\"></a>")
             .arg(DrawnBanner()),
         {QColor(0x1f, 0x4e, 0x5f), QColor(0xf2, 0xc1, 0x4e)}},
        {"table",
         QStringLiteral("<table width=\"100%\" height=60 bgcolor=\"#004000\" cellpadding=6><tr>"
                        "<td><font color=\"white\" size=4><b>Ramadan timetable</b></font></td>"
                        "<td align=right bgcolor=\"#f2c14e\"><a href=\"http://x.example/\">Order "
                        "now</a></td></tr></table>"),
         {QColor(0x00, 0x40, 0x00), QColor(0xf2, 0xc1, 0x4e), Qt::white}},
        {"styled",
         QStringLiteral(
             "<div style=\"background-color:#ffeecc; text-align:center; font-size:20px; color:#802020\">"
             "Travel to <i>Makkah</i> with us<br><span style=\"font-size:12px\">from $ 999</span></div>"),
         {QColor(0xff, 0xee, 0xcc), QColor(0x80, 0x20, 0x20)}},
        {"arabic",
         QStringLiteral("<p dir=\"rtl\" align=\"center\"><font size=5 color=\"#205020\">"
                        "\u0627\u0644\u0633\u0644\u0627\u0645 \u0639\u0644\u064A\u0643\u0645</font></p>"),
         {QColor(0x20, 0x50, 0x20)}},
        {"list",
         QStringLiteral("<ul><li>Books<li>Prayer rugs<li><a href=\"https://x.example/\">Perfumes</a></ul>"),
         {Qt::black}},
        {"hostile",
         QStringLiteral(
             "<script>document.write('x')</script><iframe src=\"http://x.example/\"></iframe>"
             "<img src=\"file:///etc/passwd\"><center><font color=red>Win a prize!</font></center>"),
         {Qt::red}},
    };
}

// The pictures are kept in the build tree for inspection.
TEST(WebAdPictures, typicalBanners_showTheirColours)
{
    FakePlatform platform;
    WebAd strip(platform.http, nullptr);
    strip.resize(468, 60);
    QDir().mkpath(QStringLiteral(DUSKBEACON_PICTURES));
    for (const PictureRow& row : Rows()) {
        QFile file(QStringLiteral("page.html"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<meta charset=\"utf-8\">" + row.page.toUtf8());
        file.close();
        strip.Navigate(platform.files, file.fileName());
        const QImage picture = strip.grab().toImage();
        EXPECT_EQ(picture.size(), QSize(468, 60));
        for (const QColor& colour : row.colours) {
            bool isSeen = false;
            for (int y = 0; y < picture.height() && !isSeen; ++y) {
                for (int x = 0; x < picture.width() && !isSeen; ++x) {
                    isSeen = picture.pixelColor(x, y) == colour;
                }
            }
            EXPECT_TRUE(isSeen) << row.name << " without " << colour.name().toStdString();
        }
        EXPECT_TRUE(picture.save(QStringLiteral(DUSKBEACON_PICTURES) +
                                 QStringLiteral("/ad-%1.png").arg(QLatin1String(row.name))));
    }
}

} // namespace
