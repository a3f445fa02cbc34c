// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/StandIn.h"
#include "forms/Boxes.h"
#include "soak/ProgramWorld.h"

#include <QComboBox>

#include <gtest/gtest.h>

namespace {

/// The whole program against the service of the journeys, over the real HTTP.
class WholeServiceTest : public testing::Test
{
protected:
    void Start(const QString& settings = SettingsText())
    {
        m_world = std::make_unique<ProgramWorld>(m_files, &m_http, settings);
        m_world->Start();
    }
    void OpenSearch()
    {
        m_world->Click(FrmMain::kName, "LblLocLink");
        m_world->Click(FrmLocation::kName, "LblNewLocLink");
        ASSERT_TRUE(m_world->IsUp(FrmNewLoc::kName));
    }
    void SearchByCity(const QString& country, const QString& city)
    {
        auto& countries = m_world->Find<QComboBox>(FrmNewLoc::kName, "CombState");
        ASSERT_GE(countries.findText(country), 0);
        countries.setCurrentIndex(countries.findText(country));
        QTest::keyClicks(&m_world->Find(FrmNewLoc::kName, "TxtCity"), city);
        m_world->Click(FrmNewLoc::kName, "LblGet2Link");
    }
    [[nodiscard]] QStringList Lines(const QString& window, const char* name) const
    {
        const auto& list = m_world->Find<ListBox>(window, name);
        QStringList lines;
        for (int row = 0; row < list.count(); ++row) {
            lines << list.item(row)->text();
        }
        return lines;
    }
    [[nodiscard]] QStringList BoxTexts() const
    {
        QStringList texts;
        for (const FakeMessageBoxes::Box& box : m_world->platform.boxes.boxes) {
            texts << box.text;
        }
        return texts;
    }
    StandIn m_service;
    RebasedHttp m_http = m_service.Http(HttpLimits{1024 * 1024, 10, 20'000});
    PosixFileStore m_files;
    std::unique_ptr<ProgramWorld> m_world;
};

TEST_F(WholeServiceTest, firstStart_getsItsIdentifierAndItsAd)
{
    Start(SettingsText().replace(QStringLiteral(R"(FirstRun="false" pid="P-77")"),
                                 QStringLiteral(R"(FirstRun="true" pid="")")));
    EXPECT_TRUE(ReadSettings().contains(R"(FirstRun="false" pid="P-1001")"));
    QFile page(m_world->platform.folder.filePath(QStringLiteral("temp.html")));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    EXPECT_TRUE(page.readAll().contains("<b>An advertisement</b>"));
    EXPECT_EQ(BoxTexts(), QStringList()) << "the version is the one that the service has";
}

TEST_F(WholeServiceTest, zipCode_findsItsCity)
{
    Start();
    OpenSearch();
    QTest::keyClicks(&m_world->Find(FrmNewLoc::kName, "TxtZipCode"), QStringLiteral("48126"));
    m_world->Click(FrmNewLoc::kName, "LblGetLink");
    EXPECT_EQ(Lines(FrmNewLoc::kName, "LstSearchResults"), QStringList{QStringLiteral("Dearborn")});
}

TEST_F(WholeServiceTest, placeFoundByCity_isStoredWithItsCoordinates)
{
    Start();
    OpenSearch();
    SearchByCity(QStringLiteral("France"), QStringLiteral("Pa"));
    ASSERT_EQ(Lines(FrmNewLoc::kName, "LstSearchResults"),
              (QStringList{QStringLiteral("Paris"), QStringLiteral("Pau")}));
    auto& results = m_world->Find<ListBox>(FrmNewLoc::kName, "LstSearchResults");
    QTest::mouseClick(results.viewport(), Qt::LeftButton, {},
                      results.visualItemRect(results.item(0)).center());
    m_world->Click(FrmNewLoc::kName, "CmdAdd");
    EXPECT_EQ(m_world->Loaded(FrmNewLoc::kName), nullptr);
    EXPECT_EQ(Lines(FrmLocation::kName, "LstLocations").last(), QStringLiteral("Paris, France"));
    EXPECT_TRUE(ReadSettings().contains(
        R"(<Paris atlas_id="FR-75000" city="Paris" state="France" longitude="2.35" longitude_final="2.35")"));
}

TEST_F(WholeServiceTest, unknownCity_hasNoMatches)
{
    Start();
    OpenSearch();
    SearchByCity(QStringLiteral("Norway"), QStringLiteral("Pa"));
    EXPECT_EQ(BoxTexts(), QStringList{QStringLiteral(
                              "There are no matches for this search criteria.\r\nPlease try again.")});
}

TEST_F(WholeServiceTest, registration_isStoredAndWelcomed)
{
    Start(SettingsText().replace(
        QStringLiteral(R"(mobileEnabled="false" mobileDID="" mobilePC="" mobileConfirm="0")"),
        QStringLiteral(R"(mobileEnabled="true" mobileDID="15551234" mobilePC="5521" mobileConfirm="0")")));
    m_world->Click(FrmMain::kName, "LblAlertsLink");
    m_world->Click(FrmAlerts::kName, "LblMobilAlert");
    m_world->Click(FrmAlerts::kName, "CmdMobilReg");
    EXPECT_EQ(BoxTexts(), QStringList{QStringLiteral("Your device is registered.")});
    EXPECT_TRUE(ReadSettings().contains(R"(mobileConfirm="1")"));
}

// The list of countries can't be read: the search closes, the places are unchanged.
TEST_F(WholeServiceTest, serviceThatMisbehaves_keepsThePlaces)
{
    Start();
    const QByteArray before = ReadSettings();
    for (const char* const how : {"refuse", "truncated", "html", "empty", "cut"}) {
        m_world->platform.boxes.boxes.clear();
        ASSERT_TRUE(m_service.Misbehave("getStates.pl", how));
        m_world->Click(FrmMain::kName, "LblLocLink");
        m_world->Click(FrmLocation::kName, "LblNewLocLink");
        EXPECT_EQ(BoxTexts(), QStringList{QStringLiteral(
                                  "Unable to retrieve state list.\r\nVerify internet connection.")})
            << how;
        EXPECT_EQ(m_world->Loaded(FrmNewLoc::kName), nullptr) << how;
        m_world->Loaded(FrmLocation::kName)->close();
        Desk::Settle();
        EXPECT_EQ(ReadSettings(), before) << how;
    }
}

} // namespace
