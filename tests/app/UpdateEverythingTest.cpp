// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstTouchFixture.h"
#include "support/RuntimeError.h"

namespace {

class UpdateEverythingTest : public FirstTouchFixture
{
protected:
    // Loads the window, then reads @p text.
    int Update(const QString& text)
    {
        Window();
        calculation.calls.clear();
        WriteSettings(text);
        return Window().UpdateEverything();
    }
    [[nodiscard]] QString Params() const
    {
        return calculation.calls.isEmpty() ? QString() : calculation.calls.front();
    }
};

TEST_F(UpdateEverythingTest, goodFile_feedsEverything_inItsOrder)
{
    EXPECT_EQ(Update(SettingsText()), 1);
    EXPECT_EQ(Params(), QStringLiteral("SetHorParams 4185 -8765 -360 20 3 2026"));
    EXPECT_EQ(calculation.calls.at(2), QStringLiteral("SetHorAngle -1500 500 500 -1500"));
    EXPECT_TRUE(IsRunning());
    EXPECT_EQ(DateCaption(), QStringLiteral("Date: 20 March, 2026"));
    const qsizetype sky = calculation.calls.indexOf(QStringLiteral("SunElev 570"));
    EXPECT_GT(sky, calculation.calls.indexOf(QStringLiteral("Horarium 10")));
}

// A calculation that fails in one reading, so that the test sees which labels came before it.
class CalculationThatFailsInTheSky final : public Calculation
{
public:
    explicit CalculationThatFailsInTheSky(FakeCalculation& calculation)
        : m_calculation(calculation)
    {
    }
    void SetHorParams(std::int16_t latitude, std::int16_t longitude, std::int16_t offset, std::int16_t day,
                      std::int16_t month, std::int16_t year) override
    {
        m_calculation.SetHorParams(latitude, longitude, offset, day, month, year);
    }
    void SetHorTemkin(const std::array<std::int16_t, 10>& margins) override
    {
        m_calculation.SetHorTemkin(margins);
    }
    void SetHorAngle(std::int16_t a, std::int16_t b, std::int16_t c, std::int16_t d) override
    {
        m_calculation.SetHorAngle(a, b, c, d);
    }
    [[nodiscard]] std::int16_t Horarium(std::int16_t slot) override { return m_calculation.Horarium(slot); }
    [[nodiscard]] std::int16_t QiblaDir() override { return m_calculation.QiblaDir(); }
    [[nodiscard]] std::int16_t SunElev(std::int16_t minute) override
    {
        if (fails) {
            throw RuntimeError(ErrorNumber::kFunctionNotFound, QStringLiteral("no SunElev"));
        }
        return m_calculation.SunElev(minute);
    }
    [[nodiscard]] std::int16_t MoonElevation(std::int16_t minute) override
    {
        return m_calculation.MoonElevation(minute);
    }
    [[nodiscard]] std::int16_t Hday() override { return m_calculation.Hday(); }
    [[nodiscard]] std::int16_t Hmon() override { return m_calculation.Hmon(); }
    [[nodiscard]] std::int16_t Hyear() override { return m_calculation.Hyear(); }

