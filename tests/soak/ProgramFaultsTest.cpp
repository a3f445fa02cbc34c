// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Boxes.h"
#include "soak/FaultySystem.h"
#include "soak/ProgramWorld.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

namespace {

using FaultySystem::Fault;
using Boxes = std::vector<FakeMessageBoxes::Box>;

constexpr int kErrorsOfASave[] = {ENOSPC, EROFS, EACCES, EINTR, EIO};

const FakeMessageBoxes::Box kError5{
    QStringLiteral("An error has occured, The application will be terminated."), QStringLiteral("Error - 5"),
    QStringLiteral("OK")};
const FakeMessageBoxes::Box kVersionQuestion{
    QStringLiteral("Would you like to Download\r\nthe new version of DuskBeacon?"),
    QStringLiteral("Dusk Beacon"), QStringLiteral("Yes No")};
const FakeMessageBoxes::Box kDeleteQuestion{
    QStringLiteral("Are you sure you want to remove: Makkah, Saudi Arabia"), QStringLiteral("Dusk Beacon"),
    QStringLiteral("Yes No")};

const FakeMessageBoxes::Box kWelcome{QStringLiteral("Welcome"), QStringLiteral("Dusk Beacon"),
                                     QStringLiteral("OK")};
const FakeMessageBoxes::Box kResetQuestion{
    QStringLiteral("This will clear your Mobile Device ID and Personal code?\r\nDo you want to continue?"),
    QStringLiteral("Dusk Beacon"), QStringLiteral("Yes No")};

/// What a user does that ends in one save, and what is to be seen then.
struct Deed
{
    const char* name;
    /// A piece of the text in the file that shows whether it has been saved.
    const char* before;
    const char* after;
    void (*prepare)(ProgramWorld& world);
    void (*act)(ProgramWorld& world);
    /// Boxes of a save that succeeds, and of one that fails.
    Boxes boxes;
    Boxes boxesOfFailure;
    /// What else is wrong in the window; null for nothing to look at.
    const char* (*verdict)(ProgramWorld& world, bool isSaved) = nullptr;
};

QString FirstStartSettings()
{
    return SettingsText().replace(QStringLiteral(R"(FirstRun="false" pid="P-77")"),
                                  QStringLiteral(R"(FirstRun="true" pid="")"));
}

void StartWith(ProgramWorld& world)
{
    world.Start();
}

void StartAndOpenAlerts(ProgramWorld& world)
{
    world.Start();
    world.Click(FrmMain::kName, "LblAlertsLink");
}

void StartAndOpenPlaces(ProgramWorld& world)
{
    world.Start();
    world.Click(FrmMain::kName, "LblLocLink");
    auto& list = world.Find<ListBox>(FrmLocation::kName, "LstLocations");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(1)).center());
}

void StartAndFindCairo(ProgramWorld& world)
{
    world.platform.http.replies[QStringLiteral("getStates.pl")] =
        "<root><a state=\"Egypt\" state_id=\"20\"/></root>";
    world.platform.http.replies[QStringLiteral("getUsCanCity.pl")] =
        "<root><a city=\"Cairo\" atlas_id=\"EG-1\"/></root>";
    world.platform.http.replies[QStringLiteral("getCityInfo.pl")] =
        "<root><Cairo city=\"Cairo\" state=\"Egypt\" longitude_final=\"31.25\" latitude_final=\"30.05\" "
        "time_zone2=\"2\"/></root>";
    world.Start();
    world.Click(FrmMain::kName, "LblLocLink");
    world.Click(FrmLocation::kName, "LblNewLocLink");
    QTest::keyClicks(&world.Find(FrmNewLoc::kName, "TxtZipCode"), QStringLiteral("1"));
    world.Click(FrmNewLoc::kName, "LblGetLink");
    auto& results = world.Find<ListBox>(FrmNewLoc::kName, "LstSearchResults");
    QTest::mouseClick(results.viewport(), Qt::LeftButton, {},
                      results.visualItemRect(results.item(0)).center());
}

