// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CalculationLibrary.h"

#include "fakes/ErrorOf.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace {

class CalculationLibraryTest : public testing::Test
{
protected:
    void Place(const char* module) const
    {
        ASSERT_TRUE(QFile::copy(QString::fromLocal8Bit(module), m_name)) << module;
    }
    void PlaceText(const QByteArray& text) const
    {
        QFile file(m_name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    // By another name: Windows deletes no module that is loaded.
    void TakeAway() const { ASSERT_TRUE(QFile::rename(m_name, m_name + QStringLiteral(".away"))); }
    [[nodiscard]] QString Folder() const { return m_folder.path(); }
    [[nodiscard]] QString ErrorText()
    {
        try {
            static_cast<void>(library.Hday());
        } catch (const RuntimeError& error) {
            return error.Description();
        }
        return {};
    }
    void ExpectEachCallFails()
    {
        const std::pair<const char*, std::function<void()>> calls[] = {
            {"SetHorParams", [this] { library.SetHorParams(1, 2, 3, 4, 5, 6); }},
            {"SetHorTemkin", [this] { library.SetHorTemkin({}); }},
            {"SetHorAngle", [this] { library.SetHorAngle(1, 2, 3, 4); }},
            {"Horarium", [this] { static_cast<void>(library.Horarium(1)); }},
            {"QiblaDir", [this] { static_cast<void>(library.QiblaDir()); }},
            {"SunElev", [this] { static_cast<void>(library.SunElev(1)); }},
            {"MoonElevation", [this] { static_cast<void>(library.MoonElevation(1)); }},
            {"Hday", [this] { static_cast<void>(library.Hday()); }},
            {"Hmon", [this] { static_cast<void>(library.Hmon()); }},
            {"Hyear", [this] { static_cast<void>(library.Hyear()); }},
        };
        for (const auto& [name, call] : calls) {
            EXPECT_EQ(ErrorOf(call), ErrorNumber::kLibraryNotFound) << name;
        }
    }

private:
    QTemporaryDir m_folder;
    QString m_name = m_folder.filePath(QStringLiteral("DuskBeacon.DBN"));

protected:
    CalculationLibrary library{m_folder.path()};
};

TEST_F(CalculationLibraryTest, fileThatIsMissingEmptyOrNoLibrary_isAnErrorOfEachCall)
{
    ExpectEachCallFails();
    PlaceText("");
    ExpectEachCallFails();
    PlaceText("no library");
    ExpectEachCallFails();
}

TEST_F(CalculationLibraryTest, missingFile_isNamed_andNoOtherIsTaken)
{
    for (const char* const other : {"libDuskBeacon.DBN.so", "DuskBeacon.DBN.so", "DuskBeacon.DBN.dll"}) {
        ASSERT_TRUE(QFile::copy(QString::fromLocal8Bit(DUSKBEACON_ECHO_MODULE),
                                Folder() + u'/' + QLatin1String(other)));
    }
    const QString text = ErrorText();
    EXPECT_TRUE(text.contains(Folder() + QStringLiteral("/DuskBeacon.DBN:"))) << text.toStdString();
}

TEST_F(CalculationLibraryTest, file_isNotOpenedBeforeTheFirstCall)
{
    Place(DUSKBEACON_ECHO_MODULE);
    CalculationLibrary late(Folder());
    TakeAway();
    EXPECT_EQ(ErrorOf([&late] { return late.Hday(); }), ErrorNumber::kLibraryNotFound);
}

TEST_F(CalculationLibraryTest, file_isOpenedOnTheFirstCall_andStaysOpen)
{
    EXPECT_EQ(ErrorOf([this] { return library.Hday(); }), ErrorNumber::kLibraryNotFound);
    Place(DUSKBEACON_ECHO_MODULE);
    EXPECT_EQ(library.Hday(), 12) << "the file exists now, and a failure is not remembered";
    TakeAway();
    EXPECT_EQ(library.Hday(), 12) << "once open it needs no file";
}

TEST_F(CalculationLibraryTest, missingFunction_isAnErrorOfItsCallOnly)
{
    Place(DUSKBEACON_HOLEY_MODULE);
    EXPECT_EQ(library.Hday(), 12);
    EXPECT_EQ(ErrorOf([this] { return library.Hyear(); }), ErrorNumber::kFunctionNotFound);
    EXPECT_EQ(library.Hmon(), 7);
}

TEST_F(CalculationLibraryTest, arguments_arriveInTheirPlaces_withTheirSigns)
{
    Place(DUSKBEACON_ECHO_MODULE);
    library.SetHorParams(4112, -8763, -300, 20, 3, 2026);
    library.SetHorTemkin({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    library.SetHorAngle(-1500, 500, 501, -1800);
    std::int16_t slot = 0;
    for (const int argument : {4112, -8763, -300, 20, 3, 2026, -1500, 500, 501, -1800}) {
        EXPECT_EQ(library.Horarium(++slot), argument) << slot;
    }
    EXPECT_EQ(library.QiblaDir(), 385) << "each margin times its place";
    EXPECT_EQ(library.SunElev(600), -600);
    EXPECT_EQ(library.MoonElevation(600), 601);
    EXPECT_EQ(library.Hyear(), 1429);
}

} // namespace
