// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "strip/Banner.h"

#include <gtest/gtest.h>

namespace {

using Addresses = std::vector<std::string>;

std::string Html(const std::string& page)
{
    const std::optional<Banner> banner = CleanBanner(page);
    return banner ? banner->html : "too much";
}

Addresses Images(const std::string& page)
{
    const std::optional<Banner> banner = CleanBanner(page);
    return banner ? banner->images : Addresses{"too much"};
}

struct CleanRow
{
    const char* name;
    const char* page;
    const char* html;
};

constexpr CleanRow kClean[] = {
    {"plain", "<html><b>a</b> b</html>", "<b>a</b> b"},
    {"upper_case", "<FONT COLOR=RED>a</Font>", "<font color=\"RED\">a</font>"},
    {"unclosed", "<b><i>a", "<b><i>a</i></b>"},
    {"closed_twice", "a</b></b>", "a"},
    {"crossed", "<b><i>a</b>b</i>", "<b><i>a</i></b>b"},
    {"script", "a<script>if (1<2) '</b>'</script>b", "ab"},
    {"script_without_end", "a<script>b", "a"},
    {"style_sheet", "<style>b{color:red}</style>a", "a"},
    {"frame", "<iframe src=http://x.example/>a</iframe>b", "b"},
    {"comment", "a<!-- <b> -- > -->b", "ab"},
    {"comment_without_end", "a<!-- b", "a"},
    {"declaration", "<!DOCTYPE html><?xml?>a", "a"},
    {"unknown_tag", "<marquee>a</marquee>", "a"},
    {"event_handler", "<b onclick=\"x()\">a</b>", "<b>a</b>"},
    {"angles_in_text", "1 < 2 > 1 <3", "1 &lt; 2 &gt; 1 &lt;3"},
    {"entities", "&lt;b&gt; &amp;&#65;&#x42;", "&lt;b&gt; &amp;&#65;&#66;"},
    {"marks_of_the_layout", "&#xFDD0;&#0;&#xFFFC;&#x2029;&#55296;&#99999999;a", "      a"},
    {"marks_of_the_layout_as_bytes", "\uFDD0\x01\u2028\uFFFC\u00A0\U0001F319", "    \u00A0\U0001F319"},
    {"style_in_a_paragraph", "<p>a<b>b</b>", "<p>a<b>b</b></p>"},
    {"quotes", "<a href='http://x.example/?a=\"b\"'>c</a>",
     "<a href=\"http://x.example/?a=&quot;b&quot;\">c</a>"},
    {"end_tag_in_an_attribute", "<font face=\"</table>\">a</font>", "<font face=\"&lt;/table&gt;\">a</font>"},
    {"link_to_a_file", "<a href=\"file:///x\">a</a>", "<a>a</a>"},
    {"link_to_a_script", "<a href=\" javascript:x\">a</a>", "<a>a</a>"},
    {"link_without_scheme", "<a href=\"x.html\">a</a>", "<a>a</a>"},
    {"picture", "<img src=http://x.example/a.gif width=468 height=60 border=0>",
     "<img src=\"image:0\" width=\"468\" height=\"60\" border=\"0\">"},
    {"entities_in_a_link", "<a href='http://x.example/?a=1&amp;b=2&#38;c=3&copy=4'>a</a>",
     "<a href=\"http://x.example/?a=1&amp;b=2&amp;c=3&amp;copy=4\">a</a>"},
    {"entities_without_their_ends",
     "<a href='http://x.example/?a=1&amp&lt&ampb=2&amp=3&quot#&copy&amp'>a</a>",
     "<a href=\"http://x.example/?a=1&amp;&lt;&amp;ampb=2&amp;amp=3&quot;#&amp;copy&amp;\">a</a>"},
    {"entity_of_an_entity", "<font face='&amp;lt;&#x3C;'>a</font>", "<font face=\"&amp;lt;&lt;\">a</font>"},
    {"link_to_a_file_in_numbers", "<a href='&#102;ile:///x'>a</a>", "<a>a</a>"},
    {"huge_size_in_numbers", "<hr width='&#57;&#57;&#57;&#57;&#57;'>", "<hr>"},
    {"style_that_loads_in_numbers", "<p style='background:u&#114;l(file:///x)'>a</p>", "<p>a</p>"},
    {"picture_of_a_file_in_numbers", "a<img src=&#102;ile:///x.png>", "a"},
    {"picture_of_a_file", "a<img src=file:///x.png>", "a"},
    {"picture_without_scheme", "a<img src=/x.png><img src=qrc:/x><img>", "a"},
    {"huge_size", "<img src=https://x.example/a width=1000000>", "<img src=\"image:0\">"},
    {"huge_style", "<p style=\"font-size:9999px\">a</p>", "<p>a</p>"},
    {"style", "<p style=\"font-size:20px;color:#001122\">a</p>",
     "<p style=\"font-size:20px;color:#001122\">a</p>"},
    {"style_that_loads", "<p style=\"background:url(file:///x)\">a</p>", "<p>a</p>"},
    {"paragraphs", "<p>a<p>b", "<p>a</p><p>b</p>"},
    {"list", "<ul><li>a<li>b</ul>c", "<ul><li>a</li><li>b</li></ul>c"},
    {"table", "<table bgcolor=#ff0000><tr><td>a<td>b<tr><td>c</table>d",
     "<table bgcolor=\"#ff0000\"><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>d"},
    {"cell_without_table", "<td>a</td><tr>b", "ab"},
    {"text_between_cells", "<table> a<tr> <td>b</td> <b>c</b></table>",
     "<table><tr><td> a</td></tr><tr><td>b</td><td><b>c</b></td></tr></table>"},
    {"table_in_a_table", "<table><table><tr><td>a</table></table>",
     "<table><tr><td><table><tr><td>a</td></tr></table></td></tr></table>"},
    {"end_of_style_does_not_leave_its_cell", "<b><table><tr><td>a</b>b</table>",
     "<b><table><tr><td>ab</td></tr></table></b>"},
    {"spans", "<table><tr><td colspan=3 rowspan=99999>a</table>",
     "<table><tr><td colspan=\"3\">a</td></tr></table>"},
    {"cut_tag", "a<b", "a<b></b>"},
    {"cut_attribute", "a<b c=\"d", "a<b></b>"},
    {"cut_entity", "a&#", "a&amp;#"},
    {"number_without_its_end", "&#169Dusk &#xA9Gold &#00000000000169;", "&#169;Dusk &#169;Gold &#169;"},
    {"number_without_digits", "&#offers &#; &#x; &#xyz; &#+65;",
     "&amp;#offers &amp;#; &amp;#x; &amp;#xyz; &amp;#+65;"},
    {"number_beyond_all", "a&#99999999999999999999;b", "a b"},
    {"numbers_that_are_none_in_a_link", "<a href='http://x.example/?a=1&#38b=2&#special-offers'>a</a>",
     "<a href=\"http://x.example/?a=1&amp;b=2&amp;#special-offers\">a</a>"},
    {"names_that_begin_parameters", "<font face='&ampa &ampz &amp0 &amp9 &amp= &amp-'>a</font>",
     "<font face=\"&amp;ampa &amp;ampz &amp;amp0 &amp;amp9 &amp;amp= &amp;-\">a</font>"},
    {"spaces_around_a_value", "<a href=' http://x.example/ '>a</a>", "<a href=\"http://x.example/\">a</a>"},
    {"attribute_right_behind_a_quote", "<font face='a'color=red>b</font>",
     "<font face=\"a\" color=\"red\">b</font>"},
    {"attribute_twice", "<font color=red COLOR=blue>a</font>", "<font color=\"red\">a</font>"},
    {"first_and_last_letters", "<a>b</a><z>c</z><{d}>", "<a>b</a>c&lt;{d}&gt;"},
    {"colours", "<p style='color:#a00009;background:#9F1234'>a</p>",
     "<p style=\"color:#a00009;background:#9F1234\">a</p>"},
    {"list_in_a_list", "<ul><li>a<ul><li>b</ul><li>c</ul>",
     "<ul><li>a<ul><li>b</li></ul></li><li>c</li></ul>"},
    {"nothing", "", ""}};

TEST(Banner, page_keepsTheElementsOfBanners)
{
    for (const CleanRow& row : kClean) {
        EXPECT_EQ(Html(row.page), row.html) << row.name;
    }
}

std::string Repeated(const std::string& unit, std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += unit;
    }
    return text;
}

