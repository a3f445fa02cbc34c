// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "platform/ProcessorTime.h"
#include "service/WebAd.h"
#include "strip/Banner.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

// Limit of processor time, within which the clock misses no second. Without limits a page takes many seconds;
// the costliest page that is shown takes some 60 milliseconds on a slow machine, several times that with
// sanitizers.
#ifdef __SANITIZE_ADDRESS__
constexpr double kMostOfAPage = 800.0;
#else
constexpr double kMostOfAPage = 200.0;
#endif

// The processor time from a page to the painted strip.
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

private:
    FakePlatform m_platform;
    WebAd m_strip{m_platform.http, nullptr};
};

// The longest page of the form before + (unit)* + after that is still shown.
QByteArray LongestShown(const QByteArray& before, const QByteArray& unit, const QByteArray& after)
{
    qsizetype least = 0;
    qsizetype most = 20'000 / QString::fromUtf8(unit).size();
    const auto page = [&](qsizetype count) { return before + unit.repeated(count) + after; };
    while (least < most) {
        const qsizetype middle = (least + most + 1) / 2;
        if (CleanBanner(page(middle).toStdString())) {
            least = middle;
        } else {
            most = middle - 1;
        }
    }
    return page(least);
}

TEST(WebAdCost, costliestPagesThatAreShown_areLaidOutQuickly)
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

TEST(WebAdCost, hostilePages_areRefusedQuickly)
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

} // namespace
