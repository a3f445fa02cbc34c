// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/AdPanel.h"

#include "platform/ProcessorTime.h"
#include "service/ServiceRequests.h"
#include "service/ServiceWorld.h"
#include "service/WebAd.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

const QByteArray kDefaultPage = "<html><b>Dusk Beacon</b></html>";

class AdPanelTest : public testing::Test, protected ServiceWorld
{
protected:
    void Refresh(bool fetch = true) { panel.RefreshAd(fetch); }

    void Answer(const QByteArray& attributes)
    {
        platform.http.replies[QStringLiteral("getAd.pl")] = "<root " + attributes + "/>";
    }
    void AnswerAd(const QByteArray& html, const QByteArray& others = QByteArray())
    {
        Answer("ad_url=\"" + html.toBase64() + "\" " + others);
    }

    static QByteArray Content(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }
    [[nodiscard]] QByteArray Page() const
    {
        return Content(platform.process.folder + QStringLiteral("/temp.html"));
    }
    [[nodiscard]] QString Shown() const
    {
        return window->findChild<WebAd*>(QStringLiteral("WebAd"))->toPlainText();
    }

    AdPanel panel{*window};
};

TEST_F(AdPanelTest, strip_isInItsPlace)
{
    const auto* const strip = window->findChild<WebAd*>(QStringLiteral("WebAd"));
    ASSERT_NE(strip, nullptr);
    EXPECT_EQ(strip->geometry(), QRect(128, 272, 468, 60));
    EXPECT_EQ(strip->accessibleName(), QStringLiteral("Advertisement"));
}

TEST_F(AdPanelTest, refresh_sendsTheExactRequest)
{
    Refresh();
    EXPECT_EQ(platform.http.probes.size(), 1);
    EXPECT_EQ(platform.http.requests,
              QStringList(QStringLiteral(DUSKBEACON_SERVICE_URL) +
                          QStringLiteral("/cgi-bin/dbeacon/getAd.pl?dist_string=dbeacon"
                                         "&prod_string=P-77&aid=US-1&curr_v=1&curr_s=5")));
}

TEST_F(AdPanelTest, ad_isWrittenAsItIsAndShown)
{
    AnswerAd("<b>Buy</b> \x80 </html>", "wait_time=\"5\"");
    window->Variables().Connected = false;
    Refresh();
    EXPECT_EQ(Page(), "<html><b>Buy</b> \x80 </html></html>") << "not checked and not escaped";
    EXPECT_EQ(Shown().trimmed(), QStringLiteral("Buy \u20AC"));
    EXPECT_TRUE(window->Variables().Connected);
    EXPECT_EQ(window->Variables().AdTimer, 300.0F);
}

TEST_F(AdPanelTest, adThatNamesItsEncoding_isReadInIt)
{
    AnswerAd("<meta charset=\"utf-8\"><b>\u0633\u0644\u0627\u0645</b>");
    Refresh();
    EXPECT_EQ(Shown(), QStringLiteral("\u0633\u0644\u0627\u0645"));
}

TEST_F(AdPanelTest, encodingNamedAfter1024Bytes_orCutThere_isIgnored)
{
    AnswerAd("<!--" + QByteArray(1010, 'x') + "--><meta charset=utf-8>\xC3\xA4");
    Refresh();
    EXPECT_EQ(Shown(), QStringLiteral("\u00C3\u00A4"));
    // "<html>" comes first. The end of the name "iso-8859-6-e" is beyond the first 1024 bytes.
    const QByteArray tag = "<meta charset=iso-8859-6";
    AnswerAd("<!--" + QByteArray(1024 - 6 - 7 - tag.size(), 'x') + "-->" + tag + "-e>\xD3");
    Refresh();
    EXPECT_EQ(Shown(), QStringLiteral("\u00D3"));
}

struct EncodingRow
{
    const char* name;
    const char* page;
    const char16_t* shown;
};

class AdPanelEncoding : public AdPanelTest, public testing::WithParamInterface<EncodingRow>
{
};