    bool fails = true;

private:
    FakeCalculation& m_calculation;
};

TEST_F(UpdateEverythingTest, skyComesBeforeDateAndTimes)
{
    CalculationThatFailsInTheSky failing(calculation);
    forms.Register(FrmMain::kName, [&] { return std::make_unique<FrmMain>(forms, failing); });
    Window();
    EXPECT_EQ(platform.boxes.boxes, std::vector<FakeMessageBoxes::Box>{FatalBox(6)});
    EXPECT_TRUE(IsRunning()) << "the scheduler had been started";
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Chicago, Illinois")) << "the settings block comes first";
    EXPECT_EQ(Window().findChild<QWidget*>(QStringLiteral("VBCompas1"))->accessibleName(),
              QStringLiteral("Angle: 58.4"))
        << "then the compass";
    EXPECT_EQ(DateCaption(), QStringLiteral("Date:")) << "date and times come last";
}

struct ParamsRow
{
    const char* name;
    const char* before;
    const char* after;
    const char* call;
    int index;
};

class FedRows : public UpdateEverythingTest, public testing::WithParamInterface<ParamsRow>
{
};

TEST_P(FedRows, value_reachesTheCalculation)
{
    EXPECT_EQ(Update(Changed(GetParam().before, GetParam().after)), 1);
    ASSERT_GT(calculation.calls.size(), GetParam().index);
    EXPECT_EQ(calculation.calls.at(GetParam().index), QLatin1String(GetParam().call));
}

INSTANTIATE_TEST_SUITE_P(
    UpdateEverything, FedRows,
    testing::Values(ParamsRow{"latitude", "latitude_final=\"41.85\"", "latitude_final=\"41.12\"",
                              "SetHorParams 4112 -8765 -360 20 3 2026", 0},
                    ParamsRow{"latitudeRoundedDown", "latitude_final=\"41.85\"",
                              "latitude_final=\"-33.8651\"", "SetHorParams -3387 -8765 -360 20 3 2026", 0},
                    ParamsRow{"latitudeWhoseProductIsBelow", "latitude_final=\"41.85\"",
                              "latitude_final=\"36.73\"", "SetHorParams 3672 -8765 -360 20 3 2026", 0},
                    ParamsRow{"zoneOfAHalf", "time_zone2=\"-6\"", "time_zone2=\"5.5\"",
                              "SetHorParams 4185 -8765 360 20 3 2026", 0},
                    ParamsRow{"minutesOfAHalf", "time_zone2=\"-6\"", "time_zone2=\"5.5\" utc_minutes=\"330\"",
                              "SetHorParams 4185 -8765 330 20 3 2026", 0},
                    ParamsRow{"daylightSaving", "useDLS=\"false\"", "useDLS=\"true\"",
                              "SetHorParams 4185 -8765 -300 20 3 2026", 0},
                    ParamsRow{"fajrAngleOfAHalf", "angle1=\"-15\"", "angle1=\"-17.5\"",
                              "SetHorAngle -1800 500 500 -1500", 2},
                    ParamsRow{"ishaAngleOfAHalf", "angle2=\"-15\"", "angle2=\"-19.5\"",
                              "SetHorAngle -1500 500 500 -2000", 2},
                    ParamsRow{"largestAngle", "angle1=\"-15\"", "angle1=\"327\"",
                              "SetHorAngle 32700 500 500 -1500", 2},
                    ParamsRow{"otherPlace", "Current=\"Chicago\"", "Current=\"Makkah\"",
                              "SetHorParams 2142 3983 180 20 3 2026", 0}),
    [](const testing::TestParamInfo<ParamsRow>& row) { return std::string(row.param.name); });

struct QuietRow
{
    const char* name;
    const char* before;
    const char* after;
};

class QuietRows : public UpdateEverythingTest, public testing::WithParamInterface<QuietRow>
{
};

TEST_P(QuietRows, unusableValue_leavesAllAsItWas_withoutAWord)
{
    Window();
    const QStringList times = Times();
    calculation.slots_[0] = 11;
    EXPECT_EQ(Update(Changed(GetParam().before, GetParam().after)), 0);
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
    EXPECT_TRUE(calculation.calls.isEmpty());
    EXPECT_TRUE(IsRunning()) << "the scheduler goes on with its old minutes";
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Chicago, Illinois"));
    EXPECT_EQ(Times(), times);
}

INSTANTIATE_TEST_SUITE_P(
    UpdateEverything, QuietRows,
    testing::Values(QuietRow{"emptyCurrent", "Current=\"Chicago\"", "Current=\"\""},
                    QuietRow{"unknownCurrent", "Current=\"Chicago\"", "Current=\"Nowhere\""},
                    QuietRow{"maybe", "useAdvWarn=\"false\"", "useAdvWarn=\"maybe\""},
                    QuietRow{"noZone", "time_zone2=\"-6\"", "time_zone2=\"\""},
                    QuietRow{"truncated", "</root>", ""}),
    [](const testing::TestParamInfo<QuietRow>& row) { return std::string(row.param.name); });

class FatalRows : public UpdateEverythingTest, public testing::WithParamInterface<QuietRow>
{
};

TEST_P(FatalRows, anyOtherFailure_saysError6_andEnds)
{
    EXPECT_EQ(Update(Changed(GetParam().before, GetParam().after)
                         .replace(QStringLiteral("city=\"Chicago\""), QStringLiteral("city=\"Cicero\""))),
              0);
    EXPECT_EQ(platform.boxes.boxes, std::vector<FakeMessageBoxes::Box>{FatalBox(6)});
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_TRUE(calculation.calls.isEmpty());
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Cicero, Illinois"))
        << "the settings block comes before the scheduler";
}

INSTANTIATE_TEST_SUITE_P(
    UpdateEverything, FatalRows,
    testing::Values(QuietRow{"angle1Overflow", "angle1=\"-15\"", "angle1=\"400\""},
                    QuietRow{"angle1Negative", "angle1=\"-15\"", "angle1=\"-328\""},
                    QuietRow{"angle2Overflow", "angle2=\"-15\"", "angle2=\"328\""},
                    QuietRow{"latitudeOverflow", "latitude_final=\"41.85\"", "latitude_final=\"328\""},
                    QuietRow{"longitudeOverflow", "longitude_final=\"-87.65\"", "longitude_final=\"-400\""},
                    QuietRow{"zoneOverflow", "time_zone2=\"-6\"", "time_zone2=\"600\""}),
    [](const testing::TestParamInfo<QuietRow>& row) { return std::string(row.param.name); });

TEST_F(UpdateEverythingTest, missingLibrary_saysError6_atTheStartToo)
{
    calculation.fails = true;
    Window();
    EXPECT_EQ(platform.boxes.boxes, std::vector<FakeMessageBoxes::Box>{FatalBox(6)});
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_FALSE(IsRunning()) << "the clock starts behind the calculation";
}

TEST_F(UpdateEverythingTest, fileGoneWhileRunning_isQuiet)
{
    Window();
    QFile::remove(kSettingsFile);
    EXPECT_EQ(Window().UpdateEverything(), 0);
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

TEST_F(UpdateEverythingTest, failedLoad_keepsWhatWasReadBefore)
{
    EXPECT_EQ(Update(Changed("pid=\"P-77\"", "pid=\"P-78\"")
                         .replace(QStringLiteral("angle1=\"-15\""), QStringLiteral("angle1=\"\""))),
              0);
    EXPECT_EQ(Window().Variables().Settings.PID, QStringLiteral("P-78"));
    EXPECT_EQ(Window().Variables().Settings.FajrAngle, -15);
}

TEST_F(UpdateEverythingTest, commaSystem_readsThePointedLatitude)
{
    platform.region.locale = QLocale(QLocale::German, QLocale::Germany);
    EXPECT_EQ(Update(Changed("latitude_final=\"41.85\"", "latitude_final=\"41.12\"")), 1);
    EXPECT_EQ(Params(), QStringLiteral("SetHorParams 4112 -8765 -360 20 3 2026"));
}

TEST_F(UpdateEverythingTest, midnight_rereadsTheFile_andComputesTheDayTwice)
{
    Window();
    WriteSettings(Changed("Current=\"Chicago\"", "Current=\"Makkah\""));
    calculation.calls.clear();
    platform.clock.Set(QDate(2026, 3, 21), QTime(0, 0));
    platform.timers.Ticker()->Fire();
    EXPECT_EQ(calculation.calls.filter(QStringLiteral("SetHorParams")),
              (QStringList{QStringLiteral("SetHorParams 4185 -8765 -360 21 3 2026"),
                           QStringLiteral("SetHorParams 2142 3983 180 21 3 2026")}));
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Makkah, Saudi Arabia"));
    EXPECT_EQ(DateCaption(), QStringLiteral("Date: 21 March, 2026"));
    EXPECT_TRUE(IsRunning());
}

TEST_F(UpdateEverythingTest, schedulerStoppedByAnError_runsAgain)
{
    Window();
    calculation.fails = true;
    TickAt(0, 0);
    EXPECT_FALSE(IsRunning());
    calculation.fails = false;
    EXPECT_EQ(Window().UpdateEverything(), 1);
    EXPECT_TRUE(IsRunning());
}

} // namespace
