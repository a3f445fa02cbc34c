// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/BannerHtml.h"

#include "fakes/FakePlatform.h"
#include "fakes/ProcessorTime.h"
#include "service/WebAd.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

// Of processor time, with which the clock misses no second. What is guarded against takes many seconds, the
// costliest page that is shown some 60 milliseconds of a slow machine, and several times that with
// sanitizers.
#ifdef __SANITIZE_ADDRESS__
constexpr double kMostOfAPage = 800.0;
#else
constexpr double kMostOfAPage = 200.0;
#endif

struct CleanRow
{
    const char* name;
    const char* page;
    const char* html;
};

class BannerHtmlClean : public testing::TestWithParam<CleanRow>
{
};

TEST_P(BannerHtmlClean, page_becomesThis)
{
    const std::optional<Banner> banner = CleanBanner(QString::fromUtf8(GetParam().page));
    ASSERT_TRUE(banner);
    EXPECT_EQ(banner->html.toStdString(), GetParam().html);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BannerHtmlClean,
    testing::Values(
        CleanRow{"plain", "<html><b>a</b> b</html>", "<b>a</b> b"},
        CleanRow{"upper_case", "<FONT COLOR=RED>a</Font>", "<font color=\"RED\">a</font>"},
        CleanRow{"unclosed", "<b><i>a", "<b><i>a</i></b>"}, CleanRow{"closed_twice", "a</b></b>", "a"},
        CleanRow{"crossed", "<b><i>a</b>b</i>", "<b><i>a</i></b>b"},
        CleanRow{"script", "a<script>if (1<2) '</b>'</script>b", "ab"},
        CleanRow{"script_without_end", "a<script>b", "a"},
        CleanRow{"style_sheet", "<style>b{color:red}</style>a", "a"},
        CleanRow{"frame", "<iframe src=http://x.example/>a</iframe>b", "b"},
        CleanRow{"comment", "a<!-- <b> -- > -->b", "ab"}, CleanRow{"comment_without_end", "a<!-- b", "a"},
        CleanRow{"declaration", "<!DOCTYPE html><?xml?>a", "a"},
        CleanRow{"unknown_tag", "<marquee>a</marquee>", "a"},
        CleanRow{"event_handler", "<b onclick=\"x()\">a</b>", "<b>a</b>"},
        CleanRow{"angles_in_text", "1 < 2 > 1 <3", "1 &lt; 2 &gt; 1 &lt;3"},
        CleanRow{"entities", "&lt;b&gt; &amp;&#65;&#x42;", "&lt;b&gt; &amp;&#65;&#66;"},
        CleanRow{"marks_of_the_layout", "&#xFDD0;&#0;&#xFFFC;&#x2029;&#55296;&#99999999;a", "      a"},
        CleanRow{"quotes", "<a href='http://x.example/?a=\"b\"'>c</a>",
                 "<a href=\"http://x.example/?a=&quot;b&quot;\">c</a>"},
        CleanRow{"end_tag_in_an_attribute", "<font face=\"</table>\">a</font>",
                 "<font face=\"&lt;/table&gt;\">a</font>"},
        CleanRow{"link_to_a_file", "<a href=\"file:///x\">a</a>", "<a>a</a>"},
        CleanRow{"link_to_a_script", "<a href=\" javascript:x\">a</a>", "<a>a</a>"},
        CleanRow{"link_without_scheme", "<a href=\"x.html\">a</a>", "<a>a</a>"},
        CleanRow{"picture", "<img src=http://x.example/a.gif width=468 height=60 border=0>",
                 "<img src=\"image:0\" width=\"468\" height=\"60\" border=\"0\">"},
        CleanRow{"entities_in_a_link", "<a href='http://x.example/?a=1&amp;b=2&#38;c=3&copy=4'>a</a>",
                 "<a href=\"http://x.example/?a=1&amp;b=2&amp;c=3&amp;copy=4\">a</a>"},
        CleanRow{
            "entities_without_their_ends",
            "<a href='http://x.example/?a=1&amp&lt&ampb=2&amp=3&quot#&copy&amp'>a</a>",
            "<a href=\"http://x.example/?a=1&amp;&lt;&amp;ampb=2&amp;amp=3&quot;#&amp;copy&amp;\">a</a>"},
        CleanRow{"entity_of_an_entity", "<font face='&amp;lt;&#x3C;'>a</font>",
                 "<font face=\"&amp;lt;&lt;\">a</font>"},
        CleanRow{"link_to_a_file_in_numbers", "<a href='&#102;ile:///x'>a</a>", "<a>a</a>"},
        CleanRow{"huge_size_in_numbers", "<hr width='&#57;&#57;&#57;&#57;&#57;'>", "<hr>"},
        CleanRow{"style_that_loads_in_numbers", "<p style='background:u&#114;l(file:///x)'>a</p>",
                 "<p>a</p>"},
        CleanRow{"picture_of_a_file_in_numbers", "a<img src=&#102;ile:///x.png>", "a"},
        CleanRow{"picture_of_a_file", "a<img src=file:///x.png>", "a"},
        CleanRow{"picture_without_scheme", "a<img src=/x.png><img src=qrc:/x><img>", "a"},
        CleanRow{"huge_size", "<img src=https://x.example/a width=1000000>", "<img src=\"image:0\">"},
        CleanRow{"huge_style", "<p style=\"font-size:9999px\">a</p>", "<p>a</p>"},
        CleanRow{"style", "<p style=\"font-size:20px;color:#001122\">a</p>",
                 "<p style=\"font-size:20px;color:#001122\">a</p>"},
        CleanRow{"style_that_loads", "<p style=\"background:url(file:///x)\">a</p>", "<p>a</p>"},
        CleanRow{"paragraphs", "<p>a<p>b", "<p>a</p><p>b</p>"},
        CleanRow{"list", "<ul><li>a<li>b</ul>c", "<ul><li>a</li><li>b</li></ul>c"},
        CleanRow{"table", "<table bgcolor=#ff0000><tr><td>a<td>b<tr><td>c</table>d",
                 "<table bgcolor=\"#ff0000\"><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>d"},
        CleanRow{"cell_without_table", "<td>a</td><tr>b", "ab"},
        CleanRow{"text_between_cells", "<table> a<tr> <td>b</td> <b>c</b></table>",
                 "<table><tr><td> a</td></tr><tr><td>b</td><td><b>c</b></td></tr></table>"},
        CleanRow{"table_in_a_table", "<table><table><tr><td>a</table></table>",
                 "<table><tr><td><table><tr><td>a</td></tr></table></td></tr></table>"},
        CleanRow{"end_of_style_does_not_leave_its_cell", "<b><table><tr><td>a</b>b</table>",
                 "<b><table><tr><td>ab</td></tr></table></b>"},
        CleanRow{"spans", "<table><tr><td colspan=3 rowspan=99999>a</table>",
                 "<table><tr><td colspan=\"3\">a</td></tr></table>"},
        CleanRow{"cut_tag", "a<b", "a<b></b>"}, CleanRow{"cut_attribute", "a<b c=\"d", "a<b></b>"},
        CleanRow{"cut_entity", "a&#", "a&amp;#"},
        CleanRow{"number_without_its_end", "&#169Dusk &#xA9Gold &#00000000000169;",
                 "&#169;Dusk &#169;Gold &#169;"},
        CleanRow{"number_without_digits", "&#offers &#; &#x; &#xyz; &#+65;",
                 "&amp;#offers &amp;#; &amp;#x; &amp;#xyz; &amp;#+65;"},
        CleanRow{"number_beyond_all", "a&#99999999999999999999;b", "a b"},
        CleanRow{"numbers_that_are_none_in_a_link",
                 "<a href='http://x.example/?a=1&#38b=2&#special-offers'>a</a>",
                 "<a href=\"http://x.example/?a=1&amp;b=2&amp;#special-offers\">a</a>"},
        CleanRow{"nothing", "", ""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(BannerHtml, valuesThatAreTooLong_areLeftOut)
{
    const QString address = QStringLiteral("http://x.example/") + QString(1983, u'a');
    const QString family(400, u'a');
    const auto html = [](const QString& page) { return CleanBanner(page)->html; };
    const auto link = QStringLiteral("<a href=\"%1\">b</a>");
    const auto font = QStringLiteral("<font face=\"%1\">b</font>");
    EXPECT_EQ(html(link.arg(address)), link.arg(address));
    EXPECT_EQ(html(link.arg(address + u'a')), QStringLiteral("<a>b</a>"));
    EXPECT_EQ(html(font.arg(family)), font.arg(family));
    EXPECT_EQ(html(font.arg(family + u'a')), QStringLiteral("<font>b</font>"));
}

TEST(BannerHtml, images_areNumberedAndKept)
{
    const std::optional<Banner> banner = CleanBanner(QStringLiteral(
        "<img src=\"http://a.example/ x\"><img src='data:image/gif;base64,AAAA'><img src=HTTPS://b>"));
    ASSERT_TRUE(banner);
    EXPECT_EQ(banner->images,
              (QStringList{QStringLiteral("http://a.example/ x"),
                           QStringLiteral("data:image/gif;base64,AAAA"), QStringLiteral("HTTPS://b")}));
}

TEST(BannerHtml, images_entitiesInTheirAddresses_areDecoded)
{
    const std::optional<Banner> banner = CleanBanner(QStringLiteral(
        "<img src='http://a.example/?a=1&amp;b=2&#38;c=3&#x26;d=4&#X26;e=&quot;&apos;&lt;&gt;&copy;&'>"
        "<img src='&#104;ttp://b.example/&#233;'><img src='data:image/gif;base64,AA&#65;A'>"
        "<img src='http://c.example/?a=1&amp&amp;b=2&amp'>"));
    ASSERT_TRUE(banner);
    EXPECT_EQ(banner->images, (QStringList{QStringLiteral("http://a.example/?a=1&b=2&c=3&d=4&e=\"'<>&copy;&"),
                                           QStringLiteral("http://b.example/\u00E9"),
                                           QStringLiteral("data:image/gif;base64,AAAA"),
                                           QStringLiteral("http://c.example/?a=1&&b=2&")}));
}

TEST(BannerHtml, images_sixteenAreEnough)
{
    const std::optional<Banner> banner =
        CleanBanner(QStringLiteral("<img src=http://a.example/x>").repeated(100));
    ASSERT_TRUE(banner);
    EXPECT_EQ(banner->images.size(), 16);
}

TEST(BannerHtml, longDataAddress_costsNothing)
{
    const QString data = QStringLiteral("data:image/png;base64,") + QString(2'000'000, u'A');
    const std::optional<Banner> banner = CleanBanner(QStringLiteral("<img src=\"%1\">").arg(data));
    ASSERT_TRUE(banner);
    EXPECT_EQ(banner->images, QStringList(data));
}

// What the strip spends on a page until it is painted.
class StripCost
{
public:
    StripCost()
    {
        m_strip.resize(468, 60);
        Of("<b>warm</b>");
    }
    double Of(const QByteArray& page)
    {
        QFile file(QStringLiteral("page.html"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(page);
        file.close();
        const double start = ProcessorMilliseconds();
        m_strip.Navigate(m_platform.files, file.fileName());
        static_cast<void>(m_strip.grab());
        return ProcessorMilliseconds() - start;
    }
    [[nodiscard]] const FakeHttp& Http() const { return m_platform.http; }

private:
    FakePlatform m_platform;
    WebAd m_strip{m_platform.http, nullptr};
};

// The longest page of the form before + (unit)* + after that is still shown.
QByteArray LongestShown(const QByteArray& before, const QByteArray& unit, const QByteArray& after)
{
    qsizetype least = 0;
    qsizetype most = 20'000 / unit.size();
    const auto page = [&](qsizetype count) { return before + unit.repeated(count) + after; };
    while (least < most) {
        const qsizetype middle = (least + most + 1) / 2;
        if (CleanBanner(QString::fromUtf8(page(middle)))) {
            least = middle;
        } else {
            most = middle - 1;
        }
    }
    return page(least);
}

TEST(BannerHtml, costliestPagesThatAreShown_areLaidOutQuickly)
{
    StripCost cost;
    double largest = 0.0;
    const QByteArray units[] = {"word ",
                                "x",
                                "<b>a</b>",
                                "<br>",
                                "<p>a",
                                "<hr>",
                                "<div>a</div>",
                                "<ul><li>a</ul>",
                                "<font size=7>a</font><font size=1>b</font>",
                                "<a href=http://x.example/>a</a>",
                                "<img src=http://x.example/>",
                                "<table><tr><td>a</table>",
                                "<div>",
                                "\xD8\xB3\xD9\x84\xD8\xA7\xD9\x85 "};
    for (const int depth : {0, 1, 3, 6}) {
        const QByteArray before = "<meta charset=utf-8>" + QByteArray("<table><tr><td>").repeated(depth);
        const QByteArray cells = LongestShown(before + "<table><tr>", "<td>a", "</table>");
        const QByteArray wide =
            LongestShown(before, "<table><tr><td colspan=10>a<tr><td rowspan=10>b</table>", "");
        std::vector<QByteArray> pages{cells, wide};
        for (const QByteArray& unit : units) {
            pages.push_back(LongestShown(before, unit, QByteArray()));
        }
        for (const QByteArray& page : pages) {
            const double spent = std::min(cost.Of(page), cost.Of(page));
            largest = std::max(largest, spent);
        }
    }
    std::cout << "the costliest page took " << largest << " ms\n";
    EXPECT_LT(largest, kMostOfAPage);
}

TEST(BannerHtml, hostilePages_areGivenUpQuickly)
{
    StripCost cost;
    const QByteArray pages[] = {
        QByteArray("<table><tr><td>").repeated(500'000), QByteArray(8'000'000, 'x'),
        QByteArray("<div>").repeated(1'600'000),         QByteArray("<").repeated(8'000'000),
        QByteArray("<b ").repeated(2'600'000),           QByteArray("<!--").repeated(2'000'000),
        QByteArray("</b>").repeated(2'000'000),          QByteArray("&#").repeated(4'000'000),
        QByteArray("<script>").repeated(1'000'000),      QByteArray("<td>").repeated(2'000'000),
        QByteArray("<a b=\"").repeated(1'300'000),       QByteArray("<unknown>").repeated(800'000)};
    for (const QByteArray& page : pages) {
        const double spent = cost.Of(page);
        EXPECT_LT(spent, kMostOfAPage) << page.left(20).constData();
    }
}

// Random pages made of pieces that matter.
TEST(BannerHtml, randomPages_areShownOrNotButNeverHarm)
{
    const QByteArray pieces[] = {"<table>",
                                 "</table>",
                                 "<tr>",
                                 "</tr>",
                                 "<td>",
                                 "</td>",
                                 "<b>",
                                 "</b>",
                                 "<p>",
                                 "<ul>",
                                 "<li>",
                                 "</ul>",
                                 "<a href=\"",
                                 "http://x.example/",
                                 "\">",
                                 "</a>",
                                 "<img src=",
                                 "data:,x ",
                                 "file:///etc/passwd ",
                                 "<script>",
                                 "</script>",
                                 "<!--",
                                 "-->",
                                 "'",
                                 "\"",
                                 "<",
                                 ">",
                                 "&",
                                 "&#",
                                 "xFDD0;",
                                 "\xEF\xB7\x90",
                                 "\0",
                                 "text",
                                 " style=\"font-size:",
                                 "999px",
                                 "<iframe src=http://x.example/frame>",
                                 "<link href=http://x.example/css>",
                                 "<base href=file:///>",
                                 " colspan=",
                                 "20"};
    StripCost cost;
    QRandomGenerator random(20260320);
    double largest = 0.0;
    for (int round = 0; round < 1500; ++round) {
        QByteArray page = round % 2 == 0 ? "<meta charset=utf-8>" : "";
        const int length = random.bounded(1, 120);
        for (int i = 0; i < length; ++i) {
            if (random.bounded(10) == 0) {
                page += static_cast<char>(random.bounded(256));
            } else {
                page += pieces[random.bounded(static_cast<int>(std::size(pieces)))];
            }
        }
        largest = std::max(largest, cost.Of(page));
    }
    EXPECT_LT(largest, kMostOfAPage);
    EXPECT_TRUE(cost.Http().requests.isEmpty());
    for (const QString& address : cost.Http().backgroundRequests) {
        EXPECT_TRUE(address.startsWith(u"http://")) << address.toStdString();
        EXPECT_FALSE(address.contains(u"/frame")) << address.toStdString();
    }
}

} // namespace
