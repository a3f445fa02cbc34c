// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/ProcessorTime.h"
#include "locations/LocationsFixture.h"

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

struct BadReply
{
    const char* name;
    QByteArray reply;
};

void PrintTo(const BadReply& row, std::ostream* stream)
{
    *stream << row.name;
}

const std::vector<BadReply>& BadReplies()
{
    static const std::vector<BadReply> replies{
        {"empty", QByteArray()},
        {"page", "<!DOCTYPE html><html><head><title>500</title></head><body><br></body></html>"},
        {"wellFormedPage", "<html><body><p>500</p></body></html>"},
        {"cut", "<root><a city=\"Cai"},
        {"rootAlone", "<root/>"},
        {"textOnly", "<root>sorry</root>"},
        {"commentOnly", "<root><!-- sorry --></root>"},
        {"noAttributes", "<root><a/><b/></root>"},
        {"twoOfOneName", "<root num_matches=\"x\"><a city=\"1\" atlas_id=\"2\"/><a city=\"3\"/></root>"},
        {"rootInRoot", "<root><root city=\"1\"/></root>"},
        {"namespaces", "<root xmlns:p=\"urn:p\"><p:a city=\"1\" atlas_id=\"2\"/></root>"},
        {"noText", QByteArray("\0\1\2\3\xff\xfe", 6)},
        {"longValue", "<root><a city=\"" + QByteArray(10000, 'w') + "\" state=\"" + QByteArray(10000, 'w') +
                          "\" atlas_id=\"" + QByteArray(10000, '9') + "\"/></root>"},
        {"entityBomb", "<!DOCTYPE r [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]><root><c "
                       "city=\"&b;\"/></root>"},
        {"deep", QByteArray("<a>").repeated(100000)},
    };
    return replies;
}

class HostileServiceTest : public LocationsFixture, public testing::WithParamInterface<BadReply>
{
protected:
    void Answer(const char* script) { platform.http.replies[QLatin1String(script)] = GetParam().reply; }
    void ExpectSettingsWhole() const
    {
        EXPECT_EQ(Current(), QStringLiteral("Chicago"));
        EXPECT_EQ(Setting(QStringLiteral("pid"), QStringLiteral("//root//app")), QStringLiteral("P-77"));
        EXPECT_EQ(Setting(QStringLiteral("city"), QStringLiteral("//root//locations//Makkah")),
                  QStringLiteral("Makkah"));
        EXPECT_EQ(Setting(QStringLiteral("method"), QStringLiteral("//root//alerts")),
                  QStringLiteral("ISNA"));
    }
    void ExpectSearchUsable(const Form& window) const
    {
        ASSERT_EQ(forms.Loaded(FrmNewLoc::kName), &window);
        EXPECT_TRUE(window.isVisible() && window.isEnabled());
        for (const auto* name : {"LblGetLink", "LblGet2Link", "CmdAdd", "CmdCancel"}) {
            EXPECT_TRUE(Find<QWidget>(window, name).isEnabled()) << name;
        }
        EXPECT_FALSE(Find<QWidget>(window, "ProgressBar1").isVisible());
        EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmNewLoc"));
    }
};