void StartAndOpenMobilePage(ProgramWorld& world, const char* did, const char* pc, const char* confirm)
{
    WriteSettings(SettingsText().replace(
        QStringLiteral(R"(mobileEnabled="false" mobileDID="" mobilePC="" mobileConfirm="0")"),
        QStringLiteral(R"(mobileEnabled="true" mobileDID="%1" mobilePC="%2" mobileConfirm="%3")")
            .arg(QLatin1String(did), QLatin1String(pc), QLatin1String(confirm))));
    world.platform.http.replies[QStringLiteral("confirmSignup.pl")] =
        "<root result=\"1\" message=\"Welcome\"/>";
    StartAndOpenAlerts(world);
    world.Click(FrmAlerts::kName, "LblMobilAlert");
}

const Deed kDeeds[] = {
    {"the first start",
     R"(FirstRun="true" pid="")",
     R"(FirstRun="false" pid="P-1")",
     [](ProgramWorld& world) {
         WriteSettings(FirstStartSettings());
         world.platform.http.replies[QStringLiteral("requestProdID.pl")] = "<root prod_string=\"P-1\"/>";
     },
     StartWith,
     {},
     {kError5},
     [](ProgramWorld& world, bool isSaved) -> const char* {
         return world.platform.process.ended == (isSaved ? 0 : 1) ? nullptr : "ended or not";
     }},
    {"an option of the dialog",
     R"(hourmode="24")",
     R"(hourmode="12")",
     StartAndOpenAlerts,
     [](ProgramWorld& world) { world.Click(FrmAlerts::kName, "Opt12Hour"); },
     {},
     {},
     [](ProgramWorld& world, bool isSaved) -> const char* {
         if (!world.IsUp(FrmAlerts::kName)) {
             return "the dialog is gone";
         }
         world.Click(FrmAlerts::kName, "CmdClose");
         return world.Main().Variables().Settings.HourMode == (isSaved ? u"12" : u"24") ? nullptr
                                                                                        : "another hour mode";
     }},
    {"the choice of a place",
     R"(Current="Chicago")",
     R"(Current="Makkah")",
     StartAndOpenPlaces,
     [](ProgramWorld& world) { world.Click(FrmLocation::kName, "CmdSet"); },
     {},
     {},
     [](ProgramWorld& world, bool isSaved) -> const char* {
         if (world.Loaded(FrmLocation::kName) != nullptr) {
             return "the list is still there";
         }
         const QLatin1String place(isSaved ? "Makkah, Saudi Arabia" : "Chicago, Illinois");
         return world.Text("LblLocation") == place ? nullptr : "another place";
     }},
    {"the deletion of a place",
     "<Makkah ",
     "</locations>",
     StartAndOpenPlaces,
     [](ProgramWorld& world) {
         world.platform.boxes.answers.push_back(true);
         world.Click(FrmLocation::kName, "CmdDel");
     },
     {kDeleteQuestion},
     {kDeleteQuestion},
     [](ProgramWorld& world, bool isSaved) -> const char* {
         const auto& list = world.Find<ListBox>(FrmLocation::kName, "LstLocations");
         return list.count() == (isSaved ? 1 : 2) ? nullptr : "another list";
     }},
    {"the addition of a place",
     "time_zone2=\"3\"/>\n  </locations>",
     "<Cairo ",
     StartAndFindCairo,
     [](ProgramWorld& world) { world.Click(FrmNewLoc::kName, "CmdAdd"); },
     {},
     {},
     [](ProgramWorld& world, bool isSaved) -> const char* {
         const auto& list = world.Find<ListBox>(FrmLocation::kName, "LstLocations");
         if (world.Loaded(FrmNewLoc::kName) != nullptr) {
             return "the search is still there";
         }
         return list.count() == (isSaved ? 3 : 2) ? nullptr : "another list";
     }},
    {"a registration",
     R"(mobileConfirm="0")",
     R"(mobileConfirm="1")",
     [](ProgramWorld& world) { StartAndOpenMobilePage(world, "15551234", "5521", "0"); },
     [](ProgramWorld& world) { world.Click(FrmAlerts::kName, "CmdMobilReg"); },
     {kWelcome},
     {kWelcome},
     // The service has confirmed, so the form locks; the file tells otherwise at the next opening.
     [](ProgramWorld& world, bool /*isSaved*/) -> const char* {
         return world.Find(FrmAlerts::kName, "TxtMDID").isEnabled() ? "the form is open" : nullptr;
     }},
    {"the reset of a registration",
     R"(mobileConfirm="1")",
     R"(mobileConfirm="0")",
     [](ProgramWorld& world) { StartAndOpenMobilePage(world, "", "", "1"); },
     [](ProgramWorld& world) {
         world.platform.boxes.answers.push_back(true);
         world.Click(FrmAlerts::kName, "LblReset");
     },
     {kResetQuestion},
     {kResetQuestion},
     [](ProgramWorld& world, bool /*isSaved*/) -> const char* {
         return world.Find(FrmAlerts::kName, "TxtMDID").isEnabled() ? nullptr : "the form is locked";
     }},
    {"No to a new version",
     R"(remind="")",
     R"(remind="93")",
     [](ProgramWorld& world) {
         // Without an ad the program takes itself for offline and does not ask.
         world.platform.http.replies[QStringLiteral("getAd.pl")] = "<root ad_url=\"QQ==\" wait_time=\"10\"/>";
         world.platform.http.replies[QStringLiteral("version.pl")] =
             "<root version_name=\"2\" version_sequence=\"1\" download_url=\"http://service/new\"/>";
     },
     StartWith,
     {kVersionQuestion},
     {kVersionQuestion}},
};

