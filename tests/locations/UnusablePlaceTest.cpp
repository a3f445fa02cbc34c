// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/AddLocationFixture.h"

namespace {

class UnusablePlaceTest : public AddLocationFixture
{
protected:
    /// The reply is refused: a message is shown, nothing is stored, the window stays open.
    void ExpectRefused(const FrmNewLoc& window, const QByteArray& children)
    {
        SCOPED_TRACE(children.constData());
        const QByteArray before = ReadSettings();
        Info(Reply(children));
        AddRow(window, 0);
        ExpectBoxes({Plain(kNoCityInfo)});
        EXPECT_EQ(ReadSettings(), before);
        ExpectStillOpen(window);
    }
    static QByteArray With(const char* attribute, const char* value)
    {
        QByteArray place = Place("Cairo");
        const qsizetype at =
            place.indexOf(QByteArray(attribute) + "=\"") + static_cast<qsizetype>(qstrlen(attribute)) + 2;
        return place.replace(at, place.indexOf('"', at) - at, value);
    }
};

constexpr const char* kLatitude = "latitude_final";
constexpr const char* kLongitude = "longitude_final";
constexpr const char* kZone = "time_zone2";

TEST_F(UnusablePlaceTest, numberOutOfItsRange_countsAsNoReply)
{
    const FrmNewLoc& window = OpenResults();
    for (const char* const value : {"400", "90.01", "-90.01", "1e3"}) {
        ExpectRefused(window, With(kLatitude, value));
    }
    for (const char* const value : {"400", "180.01", "-180.01"}) {
        ExpectRefused(window, With(kLongitude, value));
    }
    for (const char* const value : {"1000", "14.5", "15", "-13"}) {
        ExpectRefused(window, With(kZone, value));
    }
}

TEST_F(UnusablePlaceTest, numberThatDoesNotConvert_countsAsNoReply_onEveryLocale)
{
    const FrmNewLoc& window = OpenResults();
    for (const char* const locale : {"en_US", "de_DE", "fa_IR"}) {
        SCOPED_TRACE(locale);
        platform.region.locale = QLocale(QLatin1String(locale));
        for (const char* const attribute : {kLatitude, kLongitude, kZone}) {
            for (const char* const value :
                 {"", "north", "2 N", "1,5", "1,0", "0,001", "0x1", "nan", "inf", "-inf", "1e400"}) {
                ExpectRefused(window, With(attribute, value));
            }
        }
    }
    ExpectRefused(window, "<Cairo city=\"Cairo\" state=\"Egypt\" atlas_id=\"EG-1\"/>");
}

TEST_F(UnusablePlaceTest, numbersUpToTheirLimits_areStoredAndLoaded_onEveryLocale)
{
    const struct
    {
        const char* attribute;
        const char* text;
        double number;
    } rows[] = {{kLatitude, "90", 90},         {kLatitude, "-90.00", -90}, {kLatitude, " 30.05 ", 30.05},
                {kLatitude, "3.005e1", 30.05}, {kLongitude, "180", 180},   {kLongitude, "-180", -180},
                {kLongitude, "+.5", 0.5},      {kZone, "14", 14},          {kZone, "-12", -12}};
    for (const char* const locale : {"en_US", "de_DE", "ar_EG", "sv_SE", "fa_IR"}) {
        for (const auto& [attribute, text, number] : rows) {
            SCOPED_TRACE(std::string(locale) + " " + attribute + " " + text);
            WriteSettings();
            platform.region.locale = QLocale(QLatin1String(locale));
            Info(Reply(With(attribute, text)));
            AddRow(OpenResults(), 0);
            ClickRow(Places(), 2);
            ClickOn(*List(), "CmdSet");
            ExpectBoxes({});
            ASSERT_EQ(main->Variables().Settings.CurrentKey, QStringLiteral("Cairo"));
            const Configuration& held = main->Variables().Settings;
            EXPECT_EQ(attribute == kLatitude
                          ? held.LatitudeFinal
                          : (attribute == kLongitude ? held.LongitudeFinal : held.ZoneHours),
                      number);
        }
    }
}

TEST_F(UnusablePlaceTest, nameOfTheFilesOwn_countsAsNoReply_atAnyDepth)
{
    const FrmNewLoc& window = OpenResults();
    for (const char* const name : {"root", "app", "DefaultAd", "version", "locations", "alerts", "fajr",
                                   "shuruq", "duhr", "asr", "maghrib", "isha"}) {
        const QByteArray empty = QByteArray("<") + name + "/>";
        ExpectRefused(window, Place(name));
        ExpectRefused(window, Place("Cairo", empty));
        ExpectRefused(window, Place("Cairo", "<a><b>" + empty + "</b></a>"));
    }
}

TEST_F(UnusablePlaceTest, namesThatDifferInCase_areStored)
{
    Info(Reply(Place("Alerts", "<APP/><Isha/>")));
    AddRow(OpenResults(), 0);
    ExpectBoxes({});
    EXPECT_EQ(Places().count(), 3);
}

TEST_F(UnusablePlaceTest, lastOfSeveral_keepsTheFirstFromBeingStored)
{
    const FrmNewLoc& window = OpenResults();
    ExpectRefused(window, Place("A") + Place("B") + With(kLatitude, "400"));
    // Also a place that the loop would skip, and a name that is stored already.
    ExpectRefused(window, Place("A") + With(kLatitude, "400"));
    ExpectRefused(window, Place("Makkah") + Place("alerts"));
}

// A path finds the first element of a name at any depth: an element within one place can be read as the
// next place.
TEST_F(UnusablePlaceTest, numberWithinAPlace_isCheckedToo)
{
    const FrmNewLoc& window = OpenResults();
    ExpectRefused(window, Place("A", With(kLatitude, "400")) + Place("B") + Place("Cairo"));
    ExpectRefused(window, Place("A", "<b><Cairo time_zone2=\"1000\"/></b>"));
    Info(Reply(Place("A", "<Cairo note=\"north\"/>")));
    AddRow(window, 0);
    ExpectBoxes({});
}

TEST_F(UnusablePlaceTest, commentsAndTexts_areNoPlaces)
{
    Info(Reply("<!-- one --><?app two?>" + Place("Cairo") + "three"));
    AddRow(OpenResults(), 0);
    ExpectBoxes({});
    ExpectBackInList();
}

} // namespace
