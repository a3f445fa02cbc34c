// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/AdPanel.h"

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

TEST_F(AdPanelTest, waitTime_setsAdTimer)
{
    const std::pair<const char*, float> rows[] = {
        {"", 600.0F},
        {"wait_time=''", 600.0F},
        {"wait_time='0'", 0.0F},
        {"wait_time='2.5'", 120.0F},
        {"wait_time='-0.5'", -60.0F},
        {"wait_time=' 3 '", 180.0F},
        {"wait_time='1440'", 86400.0F},
    };
    for (const auto& [attribute, adTimer] : rows) {
        window->Variables().AdTimer = 77.0F;
        AnswerAd("x", attribute);
        Refresh();
        EXPECT_EQ(window->Variables().AdTimer, adTimer) << attribute;
        EXPECT_EQ(Page(), "<html>x</html>");
    }
}

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

TEST_F(AdPanelTest, replyWithAnotherRootOrAnEmptyAd_endsTheRefresh)
{
    Refresh();
    window->Variables().Settings.DefaultAdText = QStringLiteral("eHg=");
    for (const char* const reply : {"<html><root ad_url='eA=='/></html>", "<root ad_url='='/>"}) {
        platform.http.replies[QStringLiteral("getAd.pl")] = reply;
        Refresh();
        EXPECT_TRUE(window->Variables().Connected) << "it was loaded";
        EXPECT_EQ(Page(), kDefaultPage) << "the page is as before";
    }
}

TEST_F(AdPanelTest, emptyDefault_givesAnEmptyPage)
{
    window->Variables().Settings.DefaultAdText.clear();
    platform.http.reachable = false;
    Refresh();
    EXPECT_EQ(Page(), "<html></html>");
    EXPECT_EQ(Shown(), QString());
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