TEST_P(HostileServiceTest, everyRequest_leavesFileAndWindowsUsable)
{
    for (const auto* script : {"getStates.pl", "getUsCanCity.pl", "getNumMatchingCities.pl",
                               "getMatchingCities.pl", "getCityInfo.pl"}) {
        SCOPED_TRACE(script);
        platform.http.replies = {
            {QStringLiteral("getStates.pl"), "<root><a state=\"Egypt\" state_id=\"EG\"/></root>"},
            {QStringLiteral("getUsCanCity.pl"), "<root><a city=\"Cairo\" atlas_id=\"1\"/></root>"},
            {QStringLiteral("getNumMatchingCities.pl"), "<root num_matches=\"1\" max_matches=\"9\"/>"},
            {QStringLiteral("getMatchingCities.pl"), "<root><a city=\"Cairo\" atlas_id=\"1\"/></root>"}};
        Answer(script);
        FrmLocation& list = OpenList();
        ClickOn(list, "LblNewLocLink");
        if (Form* const search = forms.Loaded(FrmNewLoc::kName); search != nullptr) {
            ExpectSearchUsable(*search);
            Type(*search, "TxtZipCode", QStringLiteral("1"));
            ClickOn(*search, "LblGetLink");
            Find<QComboBox>(*search, "CombState").setCurrentIndex(0);
            Type(*search, "TxtCity", QStringLiteral("Ca"));
            ClickOn(*search, "LblGet2Link");
            ExpectSearchUsable(*search);
            if (auto& results = Find<ListBox>(*search, "LstSearchResults"); results.count() > 0) {
                ClickRow(results, 0);
            }
            ClickOn(*search, "CmdAdd");
            forms.Unload(FrmNewLoc::kName);
        }
        ExpectBackInList();
        ExpectSettingsWhole();
        forms.Unload(FrmLocation::kName);
        ExpectBackInMain();
        EXPECT_EQ(platform.process.ended, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Replies, HostileServiceTest, testing::ValuesIn(BadReplies()),
                         [](const auto& row) { return std::string(row.param.name); });

/// Limits what is done while it lives: in processor time, so that the other work of the machine does not
/// count.
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

class LargeReplyTest : public LocationsFixture
{
protected:
    FrmLocation& OpenListAndLoseCountries(const QByteArray& reply)
    {
        platform.http.replies[QStringLiteral("getStates.pl")] = reply;
        FrmLocation& list = OpenList();
        {
            const InGoodTime limit;
            ClickOn(list, "LblNewLocLink");
        }
        ExpectBoxes({Plain(QStringLiteral("Unable to retrieve state list.\r\nVerify internet connection."))});
        ExpectBackInList();
        return list;
    }
};

TEST_F(LargeReplyTest, fiveThousandChildren_areAllListed)
{
    platform.http.replies[QStringLiteral("getStates.pl")] = ManyChildren(5000);
    platform.http.replies[QStringLiteral("getNumMatchingCities.pl")] = ManyChildren(1);
    platform.http.replies[QStringLiteral("getMatchingCities.pl")] = ManyChildren(5000);
    const FrmNewLoc& window = OpenSearch();
    auto& countries = Find<QComboBox>(window, "CombState");
    EXPECT_EQ(countries.count(), 5000);
    EXPECT_EQ(countries.itemText(4999), QStringLiteral("State 4999"));
    countries.setCurrentIndex(4999);
    Type(window, "TxtCity", QStringLiteral("Ci"));
    ClickOn(window, "LblGet2Link");
    EXPECT_TRUE(platform.http.requests.last().contains(QStringLiteral("state_id=4999&")));
    const auto& results = Find<ListBox>(window, "LstSearchResults");
    EXPECT_EQ(results.count(), 5000);
    EXPECT_EQ(results.List(4999), QStringLiteral("City 4999"));
}

// More than the window lists, and more than a document holds.
constexpr int kTooMany[] = {7000, 100'000};

TEST_F(LargeReplyTest, endlessCountries_countAsNoReply_inGoodTime)
{
    for (const int count : kTooMany) {
        SCOPED_TRACE(count);
        OpenListAndLoseCountries(ManyChildren(count));
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(LargeReplyTest, fewCountriesAboveMuchElse_countAsNoReply)
{
    const auto above = [](int count) {
        const QByteArray much = "<b>" + QByteArray("<b/>").repeated(count) + "</b>";
        return "<root><a state=\"Egypt\" state_id=\"20\">" + much + much + much + "</a></root>";
    };
    const FrmLocation& list = OpenListAndLoseCountries(above(5000));
    platform.http.replies[QStringLiteral("getStates.pl")] = above(100);
    ClickOn(list, "LblNewLocLink");
    EXPECT_NE(forms.Loaded(FrmNewLoc::kName), nullptr);
}

TEST_F(LargeReplyTest, countriesAboveRootsInRoots_countAsNoReply_inGoodTime)
{
    const auto above = [](int roots) {
        QByteArray reply = ManyChildren(5700);
        reply.chop(static_cast<int>(qstrlen("</root>")));
        return reply + QByteArray("<root>").repeated(roots) + QByteArray("<x/>").repeated(5700) +
               QByteArray("</root>").repeated(roots + 1);
    };
    const FrmLocation& list = OpenListAndLoseCountries(above(253));
    platform.http.replies[QStringLiteral("getStates.pl")] = above(1);
    ClickOn(list, "LblNewLocLink");
    EXPECT_NE(forms.Loaded(FrmNewLoc::kName), nullptr) << "a child may be called what it likes";
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
    /// Says that all are to be displayed.
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

// More cities than are listed, and cities above much else.
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
    platform.http.replies[QStringLiteral("getUsCanCity.pl")] = ManyChildren(1);
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("1"));
    ClickOn(window, "LblGetLink");
    for (const int count : kTooMany) {
        SCOPED_TRACE(count);
        platform.http.replies[QStringLiteral("getUsCanCity.pl")] = ManyChildren(count);
        {
            const InGoodTime limit;
            ClickOn(window, "LblGetLink");
        }
        ExpectBoxes({Plain(QStringLiteral("Failed to retrieve list"))});
        EXPECT_EQ(Lines(Find<ListBox>(window, "LstSearchResults")), QStringList{QStringLiteral("City 0")});
        EXPECT_TRUE(Find<QWidget>(window, "LblGetLink").isEnabled());
    }
}

TEST_F(LargeReplyTest, endlessPlaces_areNotStored_inGoodTime)
{
    platform.http.replies[QStringLiteral("getUsCanCity.pl")] = ManyChildren(1);
    const FrmNewLoc& window = OpenSearch();
    Type(window, "TxtZipCode", QStringLiteral("1"));
    ClickOn(window, "LblGetLink");
    ClickRow(Find<ListBox>(window, "LstSearchResults"), 0);
    const QByteArray before = ReadSettings();
    for (const int count : {101, 5000, 100'000}) {
        SCOPED_TRACE(count);
        platform.http.replies[QStringLiteral("getCityInfo.pl")] = ManyChildren(count);
        {
            const InGoodTime limit;
            ClickOn(window, "CmdAdd");
        }
        ExpectBoxes({Plain(QStringLiteral("Failed to get city info. Please verify internet connection."))});
        EXPECT_EQ(ReadSettings(), before);
        EXPECT_TRUE(Find<QWidget>(window, "CmdAdd").isEnabled());
    }
    platform.http.replies[QStringLiteral("getCityInfo.pl")] = ManyChildren(100);
    ClickOn(window, "CmdAdd");
    ExpectBoxes({});
    EXPECT_EQ(Find<ListBox>(*forms.Loaded(FrmLocation::kName), "LstLocations").count(), 2 + 50)
        << "every second one";
}

TEST_F(LargeReplyTest, longLines_endInDotsWithinTheList)
{
    platform.http.replies[QStringLiteral("getUsCanCity.pl")] =
        "<root><a city=\"" + QByteArray(10000, 'w') + "\" atlas_id=\"1\"/></root>";
    const FrmNewLoc& window = OpenSearch();
    const int width = window.width();
    Type(window, "TxtZipCode", QStringLiteral("1"));
    ClickOn(window, "LblGetLink");
    const auto& results = Find<ListBox>(window, "LstSearchResults");
    EXPECT_LE(results.visualItemRect(results.item(0)).width(), results.viewport()->width());
    EXPECT_EQ(window.width(), width);
}

} // namespace
