// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/LocationsFixture.h"
#include "platform/ProcessorTime.h"

#include <QComboBox>

namespace {

QByteArray ManyChildren(int count)
{
    QByteArray reply = "<root num_matches=\"5000\" max_matches=\"6000\">";
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        reply += "<c" + number + " city=\"City " + number + "\" state=\"State " + number + "\" atlas_id=\"" +
                 number + "\" state_id=\"" + number +
                 "\" latitude_final=\"1\" longitude_final=\"2\" time_zone2=\"3\"/>";
    }
    return reply + "</root>";
}

class HostileServiceTest : public LocationsFixture
{
protected:
    void ExpectSettingsWhole() const
    {
        EXPECT_EQ(Current(), u"Chicago");
        EXPECT_EQ(Setting(QStringLiteral("pid"), QStringLiteral("//root//app")), u"P-77");
        EXPECT_EQ(Setting(QStringLiteral("city"), QStringLiteral("//root//locations//Makkah")), u"Makkah");
        EXPECT_EQ(Setting(QStringLiteral("method"), QStringLiteral("//root//alerts")), u"ISNA");
    }
    void ExpectSearchUsable(const Form& window) const
    {
        ASSERT_EQ(Search(), &window);
        EXPECT_TRUE(window.isVisible() && window.isEnabled());
        for (const auto* name : {"LblGetLink", "LblGet2Link", "CmdAdd", "CmdCancel"}) {
            EXPECT_TRUE(Find<QWidget>(window, name).isEnabled()) << name;
        }
        EXPECT_FALSE(Find<QWidget>(window, "ProgressBar1").isVisible());
        EXPECT_EQ(main->Variables().ActiveForm, u"FrmNewLoc");
    }
    void SearchAndAdd(const Form& window)
    {
        ExpectSearchUsable(window);
        SearchZip(window);
        SearchCity(window, QStringLiteral("Ca"), 0);
        ExpectSearchUsable(window);
        if (Results(window).count() > 0) {
            ClickRow(Results(window), 0);
        }
        ClickOn(window, "CmdAdd");
        forms.Unload(FrmNewLoc::kName);
    }
};

TEST_F(HostileServiceTest, everyRequest_leavesFileAndWindowsUsable)
{
    const QByteArray bad[] = {
        QByteArray(),
        "<!DOCTYPE html><html><head><title>500</title></head><body><br></body></html>",
        "<html><body><p>500</p></body></html>",
        "<root><a city=\"Cai",
        "<root/>",
        "<root>sorry</root>",
        "<root><!-- sorry --></root>",
        "<root><a/><b/></root>",
        "<root num_matches=\"x\"><a city=\"1\" atlas_id=\"2\"/><a city=\"3\"/></root>",
        "<root><root city=\"1\"/></root>",
        "<root xmlns:p=\"urn:p\"><p:a city=\"1\" atlas_id=\"2\"/></root>",
        QByteArray("\0\1\2\3\xff\xfe", 6),
        "<root><a city=\"" + QByteArray(10000, 'w') + "\" state=\"" + QByteArray(10000, 'w') +
            "\" atlas_id=\"" + QByteArray(10000, '9') + "\"/></root>",
        "<!DOCTYPE r [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]><root><c city=\"&b;\"/></root>",
        QByteArray("<a>").repeated(100000),
    };
    const std::map<QString, QByteArray> good{
        {QStringLiteral("getStates.pl"), "<root><a state=\"Egypt\" state_id=\"EG\"/></root>"},
        {QStringLiteral("getUsCanCity.pl"), "<root><a city=\"Cairo\" atlas_id=\"1\"/></root>"},
        {QStringLiteral("getNumMatchingCities.pl"), "<root num_matches=\"1\" max_matches=\"9\"/>"},
        {QStringLiteral("getMatchingCities.pl"), "<root><a city=\"Cairo\" atlas_id=\"1\"/></root>"}};
    for (const QByteArray& reply : bad) {
        for (const auto* script : {"getStates.pl", "getUsCanCity.pl", "getNumMatchingCities.pl",
                                   "getMatchingCities.pl", "getCityInfo.pl"}) {
            SCOPED_TRACE(script + (' ' + reply.left(80).toStdString()));
            platform.http.replies = good;
            Answer(script, reply);
            ClickOn(OpenList(), "LblNewLocLink");
            if (Search() != nullptr) {
                SearchAndAdd(*Search());
            }
            ExpectBackInList();
            ExpectSettingsWhole();
            forms.Unload(FrmLocation::kName);
            ExpectBackInMain();
            EXPECT_EQ(platform.process.ended, 0);
        }
    }
}