/// One deed whose save meets the fault.
class Encounter
{
public:
    explicit Encounter(const Deed& deed)
        : m_deed(deed)
    {
        m_deed.prepare(m_world);
        m_before = ReadSettings();
    }

    [[nodiscard]] std::vector<std::string> Calls()
    {
        m_deed.act(m_world);
        return m_files.saves == 1 ? m_files.calls : std::vector<std::string>();
    }

    std::string Meet(const Fault& fault)
    {
        m_files.fault = fault;
        m_deed.act(m_world);
        m_files.fault.reset();
        std::string wrong;
        const QByteArray content = ReadSettings();
        const bool isSaved = content != m_before;
        if (isSaved && (content.contains(m_deed.before) || !content.contains(m_deed.after) ||
                        !content.endsWith("</root>\n"))) {
            wrong += "not whole; ";
        }
        if (!isSaved && fault.error == EINTR) {
            wrong += "lost to a signal; ";
        }
        if (m_world.platform.boxes.boxes != (isSaved ? m_deed.boxes : m_deed.boxesOfFailure)) {
            wrong += "other boxes; ";
        }
        if (const char* const more = m_deed.verdict == nullptr ? nullptr : m_deed.verdict(m_world, isSaved)) {
            wrong += more;
        }
        if (m_files.calls.at(static_cast<std::size_t>(fault.call)) != "unlink" &&
            !QDir().entryList({QStringLiteral("*.saving-*")}).isEmpty()) {
            wrong += "litter; ";
        }
        return wrong;
    }

private:
    const Deed& m_deed;
    FaultyFiles m_files;
    ProgramWorld m_world{m_files};
    QByteArray m_before;
};

TEST(ProgramFaults, eachSaveOfTheProgram_whateverCallFails_isMadeOrLost_asItIsMeantTo)
{
    int injected = 0;
    int survived = 0;
    for (const Deed& deed : kDeeds) {
        const std::vector<std::string> calls = Encounter(deed).Calls();
        ASSERT_FALSE(calls.empty()) << deed.name << ": one save is expected";
        for (int call = 0; call < static_cast<int>(calls.size()); ++call) {
            for (const int error : kErrorsOfASave) {
                Encounter encounter(deed);
                const std::string wrong = encounter.Meet({call, error});
                ++injected;
                survived += wrong.empty() ? 1 : 0;
                EXPECT_EQ(wrong, "") << deed.name << ": call " << call << ", "
                                     << calls.at(static_cast<std::size_t>(call)) << ", "
                                     << std::strerror(error);
            }
        }
    }
    std::printf("figure: faults in the program's saves: injected %d, survived %d\n", injected, survived);
}

} // namespace