TEST_P(AdPanelEncoding, page_isReadInItsNamedEncoding)
{
    AnswerAd(GetParam().page);
    Refresh();
    EXPECT_EQ(Shown(), QString::fromUtf16(GetParam().shown));
    EXPECT_EQ(Page(), QByteArray("<html>") + GetParam().page + "</html>") << "and the bytes are unchanged";
}

INSTANTIATE_TEST_SUITE_P(
    Table, AdPanelEncoding,
    testing::Values(
        EncodingRow{"none", "\xD3\x80", u"\u00D3\u20AC"},
        EncodingRow{"unknown", "<meta charset=klingon>\xD3", u"\u00D3"},
        EncodingRow{"unicode", "<meta charset=unicode>\xC3\x9E", u"\u00DE"},
        EncodingRow{"four_bytes", "<meta charset=utf-32>\xD3", u"\u00D3"},
        EncodingRow{"empty", "<meta charset=''>\xD3", u"\u00D3"},
        EncodingRow{"arabic", "<meta charset=windows-1256>\xD3\xE1\xC7\xE3", u"\u0633\u0644\u0627\u0645"},
        EncodingRow{"arabic_of_unix", "<meta charset='ISO-8859-6'>\xD3\xE4\xC7\xE5",
                    u"\u0633\u0644\u0627\u0645"},
        EncodingRow{"turkish",
                    "<meta http-equiv=Content-Type content=\"text/html; charset = windows-1254\">\xDE\x80",
                    u"\u015E\u20AC"},
        EncodingRow{"turkish_of_unix", "<META CHARSET=\"iso-8859-9\">\xDE\x80", u"\u015E\u20AC"},
        EncodingRow{"turkish_by_number", "<meta charset=latin5>\xDE\x80", u"\u015E\u20AC"},
        EncodingRow{"latin", "<meta charset=iso-8859-1>\x80", u"\u20AC"},
        EncodingRow{"latin_in_one_word", "<meta charset=Latin1>\x80", u"\u20AC"},
        EncodingRow{"latin_by_letter", "<meta charset=l1>\x80", u"\u20AC"},
        EncodingRow{"latin_without_its_mark", "<meta charset=iso8859-1>\x80", u"\u20AC"},
        EncodingRow{"latin_with_its_year", "<meta charset=ISO_8859-1:1987>\x80", u"\u20AC"},
        EncodingRow{"ascii", "<meta charset=ascii>\x80", u"\u20AC"},
        EncodingRow{"sixteen_bits_that_are_eight", "<meta charset=utf-16>\xC3\xA4", u"\u00E4"},
        EncodingRow{"sixteen_bits_low_first", "<meta charset=UTF-16LE>\xC3\xA4", u"\u00E4"},
        EncodingRow{"sixteen_bits_high_first", "<meta charset=utf-16be>\xC3\xA4", u"\u00E4"},
        EncodingRow{"sixteen_bits_in_one_word", "<meta charset=utf16>\xC3\xA4", u"\u00E4"},
        EncodingRow{"sixteen_bits_with_their_order", "<meta charset=UTF16_BigEndian>\xC3\xA4", u"\u00E4"},
        EncodingRow{"sixteen_bits_by_their_mark", "<meta charset=unicodeFFFE>\xC3\xA4", u"\u00E4"},
        EncodingRow{"four_bytes_in_one_word", "<meta charset=utf32>\xD3", u"\u00D3"},
        EncodingRow{"four_bytes_by_number", "<meta charset=csUCS4>\xD3", u"\u00D3"},
        EncodingRow{"seven_bits", "<meta charset=utf-7>+AGE-\xD3", u"+AGE-\u00D3"},
        EncodingRow{"of_a_mainframe", "<meta charset=ibm-37>\xD3", u"\u00D3"},
        EncodingRow{"latin_with_a_dash", "<meta charset=latin-1>\x80", u"\u20AC"},
        EncodingRow{"latin_by_its_number", "<meta charset=8859_1>\x80", u"\u20AC"},
        EncodingRow{"chinese_of_the_larger_set", "<meta charset=gb2312>\x81\x40", u"\u4E02"},
        EncodingRow{"korean_of_the_larger_set", "<meta charset=euc-kr>\x81\x41", u"\uAC02"},
        EncodingRow{"thai_of_the_larger_set", "<meta charset=iso-8859-11>\xA1\x80", u"\u0E01\u20AC"},
        EncodingRow{"second_tag", "<meta name=a content=b><meta charset=utf-8>\xC3\xA4", u"\u00E4"},
        EncodingRow{"first_of_two", "<meta charset=utf-8><meta charset=latin1>\xC3\xA4", u"\u00E4"},
        EncodingRow{"behind_its_tag", "<meta name=a>charset=utf-8 \xC3\xA4", u"charset=utf-8 \u00C3\u00A4"},
        EncodingRow{"of_another_tag", "<meta name=a><b charset=utf-8>\xC3\xA4</b>", u"\u00C3\u00A4"},
        EncodingRow{"in_a_comment", "<!--<meta charset=utf-8>-->\xC3\xA4", u"\u00C3\u00A4"},
        EncodingRow{"in_a_value", "<meta name='<meta charset=utf-8>'>\xC3\xA4", u"\u00C3\u00A4"},
        EncodingRow{"wrong_bytes",
                    "<meta charset=utf-8>a\xFF"
                    "b",
                    u"a\uFFFDb"},
        EncodingRow{"not_in_a_tag_of_its_own", "charset=utf-8 \xC3\xA4", u"charset=utf-8 \u00C3\u00A4"}),
    [](const auto& row) { return std::string(row.param.name); });

