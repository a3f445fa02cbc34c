// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Configuration.h"

#include "fakes/ErrorOf.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "store/Texts.h"

#include <gtest/gtest.h>

namespace {

class ConfigurationTest : public testing::Test
{
protected:
    // The number of the error that ended the load, 0 for none.
    int Load(const QString& text = SettingsText())
    {
        WriteSettings(text);
        return Reload();
    }
    int Reload()
    {
        return ErrorOf([this] { LoadConfiguration(held, platform.interfaces); });
    }

    FakePlatform platform;
    Configuration held;
};

TEST_F(ConfigurationTest, wholeFile_fillsEveryField)
{
    ASSERT_EQ(Load(SettingsText().replace(Q("angle2=\"-15\""), Q("angle2=\"-18\""))), 0);
    EXPECT_EQ(held.DistText, Q("dbeacon"));
    EXPECT_EQ(held.Dstr, Q("dbeacon"));
    EXPECT_EQ(held.ProdID, Q("P-77"));
    EXPECT_EQ(held.PID, Q("P-77"));
    EXPECT_EQ(held.CurrentKey, Q("Chicago"));
    EXPECT_EQ(held.AtlasID, Q("US-1"));
    EXPECT_EQ(held.CityName, Q("Chicago"));
    EXPECT_EQ(held.StateName, Q("Illinois"));
    EXPECT_EQ(held.LatitudeText, Q("41.85 N"));
    EXPECT_EQ(held.LatitudeFinal, 41.85);
    EXPECT_EQ(held.LongitudeText, Q("87.65 W"));
    EXPECT_EQ(held.LongitudeFinal, -87.65);
    EXPECT_EQ(held.ZoneHours, -6);
    EXPECT_EQ(held.FajrAngle, -15);
    EXPECT_EQ(held.IshaAngle, -18);
    EXPECT_EQ(held.CalcMethod, Q("ISNA"));
    EXPECT_EQ(held.AsrMethod, Q("shafi"));
    EXPECT_FALSE(held.UseAdvAlert);
    EXPECT_EQ(held.AdvAlertMinutes, 10);
    EXPECT_FALSE(held.UseDayLight);
    EXPECT_EQ(held.HourMode, Q("24"));
    EXPECT_EQ(held.DefaultAdText, Q("PGI+RHVzayBCZWFjb248L2I+"));
}

TEST_F(ConfigurationTest, textsThatAreMissing_becomeEmpty)
{
    ASSERT_EQ(Load(), 0);
    ASSERT_EQ(Load(SettingsText()
                       .remove(Q(" dist=\"dbeacon\""))
                       .remove(Q(" method=\"ISNA\""))
                       .remove(Q(" hourmode=\"24\""))
                       .remove(Q("<DefaultAd Ad=\"PGI+RHVzayBCZWFjb248L2I+\"/>"))),
              0);
    EXPECT_EQ(held.DistText + held.Dstr + held.CalcMethod + held.HourMode + held.DefaultAdText, QString());
}

TEST_F(ConfigurationTest, addressesOfTheService_areReadAsTheyStand_andAreEmptyWithoutThem)
{
    ASSERT_EQ(Load(SettingsText().replace(Q("<app "), Q("<app service=\" s/\" signup=\"a@b\" probe=\"p\" "))),
              0);
    EXPECT_EQ(held.ServiceText, Q(" s/"));
    EXPECT_EQ(held.SignupText, Q("a@b"));
    EXPECT_EQ(held.ProbeText, Q("p"));
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(held.ServiceText + held.SignupText + held.ProbeText, QString());
}

TEST_F(ConfigurationTest, addressesOfTheService_areReadBeforeAPlaceThatFails)
{
    EXPECT_EQ(Load(SettingsText()
                       .replace(Q("<app "), Q("<app service=\"s\" "))
                       .replace(Q("Current=\"Chicago\""), Q("Current=\"\""))),
              2002);
    EXPECT_EQ(held.ServiceText, Q("s"));
}

TEST_F(ConfigurationTest, valueThatDoesNotConvert_endsTheLoadWith2002)
{
    // The other values of the alerts are those of the test of their order.
    const std::pair<const char*, const char*> rows[] = {
        {"Current=\"Chicago\"", "Current=\"\""},
        {" Current=\"Chicago\"", ""},
        {"Current=\"Chicago\"", "Current=\"Atlantis\""},
        {"Current=\"Chicago\"", "Current=\"New York\""},
        {"Current=\"Chicago\"", "Current=\"Chicago[\""},
        {"latitude_final=\"41.85\"", "latitude_final=\"\""},
        {"latitude_final=\"41.85\"", "latitude_final=\"north\""},
        {" longitude_final=\"-87.65\"", ""},
        {"time_zone2=\"-6\"", "time_zone2=\"\""},
        {"time_zone2=\"-6\"", "time_zone2=\"40000\""},
        {"angle1=\"-15\"", "angle1=\"\""},
        {"useAdvWarn=\"false\"", "useAdvWarn=\"\""},
        {"advWarn=\"10\"", "advWarn=\"\""},
        {" useDLS=\"false\"", ""},
    };
    for (const auto& [before, after] : rows) {
        ASSERT_TRUE(SettingsText().contains(Q(before)));
        EXPECT_EQ(Load(SettingsText().replace(Q(before), Q(after))), 2002) << before << " -> " << after;
    }
    EXPECT_EQ(ErrorNumber::kConfiguration, 2002);
}

TEST_F(ConfigurationTest, currentThatNamesNoPlace_emptiesThePlace)
{
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(Load(SettingsText().replace(Q("Current=\"Chicago\""), Q("Current=\"Atlantis\""))), 2002);
    EXPECT_EQ(held.CurrentKey, Q("Atlantis"));
    EXPECT_EQ(held.AtlasID + held.CityName + held.StateName + held.LongitudeText, QString())
        << "the requests name this place";
    EXPECT_EQ(held.LongitudeFinal, -87.65);
}

TEST_F(ConfigurationTest, fileThatIsNotThere_is2002_andChangesNothing)
{
    ASSERT_EQ(Load(), 0);
    QFile::remove(kSettingsFile);
    EXPECT_EQ(Reload(), 2002);
    EXPECT_EQ(held.CityName, Q("Chicago"));
}

TEST_F(ConfigurationTest, failure_keepsWhatWasReadBefore_andTheRestStaysOld)
{
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(Load(SettingsText()
                       .replace(Q("pid=\"P-77\""), Q("pid=\"P-78\""))
                       .replace(Q("dist=\"dbeacon\""), Q("dist=\"other\""))
                       .replace(Q("city=\"Chicago\""), Q("city=\"Cicero\""))
                       .replace(Q("longitude_final=\"-87.65\""), Q("longitude_final=\"-87.75\""))
                       .replace(Q("latitude=\"41.85 N\""), Q("latitude=\"41.84 N\""))
                       .replace(Q("latitude_final=\"41.85\""), Q("latitude_final=\"x\""))
                       .replace(Q("time_zone2=\"-6\""), Q("time_zone2=\"-5\""))
                       .replace(Q("angle1=\"-15\""), Q("angle1=\"-18\""))),
              2002);
    EXPECT_EQ(held.PID, Q("P-78"));
    EXPECT_EQ(held.CityName, Q("Cicero"));
    EXPECT_EQ(held.LongitudeFinal, -87.75);
    EXPECT_EQ(held.LatitudeText, Q("41.84 N"));
    EXPECT_EQ(held.LatitudeFinal, 41.85) << "from here on nothing has been read";
    EXPECT_EQ(held.ZoneHours, -6);
    EXPECT_EQ(held.Dstr, Q("dbeacon"));
    EXPECT_EQ(held.FajrAngle, -15);
}

// The distribution and the alerts in the order in which they are read: a failure keeps those read before it.
TEST_F(ConfigurationTest, failureInTheAlerts_keepsExactlyWhatWasReadBefore)
{
    const struct
    {
        const char* attribute;
        const char* old;
        const char* fresh;
        /// Nothing for a text, which can't fail.
        const char* unusable;
        bool (*isFresh)(const Configuration& now);
    } fields[] = {
        {"dist", "dbeacon", "other", nullptr, [](const Configuration& now) { return now.Dstr == u"other"; }},
        {"angle1", "-15", "-18", "steep", [](const Configuration& now) { return now.FajrAngle == -18; }},
        {"angle2", "-15", "-17", "steep", [](const Configuration& now) { return now.IshaAngle == -17; }},
        {"method", "ISNA", "MWL", nullptr, [](const Configuration& now) { return now.CalcMethod == u"MWL"; }},
        {"useAdvWarn", "false", "true", "maybe", [](const Configuration& now) { return now.UseAdvAlert; }},
        {"advWarn", "10", "25", "long", [](const Configuration& now) { return now.AdvAlertMinutes == 25; }},
        {"asrMethode", "shafi", "hanafi", nullptr,
         [](const Configuration& now) { return now.AsrMethod == u"hanafi"; }},
        {"useDLS", "false", "true", "maybe", [](const Configuration& now) { return now.UseDayLight; }},
        {"hourmode", "24", "12", nullptr, [](const Configuration& now) { return now.HourMode == u"12"; }},
    };
    const auto attribute = [](const char* name, const char* value) {
        return QStringLiteral(" %1=\"%2\"").arg(Q(name), Q(value));
    };
    for (const auto& failing : fields) {
        if (failing.unusable == nullptr) {
            continue;
        }
        SCOPED_TRACE(failing.attribute);
        ASSERT_EQ(Load(), 0);
        QString text = SettingsText();
        for (const auto& field : fields) {
            const QString before = attribute(field.attribute, field.old);
            ASSERT_EQ(text.count(before), 1);
            text.replace(before,
                         attribute(field.attribute, &field == &failing ? field.unusable : field.fresh));
        }
        EXPECT_EQ(Load(text), 2002);
        bool isBefore = true;
        for (const auto& field : fields) {
            isBefore = isBefore && &field != &failing;
            EXPECT_EQ(field.isFresh(held), isBefore) << field.attribute;
        }
    }
}

// Intended: the point of this number is not replaced, unlike those of the others.
TEST_F(ConfigurationTest, commaAndArabicSystems_readNoAdvanceWithAPoint)
{
    for (const QLocale& locale :
         {QLocale(QLocale::German, QLocale::Germany), QLocale(QLocale::Arabic, QLocale::Egypt)}) {
        platform.region.locale = locale;
        EXPECT_EQ(Load(SettingsText().replace(Q("advWarn=\"10\""), Q("advWarn=\"9.5\""))), 2002)
            << locale.name().toStdString();
    }
}

TEST_F(ConfigurationTest, utcMinutes_countWithin59MinutesOfTheRoundedZone)
{
    constexpr std::optional<std::int16_t> kNone;
    const struct
    {
        const char* zone;
        const char* attribute;
        std::optional<std::int16_t> minutesBeyondZone;
    } rows[] = {
        {"5.5", "utc_minutes=\"330\"", -30},
        {"5.75", "utc_minutes=\"345\"", -15},
        {"4.5", "utc_minutes=\"270\"", 30},
        {"3.5", "utc_minutes=\"210\"", -30},
        {"-3.5", "utc_minutes=\"-210\"", 30},
        {"6", "utc_minutes=\"+330\"", -30},
        {"6", "utc_minutes=\"0360\"", 0},
        {"0", "utc_minutes=\"-44\"", -44},
        {"6", "utc_minutes=\"301\"", -59},
        {"6", "utc_minutes=\"300\"", kNone},
        {"6", "utc_minutes=\"419\"", 59},
        {"6", "utc_minutes=\"420\"", kNone},
        {"545", "utc_minutes=\"32707\"", 7},
        {"545", "utc_minutes=\"32708\"", kNone},
        {"5.5", "", kNone},
        {"5.5", "utc_minutes=\"\"", kNone},
        {"5.5", "utc_minutes=\" 330\"", kNone},
        {"5.5", "utc_minutes=\"330 \"", kNone},
        {"5.5", "utc_minutes=\"330.0\"", kNone},
        {"5.5", "utc_minutes=\"5:30\"", kNone},
        {"5.5", "utc_minutes=\"0x14A\"", kNone},
        {"5.5", "utc_minutes=\"-+330\"", kNone},
        {"5.5", "utc_minutes=\"\u0663\u0663\u0660\"", kNone},
        {"0", "utc_minutes=\"-\"", kNone},
        {"0", "utc_minutes=\"4294967296\"", kNone},
    };
    for (const QLocale& locale : {QLocale::c(), QLocale(QLocale::German, QLocale::Germany)}) {
        platform.region.locale = locale;
        for (const auto& row : rows) {
            SCOPED_TRACE(testing::Message() << row.zone << ' ' << row.attribute);
            ASSERT_EQ(Load(SettingsText().replace(
                          Q("time_zone2=\"-6\""),
                          QStringLiteral("time_zone2=\"%1\" %2").arg(Q(row.zone), Q(row.attribute)))),
                      0);
            EXPECT_EQ(held.MinutesBeyondZone, row.minutesBeyondZone);
        }
    }
}

TEST_F(ConfigurationTest, eachSystem_readsPointedNumbersAndRoundsThem)
{
    const struct
    {
        const char* text;
        std::int16_t hours;
    } zones[] = {{"5.5", 6}, {"-3.5", -4}};
    for (const char* name : {"en_US", "de_DE", "ar_EG", "sv_SE", "fa_IR"}) {
        platform.region.locale = QLocale(Q(name));
        for (const auto& zone : zones) {
            SCOPED_TRACE(testing::Message() << name << ' ' << zone.text);
            held = Configuration{};
            ASSERT_EQ(Load(SettingsText()
                               .replace(Q("latitude_final=\"41.85\""), Q("latitude_final=\"41.12\""))
                               .replace(Q("time_zone2=\"-6\""),
                                        QStringLiteral("time_zone2=\"%1\"").arg(Q(zone.text)))
                               .replace(Q("angle1=\"-15\""), Q("angle1=\"-17.5\""))
                               .replace(Q("angle2=\"-15\""), Q("angle2=\"-19.5\""))),
                      0);
            EXPECT_EQ(held.LatitudeFinal, 41.12);
            EXPECT_EQ(held.LongitudeFinal, -87.65);
            EXPECT_EQ(held.ZoneHours, zone.hours);
            EXPECT_EQ(held.FajrAngle, -18);
            EXPECT_EQ(held.IshaAngle, -20);
        }
    }
}

} // namespace