/// Limits the processor time of its scope. Other work of the machine does not count.
class InGoodTime final
{
public:
    InGoodTime() = default;
    ~InGoodTime()
    {
        constexpr double kMostMilliseconds = 5000.0; // with a sanitizer, on a slow machine
        EXPECT_LT(ProcessorMilliseconds() - m_before, kMostMilliseconds);
    }
    InGoodTime(const InGoodTime&) = delete;
    InGoodTime& operator=(const InGoodTime&) = delete;

private:
    double m_before = ProcessorMilliseconds();
};

// More than the window lists, and more than a document may contain.
constexpr int kTooMany[] = {7000, 100'000};

class LargeReplyTest : public LocationsFixture
{
protected:
    static void ClickInGoodTime(const Form& window, const char* name)
    {
        const InGoodTime limit;
        ClickOn(window, name);
    }
    FrmLocation& OpenListAndLoseCountries(const QByteArray& reply)
    {
        Answer("getStates.pl", reply);
        FrmLocation& list = OpenList();
        ClickInGoodTime(list, "LblNewLocLink");
        ExpectBoxes({Plain(QStringLiteral("Unable to retrieve state list.\r\nVerify internet connection."))});
        ExpectBackInList();
        return list;
    }
    /// The search window with one result of a zip code.
    FrmNewLoc& OpenWithACity()
    {
        Answer("getUsCanCity.pl", ManyChildren(1));
        FrmNewLoc& window = OpenSearch();
        SearchZip(window);
        return window;
    }
};

TEST_F(LargeReplyTest, fiveThousandChildren_areAllListed)
{
    Answer("getStates.pl", ManyChildren(5000));
    Answer("getNumMatchingCities.pl", ManyChildren(1));
    Answer("getMatchingCities.pl", ManyChildren(5000));
    const FrmNewLoc& window = OpenSearch();
    const auto& countries = Find<QComboBox>(window, "CombState");
    EXPECT_EQ(countries.count(), 5000);
    EXPECT_EQ(countries.itemText(4999), u"State 4999");
    SearchCity(window, QStringLiteral("Ci"), 4999);
    EXPECT_TRUE(platform.http.requests.last().contains(QStringLiteral("state_id=4999&")));
    EXPECT_EQ(Results(window).count(), 5000);
    EXPECT_EQ(Results(window).List(4999), u"City 4999");
}

TEST_F(LargeReplyTest, endlessCountries_countAsNoReply_inGoodTime)
{
    for (const int count : kTooMany) {
        SCOPED_TRACE(count);
        OpenListAndLoseCountries(ManyChildren(count));
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(LargeReplyTest, countriesAboveMuchElseOrRootsInRoots_countAsNoReply_inGoodTime)
{
    const auto aboveElse = [](int count) {
        const QByteArray much = "<b>" + QByteArray("<b/>").repeated(count) + "</b>";
        return "<root><a state=\"Egypt\" state_id=\"20\">" + much + much + much + "</a></root>";
    };
    const auto aboveRoots = [](int roots) {
        QByteArray reply = ManyChildren(5700);
        reply.chop(static_cast<int>(qstrlen("</root>")));
        return reply + QByteArray("<root>").repeated(roots) + QByteArray("<x/>").repeated(5700) +
               QByteArray("</root>").repeated(roots + 1);
    };
    const std::pair<QByteArray, QByteArray> rows[] = {{aboveElse(5000), aboveElse(100)},
                                                      {aboveRoots(253), aboveRoots(1)}};
    for (const auto& [tooMuch, enough] : rows) {
        const FrmLocation& list = OpenListAndLoseCountries(tooMuch);
        Answer("getStates.pl", enough);
        ClickOn(list, "LblNewLocLink");
        EXPECT_NE(Search(), nullptr) << "a child may be called what it likes";
        forms.Unload(FrmNewLoc::kName);
        forms.Unload(FrmLocation::kName);
    }
}

class LongCityListTest : public LargeReplyTest
{
protected:
    /// The search window with one result of an earlier search.
    FrmNewLoc& OpenWithAResult()
    {
        platform.http.replies[QStringLiteral("getNumMatchingCities.pl")] =
            "<root num_matches=\"7000\" max_matches=\"50\"/>";
        FrmNewLoc& window = OpenSearch();
        Find<QComboBox>(window, "CombState").setCurrentIndex(0);
        Type(window, "TxtCity", QStringLiteral("Ci"));
        Search(window, ManyChildren(1));
        EXPECT_EQ(Lines(Results(window)), QStringList{QStringLiteral("City 0")});
        return window;
    }
    /// Answers that all are to be displayed.
    void Search(const FrmNewLoc& window, const QByteArray& reply)
    {
        platform.http.replies[QStringLiteral("getMatchingCities.pl")] = reply;
        platform.http.requests.clear();
        platform.boxes.answers = {true};
        {
            const InGoodTime limit;
            ClickOn(window, "LblGet2Link");
        }
        EXPECT_EQ(platform.http.requests.size(), 2);
        EXPECT_TRUE(Find<QWidget>(window, "LblGet2Link").isEnabled());
        EXPECT_FALSE(Find<QWidget>(window, "ProgressBar1").isVisible());
        ExpectBoxes(
            {Question(QStringLiteral("There are over 50 matches.\r\nWould you like to display all?"))});
    }
    static ListBox& Results(const Form& window) { return Find<ListBox>(window, "LstSearchResults"); }
};

TEST_F(LongCityListTest, sixThousand_areAllShown_inGoodTime)
{
    const FrmNewLoc& window = OpenWithAResult();
    Search(window, ManyChildren(6000));
    ASSERT_EQ(Results(window).count(), 6000);
    EXPECT_EQ(Results(window).List(0), QStringLiteral("City 0"));
    EXPECT_EQ(Results(window).List(5999), QStringLiteral("City 5999"));
    ClickRow(Results(window), 5999);
    ClickOn(window, "CmdAdd");
    EXPECT_TRUE(platform.http.requests.last().contains(QStringLiteral("aid=5999&"))) << "its own identifier";
}

TEST_F(LongCityListTest, namesThatComeAgain_stillShowTheFirstOfThem)
{
    const FrmNewLoc& window = OpenWithAResult();
    QByteArray reply = ManyChildren(5999);
    reply.insert(reply.size() - 7, "<c7 city=\"Another\"/>");
    Search(window, reply);
    EXPECT_EQ(Results(window).count(), 6000);
    EXPECT_EQ(Results(window).List(5999), QStringLiteral("City 7"));
}

// More cities than are listed, and cities followed by many other elements.
TEST_F(LongCityListTest, replyThatIsTooLarge_leavesTheEarlierResults_inGoodTime)
{
    const FrmNewLoc& window = OpenWithAResult();
    QByteArray nested = ManyChildren(3);
    nested.replace("\"/><c1 ", "\"><d>" + QByteArray("<b/>").repeated(5999) + "</d><e>" +
                                   QByteArray("<b/>").repeated(5999) + "</e></c0><c1 ");
    for (const QByteArray& reply : {ManyChildren(6001), ManyChildren(100'000), nested}) {
        Search(window, reply);
        EXPECT_EQ(Lines(Results(window)), QStringList{QStringLiteral("City 0")});
    }
}

TEST_F(LargeReplyTest, endlessCitiesOfAZipCode_leaveTheEarlierResults_inGoodTime)
{
    const FrmNewLoc& window = OpenWithACity();
    for (const int count : kTooMany) {
        SCOPED_TRACE(count);
        Answer("getUsCanCity.pl", ManyChildren(count));
        ClickInGoodTime(window, "LblGetLink");
        ExpectBoxes({Plain(QStringLiteral("Failed to retrieve list"))});
        EXPECT_EQ(Shown(Results(window)), u"City 0");
        EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
    }
}

TEST_F(LargeReplyTest, endlessPlaces_areNotStored_inGoodTime)
{
    const FrmNewLoc& window = OpenWithACity();
    ClickRow(Results(window), 0);
    const QByteArray before = ReadSettings();
    for (const int count : {101, 5000, 100'000}) {
        SCOPED_TRACE(count);
        Answer("getCityInfo.pl", ManyChildren(count));
        ClickInGoodTime(window, "CmdAdd");
        ExpectBoxes({Plain(QStringLiteral("Failed to get city info. Please verify internet connection."))});
        EXPECT_EQ(ReadSettings(), before);
        EXPECT_TRUE(Find<QWidget>(window, "CmdAdd").isEnabled());
    }
    Answer("getCityInfo.pl", ManyChildren(100));
    ClickOn(window, "CmdAdd");
    ExpectBoxes({});
    EXPECT_EQ(Places().count(), 2 + 50) << "every second one";
}

TEST_F(LargeReplyTest, longLines_endInDotsWithinTheList)
{
    FrmNewLoc& window = OpenWithACity();
    const int width = window.width();
    Answer("getUsCanCity.pl", "<root><a city=\"" + QByteArray(10000, 'w') + "\" atlas_id=\"1\"/></root>");
    ClickOn(window, "LblGetLink");
    const ListBox& results = Results(window);
    EXPECT_LE(results.visualItemRect(results.item(0)).width(), results.viewport()->width());
    EXPECT_EQ(window.width(), width);
}

} // namespace