struct WaitRow
{
    const char* name;
    const char* attribute;
    float adTimer;
};

class AdPanelWait : public AdPanelTest, public testing::WithParamInterface<WaitRow>
{
};

TEST_P(AdPanelWait, waitTime_setsAdTimer)
{
    window->Variables().AdTimer = 77.0F;
    AnswerAd("x", GetParam().attribute);
    Refresh();
    EXPECT_EQ(window->Variables().AdTimer, GetParam().adTimer);
    EXPECT_EQ(Page(), "<html>x</html>");
}

INSTANTIATE_TEST_SUITE_P(Table, AdPanelWait,
                         testing::Values(WaitRow{"absent", "", 600.0F},
                                         WaitRow{"empty", "wait_time=''", 600.0F},
                                         WaitRow{"zero", "wait_time='0'", 0.0F},
                                         WaitRow{"fraction_is_cut", "wait_time='2.5'", 120.0F},
                                         WaitRow{"negative_goes_down", "wait_time='-0.5'", -60.0F},
                                         WaitRow{"blanks_around", "wait_time=' 3 '", 180.0F},
                                         WaitRow{"a_day", "wait_time='1440'", 86400.0F}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(AdPanelTest, waitTime_onACommaSystem_isReadWithItsPoint)
{
    platform.region.locale = QLocale(QLocale::German, QLocale::Germany);
    AnswerAd("x", "wait_time='2.5'");
    Refresh();
    EXPECT_EQ(window->Variables().AdTimer, 120.0F);
}

TEST_F(AdPanelTest, waitTimeThatIsNoNumber_endsTheRefreshAndKeepsTheOldPage)
{
    AnswerAd("<b>old</b>", "wait_time='5'");
    Refresh();
    for (const char* const bad : {"abc", "1x", "--1", "1e999", "9e300"}) {
        AnswerAd("<b>new</b>", QByteArray("wait_time='") + bad + "'");
        Refresh();
        EXPECT_EQ(window->Variables().AdTimer, 300.0F) << bad;
        EXPECT_EQ(Page(), "<html><b>old</b></html>") << bad;
        EXPECT_EQ(Shown(), QStringLiteral("old")) << bad;
    }
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(AdPanelTest, replyWithoutAd_showsTheDefaultAndSetsAdTimer)
{
    for (const char* const attributes : {"wait_time='7'", "ad_url='' wait_time='7'"}) {
        window->Variables().AdTimer = 1.0F;
        Answer(attributes);
        Refresh();
        EXPECT_EQ(Page(), kDefaultPage);
        EXPECT_EQ(Shown(), QStringLiteral("Dusk Beacon"));
        EXPECT_EQ(window->Variables().AdTimer, 420.0F);
    }
}

TEST_F(AdPanelTest, noNetwork_showsTheDefaultAndLeavesTheRest)
{
    platform.http.reachable = false;
    window->Variables().AdTimer = 33.0F;
    window->Variables().Connected = true;
    Refresh();
    EXPECT_TRUE(platform.http.requests.isEmpty());
    EXPECT_EQ(Page(), kDefaultPage);
    EXPECT_EQ(window->Variables().AdTimer, 33.0F);
    EXPECT_TRUE(window->Variables().Connected);
}

TEST_F(AdPanelTest, fetchFalse_probesButSendsNoRequest)
{
    Refresh(false);
    EXPECT_EQ(platform.http.probes.size(), 1);
    EXPECT_TRUE(platform.http.requests.isEmpty());
    EXPECT_EQ(Page(), kDefaultPage);
}

TEST_F(AdPanelTest, failedRequest_clearsConnectedAndShowsTheDefault)
{
    window->Variables().Connected = true;
    panel.RefreshAd(window->Variables().Connected);
    EXPECT_EQ(platform.http.requests.size(), 1);
    EXPECT_FALSE(window->Variables().Connected);
    EXPECT_EQ(Page(), kDefaultPage);
    EXPECT_EQ(window->Variables().AdTimer, 600.0F);
}

TEST_F(AdPanelTest, replyWithAnotherRoot_endsTheRefresh)
{
    Refresh();
    platform.http.replies[QStringLiteral("getAd.pl")] = "<html><root ad_url='eA=='/></html>";
    window->Variables().Settings.DefaultAdText = QStringLiteral("eHg=");
    Refresh();
    EXPECT_TRUE(window->Variables().Connected) << "it was loaded";
    EXPECT_EQ(Page(), kDefaultPage) << "the page is as before";
}

TEST_F(AdPanelTest, emptyDefault_givesAnEmptyPage)
{
    window->Variables().Settings.DefaultAdText.clear();
    platform.http.reachable = false;
    Refresh();
    EXPECT_EQ(Page(), "<html></html>");
    EXPECT_EQ(Shown(), QString());
}

TEST_F(AdPanelTest, adThatDecodesToNothing_endsTheRefresh)
{
    Refresh();
    Answer("ad_url='='");
    window->Variables().Settings.DefaultAdText = QStringLiteral("eHg=");
    Refresh();
    EXPECT_EQ(Page(), kDefaultPage);
}

TEST_F(AdPanelTest, programFolderThatCantBeWritten_pageGoesToTheUsersFolder)
{
    const QString data = platform.folder.path() + QStringLiteral("/data");
    QDir().mkpath(data);
    platform.process.folder = QStringLiteral("/proc/no/such/folder");
    platform.process.dataFolder = data;
    Refresh();
    EXPECT_EQ(Content(data + QStringLiteral("/temp.html")), kDefaultPage);
    EXPECT_EQ(Shown(), QStringLiteral("Dusk Beacon"));
}

TEST_F(AdPanelTest, noFolderThatCanBeWritten_endsTheRefresh)
{
    Refresh();
    platform.process.folder = QStringLiteral("/proc/no/such/folder");
    platform.process.dataFolder = QStringLiteral("/proc/no/such/folder");
    AnswerAd("<b>new</b>");
    Refresh();
    EXPECT_EQ(Shown(), QStringLiteral("Dusk Beacon"));
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(AdPanelTest, debugMode_showsTheFailure)
{
    window->Variables().DebugMode = true;
    AnswerAd("x", "wait_time='abc'");
    Refresh();
    ASSERT_EQ(platform.boxes.boxes.size(), 1U);
    EXPECT_EQ(platform.boxes.boxes.front(),
              (FakeMessageBoxes::Box{QStringLiteral("Type mismatch 13 on FrmMain"),
                                     QStringLiteral("Dusk Beacon"), QStringLiteral("OK")}));
}

TEST_F(AdPanelTest, pageTooCostlyToLayOut_isWrittenButNotShown)
{
    AnswerAd("<b>old</b>");
    Refresh();
    const QByteArray nested = QByteArray("<table><tr><td>").repeated(20) + "new";
    AnswerAd(nested);
    Refresh();
    EXPECT_EQ(Page(), "<html>" + nested + "</html>");
    EXPECT_EQ(Shown(), QStringLiteral("old"));
}

// Any attribute: valid and invalid Base64 of pages and of random bytes.
TEST_F(AdPanelTest, randomAd_isShownOrRefused)
{
    QRandomGenerator random(20260320);
    const QByteArray pieces[] = {"<table><tr><td>",
                                 "<img src='http://x.example/a'>",
                                 "<img src=file:///etc/passwd>",
                                 "<iframe src=http://x.example/frame>",
                                 "<script>",
                                 "</b>",
                                 "&#",
                                 "text ",
                                 "<a href=",
                                 "<meta charset=utf-16>"};
    for (int round = 0; round < 300; ++round) {
        QByteArray ad;
        for (int i = random.bounded(200); i > 0; --i) {
            ad += random.bounded(3) == 0 ? pieces[random.bounded(static_cast<int>(std::size(pieces)))]
                                         : QByteArray(1, static_cast<char>(random.bounded(256)));
        }
        QByteArray text = round % 3 == 0 ? ad.toPercentEncoding() : ad.toBase64();
        if (round % 3 == 1 && !text.isEmpty()) {
            text[random.bounded(static_cast<int>(text.size()))] = static_cast<char>(random.bounded(33, 38));
        }
        Answer("wait_time='3' ad_url=\"" + text + "\"");
        Refresh();
        ASSERT_TRUE(Page().startsWith("<html>") && Page().endsWith("</html>")) << text.constData();
    }
    for (const QString& address : platform.http.backgroundRequests) {
        EXPECT_TRUE(address.startsWith(u"http://")) << address.toStdString();
        EXPECT_FALSE(address.contains(u"frame")) << address.toStdString();
    }
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(AdPanelTest, largestAdThatAReplyCanHold_isWrittenButNotShown)
{
    AnswerAd("<b>old</b>");
    Refresh();
    // The limit of a tag is 64 KiB; Base64 needs four bytes for three.
    const QByteArray units[] = {"<table><tr><td>", "x"};
    for (const QByteArray& unit : units) {
        const QByteArray ad = unit.repeated(48'000 / unit.size());
        AnswerAd(ad);
        const double before = ProcessorMilliseconds();
        Refresh();
        EXPECT_LT(ProcessorMilliseconds() - before, 5000.0) << unit.constData();
        EXPECT_EQ(Page().size(), ad.size() + 13);
        EXPECT_EQ(Shown(), QStringLiteral("old"));
    }
}

TEST_F(AdPanelTest, secondRefreshInsideTheFirst_isMade)
{
    AnswerAd("<b>inner</b>", "wait_time='2'");
    platform.http.whileWaiting = [this] {
        Refresh();
        EXPECT_EQ(Shown(), QStringLiteral("inner"));
        AnswerAd("<b>outer</b>", "wait_time='3'");
    };
    Refresh();
    EXPECT_EQ(Shown(), QStringLiteral("outer"));
    EXPECT_EQ(window->Variables().AdTimer, 180.0F);
}

TEST_F(AdPanelTest, windowClosedDuringTheRequest_nothingIsWritten)
{
    AnswerAd("x");
    platform.http.whileWaiting = [this] { window->Unload(); };
    window->Handle([this] { Refresh(); });
    EXPECT_EQ(Page(), "(no file)");
}

TEST_F(AdPanelTest, link_opensTheBrowserAndLeavesTheStrip)
{
    AnswerAd("<a href=\"http://ads.example/x?a=1&b=%20\">go</a> <a href=\"file:///etc/passwd\">no</a>"
             "<a href=\"javascript:alert(1)\">no</a>");
    Refresh();
    auto* const strip = window->findChild<WebAd*>(QStringLiteral("WebAd"));
    const QString before = strip->toHtml();
    EXPECT_EQ(before.count(QStringLiteral("href=")), 1) << "nothing but http and https can be followed";
    emit strip->anchorClicked(QUrl(QStringLiteral("http://ads.example/x?a=1&b=%20")));
    EXPECT_EQ(platform.browser.opened, QStringList(QStringLiteral("http://ads.example/x?a=1&b=%20")));
    EXPECT_EQ(strip->toHtml(), before);
}

} // namespace
