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

// More than the window lists, and more than a document may contain.
constexpr int kTooMany[] = {7000, 100'000};

class LargeReplyTest : public LocationsFixture
{
protected:
    /// Limits the processor time of the step. Other work of the machine does not count.
    static void InGoodTime(const std::function<void()>& step)
    {
        constexpr double kMostMilliseconds = 5000.0; // with a sanitizer, on a slow machine
        const double before = ProcessorMilliseconds();
        step();
        EXPECT_LT(ProcessorMilliseconds() - before, kMostMilliseconds);
    }
    static void ClickInGoodTime(const Form& window, const char* name)
    {
        InGoodTime([&] { ClickOn(window, name); });
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
        EXPECT_EQ(Shown(Results(window)), u"City 0");
        return window;
    }
    /// Searches by city, and answers that all results are to be displayed.
    void SearchInGoodTime(const Form& window, const QByteArray& reply)
    {
        Answer("getNumMatchingCities.pl", "<root num_matches=\"7000\" max_matches=\"50\"/>");
        Answer("getMatchingCities.pl", reply);
        platform.http.requests.clear();
        platform.boxes.answers = {true};
        InGoodTime([&] { SearchCity(window); });
        EXPECT_EQ(platform.http.requests.size(), 2);
        EXPECT_TRUE(Find<QWidget>(window, "LblGet2Link").isEnabled());
        EXPECT_FALSE(Find<QWidget>(window, "ProgressBar1").isVisible());
        ExpectBoxes(
            {Question(QStringLiteral("There are over 50 matches.\r\nWould you like to display all?"))});
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

TEST_F(LargeReplyTest, sixThousand_areAllShown_inGoodTime)
{
    const FrmNewLoc& window = OpenWithACity();
    SearchInGoodTime(window, ManyChildren(6000));
    ASSERT_EQ(Results(window).count(), 6000);
    EXPECT_EQ(Results(window).List(0), QStringLiteral("City 0"));
    EXPECT_EQ(Results(window).List(5999), QStringLiteral("City 5999"));
    ClickRow(Results(window), 5999);
    ClickOn(window, "CmdAdd");
    EXPECT_TRUE(platform.http.requests.last().contains(QStringLiteral("aid=5999&"))) << "its own identifier";
}

TEST_F(LargeReplyTest, namesThatComeAgain_stillShowTheFirstOfThem)
{
    const FrmNewLoc& window = OpenWithACity();
    QByteArray reply = ManyChildren(5999);
    reply.insert(reply.size() - 7, "<c7 city=\"Another\"/>");
    SearchInGoodTime(window, reply);
    EXPECT_EQ(Results(window).count(), 6000);
    EXPECT_EQ(Results(window).List(5999), QStringLiteral("City 7"));
}

TEST_F(LargeReplyTest, cities_tooManyOrAboveMuchElse_leaveTheEarlierResults_inGoodTime)
{
    const FrmNewLoc& window = OpenWithACity();
    QByteArray nested = ManyChildren(3);
    nested.replace("\"/><c1 ", "\"><d>" + QByteArray("<b/>").repeated(5999) + "</d><e>" +
                                   QByteArray("<b/>").repeated(5999) + "</e></c0><c1 ");
    for (const QByteArray& reply : {ManyChildren(6001), ManyChildren(100'000), nested}) {
        SearchInGoodTime(window, reply);
        EXPECT_EQ(Shown(Results(window)), u"City 0");
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