// One UTF-16 unit, two bytes.
const std::string kLetter = "\u0633";

struct LimitRow
{
    const char* name;
    std::string before;
    std::string unit;
    std::size_t most;
};

TEST(Banner, page_upToItsLimits_isShown)
{
    const std::string data = "<img src=data:" + std::string(70'000, 'A') + '>';
    const LimitRow rows[] = {
        {"html", "", "x", 16'384},
        {"cost in a table", "<table><tr><td>", "x", 24'576 / 2 - 15},
        {"tables", "", "<table><tr><td>", 6},
        {"nesting", "", "<b>", 60},
        {"source", "a<x", " ", 65'536 - 3},
        {"source beside a data address", data + "<x", " ", 65'536 - 12},
        {"source beside a data address in an end tag", "</x src=data:,A ", " ", 65'536 - 16},
        {"Arabic html", "", kLetter, 16'384},
        {"Arabic cost in a table", "<table><tr><td>", kLetter, 24'576 / 2 - 15},
        {"Arabic source", "a<x ", kLetter, 65'536 - 4},
        {"Arabic comment", "<!--", kLetter, 65'536 - 4},
        {"moons, two units each", "", "\U0001F319", 8'192}};
    for (const LimitRow& row : rows) {
        EXPECT_TRUE(CleanBanner(row.before + Repeated(row.unit, row.most))) << row.name;
        EXPECT_FALSE(CleanBanner(row.before + Repeated(row.unit, row.most + 1))) << row.name;
    }
}

TEST(Banner, valuesThatAreTooLong_areLeftOut)
{
    const auto link = [](const std::string& value) { return "<a href=\"" + value + "\">b</a>"; };
    const auto font = [](const std::string& value) { return "<font face=\"" + value + "\">b</font>"; };
    for (const std::string& letter : {std::string("a"), kLetter}) {
        const std::string address = "http://x.example/" + Repeated(letter, 1983);
        const std::string family = Repeated(letter, 400);
        EXPECT_EQ(Html(link(address)), link(address));
        EXPECT_EQ(Html(link(address + letter)), "<a>b</a>");
        EXPECT_EQ(Html(font(family)), font(family));
        EXPECT_EQ(Html(font(family + letter)), "<font>b</font>");
    }
}

TEST(Banner, textBehindALongComment_isShown)
{
    EXPECT_EQ(Html("<!--" + Repeated(kLetter, 65'000) + "-->a"), "a");
}

TEST(Banner, attributes_thirtyTwoAreRead)
{
    EXPECT_EQ(Html("<font " + Repeated("x ", 31) + "color=red>a"), "<font color=\"red\">a</font>");
    EXPECT_EQ(Html("<font " + Repeated("x ", 32) + "color=red>a"), "<font>a</font>");
}

TEST(Banner, images_areNumberedAndKept)
{
    EXPECT_EQ(
        Images("<img src=\"http://a.example/ x\"><img src='data:image/gif;base64,AAAA'><img src=HTTPS://b>"),
        (Addresses{"http://a.example/ x", "data:image/gif;base64,AAAA", "HTTPS://b"}));
}

TEST(Banner, images_referencesInTheirAddresses_areReplaced)
{
    EXPECT_EQ(
        Images("<img src='http://a.example/?a=1&amp;b=2&#38;c=3&#x26;d=4&#X26;e=&quot;&apos;&lt;&gt;&copy;&'>"
               "<img src='&#104;ttp://b.example/&#233;&#x1F319;'><img src='data:image/gif;base64,AA&#65;A'>"
               "<img src='http://c.example/?a=1&amp&amp;b=2&amp'>"),
        (Addresses{"http://a.example/?a=1&b=2&c=3&d=4&e=\"'<>&copy;&", "http://b.example/\u00E9\U0001F319",
                   "data:image/gif;base64,AAAA", "http://c.example/?a=1&&b=2&"}));
}

TEST(Banner, images_sixteenAreTheMost)
{
    EXPECT_EQ(Images(Repeated("<img src=http://a.example/x>", 100)).size(), 16U);
}

TEST(Banner, longDataAddress_costsNothing)
{
    const std::string data = "data:image/png;base64," + std::string(2'000'000, 'A');
    EXPECT_EQ(Images("<img src=\"" + data + "\">"), Addresses{data});
}

} // namespace
