// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmallTables.h"
#include "places/Places.h"
#include "places/PlacesError.h"
#include "server/ErrorOf.h"
#include "server/FileSizeLimit.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

using beacond::ImportReport;
using beacond::Places;

namespace {

std::string Reason(const PlaceLine& line)
{
    const TemporaryFolder folder;
    const ImportReport report =
        SmallTables{.places = PlaceLine{.id = "7", .name = "Good"}.Text() + line.Text()}.Import(folder);
    EXPECT_EQ(report.places, 1U + report.skipped.empty());
    return report.skipped.empty() ? "" : report.skipped.begin()->first;
}

std::vector<std::string> Ids(const std::vector<beacond::Match>& matches)
{
    std::vector<std::string> ids;
    for (const beacond::Match& match : matches)
        ids.push_back(match.atlasId);
    return ids;
}

/// The names of the places file, the previous file and unfinished files.
std::ptrdiff_t PlacesFilesIn(const TemporaryFolder& folder)
{
    const std::filesystem::directory_iterator files(folder / "");
    return std::count_if(begin(files), end(files), [](const auto& entry) {
        return entry.path().filename().string().starts_with("places.bin");
    });
}

} // namespace

TEST(Importer, Import_invalidRow_isSkippedAndCounted)
{
    EXPECT_EQ(Reason({}), "");
    EXPECT_EQ(Reason({.id = "x"}), "place: its id is not a number above 0");
    EXPECT_EQ(Reason({.id = "0"}), "place: its id is not a number above 0");
    EXPECT_EQ(Reason({.id = "7"}), "place: its id is there already");
    EXPECT_EQ(Reason({.name = "Good"}), "place: a place of that name at the same point is there already");
    EXPECT_EQ(Reason({.name = ""}), "place: its name is not valid text");
    EXPECT_EQ(Reason({.name = "\xC3("}), "place: its name is not valid text");
    EXPECT_EQ(Reason({.name = "--"}), "place: its name is not valid text");
    for (const char* degrees : {"90.1", "nan", "", "1e9", "10N"})
        EXPECT_EQ(Reason({.latitude = degrees}), "place: latitude or longitude out of range") << degrees;
    EXPECT_EQ(Reason({.longitude = "-180.5"}), "place: latitude or longitude out of range");
    EXPECT_EQ(Reason({.zone = "Mars/Olympus"}), "place: unknown time zone");
    EXPECT_EQ(Reason({.country = "ZZ"}), "place: unknown country");
    EXPECT_EQ(Reason({.name = "Tab\tTab"}), "place: not 19 columns");
}

TEST(Importer, Import_record_holdsTheRow)
{
    const TemporaryFolder folder;
    (void)SmallTables{.places = PlaceLine{.elevation = "182", .surface = "190"}.Text() +
                                PlaceLine{.id = "2",
                                          .name = "Riyadh",
                                          .latitude = "24.68773",
                                          .longitude = "46.72185",
                                          .country = "SA",
                                          .division = "10",
                                          .zone = "Asia/Riyadh",
                                          .surface = "612"}
                                    .Text() +
                                PlaceLine{.id = "3", .name = "Hole", .surface = "-9999"}.Text()}
        .Import(folder);
    const auto places = Places::Open(folder / "places.bin");
    const auto springfield = places->ByAtlasId("US-G1");
    ASSERT_TRUE(springfield);
    EXPECT_EQ(springfield->key, "G1");
    EXPECT_EQ(springfield->atlasId, "US-G1");
    EXPECT_EQ(springfield->city, "Springfield");
    EXPECT_EQ(springfield->state, "Illinois");
    EXPECT_EQ(springfield->country, "US");
    EXPECT_EQ(springfield->elevation, 182);
    EXPECT_EQ(springfield->timeZone, "America/Chicago");
    const auto riyadh = places->ByAtlasId("SA-G2");
    ASSERT_TRUE(riyadh);
    EXPECT_EQ(riyadh->state, "Saudi Arabia");
    EXPECT_DOUBLE_EQ(riyadh->latitude, 24.68773);
    EXPECT_DOUBLE_EQ(riyadh->longitude, 46.72185);
    EXPECT_EQ(riyadh->elevation, 612);
    EXPECT_EQ(places->ByAtlasId("US-G3")->elevation, std::nullopt);
}

TEST(Importer, Import_overlay_corrects)
{
    const TemporaryFolder folder;
    const ImportReport report =
        SmallTables{
            .places =
                PlaceLine{.name = "Mecca", .latitude = "21.4", .longitude = "39.8", .country = "SA"}.Text() +
                PlaceLine{.id = "2", .name = "Jerusalem", .country = "IL"}.Text() +
                PlaceLine{.id = "3", .name = "Ghost Town"}.Text() + PlaceLine{.id = "4"}.Text(),
            .overlay =
                "# a comment\nname\t1\tMakkah\nalias\t1\tBakkah\nzone\t1\tAsia/Riyadh\nelevation\t1\t277\n"
                "listed\t2\tPS\nlisted\tIL\tDE\nhidden\t3\nname\t99\tNowhere\ncolour\t1\tgreen\nlisted\t2\tXX"
                "\n"}
            .Import(folder);
    EXPECT_THAT(SkippedRowsOf(report),
                testing::ElementsAre(
                    std::pair("overlay: no such place", 1U),
                    std::pair("overlay: no such place or region, or its country lists it already", 1U),
                    std::pair("overlay: unknown action or wrong value", 1U)));
    const auto places = Places::Open(folder / "places.bin");
    for (const char* letters : {"makk", "mecc", "bakk"})
        EXPECT_EQ(places->Search("SA", letters, 1).at(0).city, "Makkah") << letters;
    EXPECT_EQ(places->ByAtlasId("SA-G1")->timeZone, "Asia/Riyadh");
    EXPECT_EQ(places->ByAtlasId("SA-G1")->elevation, 277);
    EXPECT_EQ(places->Search("IL", "jer", 1).at(0).atlasId, "IL-G2");
    for (const char* state : {"PS", "DE"})
        EXPECT_THAT(Ids(places->Search(state, "jer", 9)), testing::ElementsAre("IL-G2")) << state;
    EXPECT_EQ(places->Count("US", "ghost"), 0U);
    EXPECT_TRUE(places->ByAtlasId("US-G3")) << "clients that have it ask for it";
}

TEST(Importer, Import_overlayPopulation_decidesTheOrder)
{
    const TemporaryFolder folder;
    const ImportReport report =
        SmallTables{.places = PlaceLine{.name = "Conakry", .population = "1700000"}.Text() +
                              PlaceLine{.id = "2", .name = "Conacry", .population = "1900000"}.Text(),
                    .overlay = "population\t2\t0\npopulation\t1\tmany\n"}
            .Import(folder);
    EXPECT_THAT(SkippedRowsOf(report),
                testing::ElementsAre(std::pair("overlay: unknown action or wrong value", 1U)));
    EXPECT_THAT(Ids(Places::Open(folder / "places.bin")->Search("US", "cona", 9)),
                testing::ElementsAre("US-G1", "US-G2"));
}

TEST(Importer, Import_overlayZoneOfARegion_isTheZoneOfItsPlaces)
{
    const TemporaryFolder folder;
    const ImportReport report =
        SmallTables{.places =
                        PlaceLine{}.Text() + PlaceLine{.id = "2", .latitude = "31", .division = "TX"}.Text(),
                    .overlay = "zone\tUS.TX\tAmerica/Denver\nzone\tUS.XX\tAmerica/Denver\nzone\tUS\tMars\n"}
            .Import(folder);
    const Places places(folder / "places.bin");
    EXPECT_EQ(places.ByAtlasId("US-G1")->timeZone, "America/Chicago");
    EXPECT_EQ(places.ByAtlasId("US-G2")->timeZone, "America/Denver");
    EXPECT_EQ(SkippedRowsOf(report)["overlay: no such zone or region"], 2U);
}

TEST(Importer, Import_overlayPlace_isAdded)
{
    const TemporaryFolder folder;
    const ImportReport report =
        SmallTables{.places = PlaceLine{}.Text(),
                    .overlay = "place\t" + PlaceLine{.id = "4000000001", .name = "Eucla"}.Text() +
                               "spelling\t4000000001\tYircla\nplace\t7\tTorn\n"}
            .Import(folder);
    const Places places(folder / "places.bin");
    EXPECT_THAT(Ids(places.Search("US-IL", "yirc", 9)), testing::ElementsAre("US-G4000000001"));
    EXPECT_THAT(SkippedRowsOf(report), testing::ElementsAre(std::pair("place: not 19 columns", 1U)));
}

TEST(Importer, Import_overlaySpelling_countsMoreThanAnAlias)
{
    const TemporaryFolder folder;
    (void)SmallTables{
        .places =
            PlaceLine{.name = "Munich", .aliases = "München", .country = "DE", .population = "9000"}.Text() +
            PlaceLine{.id = "2", .name = "Mügeln", .country = "DE", .population = "800"}.Text() +
            PlaceLine{.id = "3", .name = "Mecca", .country = "SA", .population = "9000"}.Text() +
            PlaceLine{.id = "4", .name = "Mexico Bay", .country = "SA", .population = "800"}.Text(),
        .overlay = "spelling\t1\tMünchen\nname\t3\tMakkah\n"}
        .Import(folder);
    const auto places = Places::Open(folder / "places.bin");
    EXPECT_THAT(Ids(places->Search("DE", "mü", 9)), testing::ElementsAre("DE-G1", "DE-G2"));
    EXPECT_EQ(places->ByAtlasId("DE-G1")->city, "Munich");
    EXPECT_THAT(Ids(places->Search("SA", "me", 9)), testing::ElementsAre("SA-G3", "SA-G4"))
        << "the former name of a place is a spelling";
}

TEST(Importer, Import_placeListedAgainInItsCountry_isListedOnce)
{
    const TemporaryFolder folder;
    (void)SmallTables{.places = PlaceLine{.name = "Jerusalem", .country = "IL"}.Text() +
                                PlaceLine{.id = "2"}.Text(),
                      .overlay = "listed\t1\tPS\nlisted\tIL\tPS\nlisted\t1\tIL\nlisted\t2\tUS-TX\n"}
        .Import(folder);
    const Places places(folder / "places.bin");
    EXPECT_EQ(places.Count("PS", "jer"), 1U);
    EXPECT_EQ(places.Count("IL", "jer"), 1U);
    EXPECT_EQ(places.Count("US", "spr"), 1U);
}

TEST(Importer, Import_invalidRegion_isSkippedAndCounted)
{
    const TemporaryFolder folder;
    const ImportReport report =
        SmallTables{
            .places = PlaceLine{.country = "DE"}.Text(),
            .regions = "DE\tDE\tGermany\nDE-BY\tDE.02\tBavaria\nUS\tUS \tUnited States\nUS-TX\tUS.TX\tTexas\n"
                       "DEBE\tDE.16\tBerlin\nDE-HH\tDE\tHamburg\nDE-HE\tDEHE\tHesse\n"}
            .Import(folder);
    EXPECT_THAT(SkippedRowsOf(report),
                testing::UnorderedElementsAre(testing::Pair("region: not id, code and name", 4U),
                                              testing::Pair("region: a state without its country", 1U)));
    const Places places(folder / "places.bin");
    ASSERT_EQ(places.States().size(), 1U);
    EXPECT_EQ(places.States().front().id, "DE");
}

TEST(Importer, Import_shippedPlace_keepsKeyIdentifierAndNames)
{
    const TemporaryFolder folder;
    const ImportReport report =
        SmallTables{
            .places = PlaceLine{.name = "New York City", .division = "NY"}.Text(),
            .shipped =
                "New_York\tUS-New_York\t1\tNew York\tUnited States\nAtlantis\tXX-Atlantis\t9\tAtlantis\tSea\n"
                "alerts\tXX-x\t1\tx\tx\n"}
            .Import(folder);
    EXPECT_EQ(report.skipped.size(), 2U);
    const auto places = Places::Open(folder / "places.bin");
    EXPECT_EQ(places->Search("US", "york", 1).at(0).city, "New York");
    EXPECT_EQ(places->Search("US", "new york city", 1).at(0).atlasId, "US-New_York");
    for (const char* id : {"US-New_York", "US-G1"}) {
        const auto place = places->ByAtlasId(id);
        ASSERT_TRUE(place) << id;
        EXPECT_EQ(place->key, "New_York");
        EXPECT_EQ(place->atlasId, "US-New_York");
        EXPECT_EQ(place->state, "United States");
    }
}

TEST(Importer, Import_failure_leavesTheOldFileAndNoOther)
{
    const TemporaryFolder folder;
    (void)SmallTables{.places = PlaceLine{}.Text()}.Import(folder);
    const std::string before = Read(folder / "places.bin");
    EXPECT_THROW((void)SmallTables{.places = "no table\n"}.Import(folder), beacond::PlacesError);
    EXPECT_EQ(Read(folder / "places.bin"), before);

    std::filesystem::create_directory(folder / "sub");
    Write(folder / "sub/file", "");
    const beacond::ImportSources sources = SmallTables::Sources(folder);
    Write(folder / "places.tsv", PlaceLine{}.Text());
    EXPECT_THROW((void)beacond::ImportPlaces(sources, folder / "sub"), beacond::PlacesError)
        << "a folder can't be replaced";
    EXPECT_THROW((void)beacond::ImportPlaces(sources, folder / "none/places.bin"), beacond::PlacesError);
    EXPECT_EQ(PlacesFilesIn(folder), 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "sub"), {}), 1);
}

TEST(Importer, Import_again_keepsThePreviousFile)
{
    const TemporaryFolder folder;
    for (const char* name : {"First", "Second", "Third"})
        (void)SmallTables{.places = PlaceLine{.name = name}.Text()}.Import(folder);
    EXPECT_EQ(Places::Open(folder / "places.bin.previous")->Count("US", "second"), 1U);
    EXPECT_EQ(Places::Open(folder / "places.bin")->Count("US", "third"), 1U);

    // After an import that ended between its two renames one file has both names.
    std::filesystem::remove(folder / "places.bin.previous");
    std::filesystem::create_hard_link(folder / "places.bin", folder / "places.bin.previous");
    (void)SmallTables{.places = PlaceLine{.name = "Fourth"}.Text()}.Import(folder);
    EXPECT_EQ(Places::Open(folder / "places.bin.previous")->Count("US", "third"), 1U);
    EXPECT_EQ(Places::Open(folder / "places.bin")->Count("US", "fourth"), 1U);
    EXPECT_EQ(PlacesFilesIn(folder), 2);
}

TEST(Importer, Import_fullDisk_leavesBothFilesAndNoOther)
{
    const TemporaryFolder folder;
    for (const char* name : {"First", "Second"})
        (void)SmallTables{.places = PlaceLine{.name = name}.Text()}.Import(folder);
    const SmallTables tables{.places = PlaceLine{.name = "Third", .aliases = std::string(800, 'a')}.Text()};
    {
        const FileSizeLimit fullDisk(1024); // the tables are smaller, the places file is larger
        EXPECT_THROW((void)tables.Import(folder), beacond::PlacesError);
    }
    EXPECT_EQ(Places::Open(folder / "places.bin")->Count("US", "second"), 1U);
    EXPECT_EQ(Places::Open(folder / "places.bin.previous")->Count("US", "first"), 1U);
    EXPECT_EQ(PlacesFilesIn(folder), 2);
}

TEST(Importer, Import_killedAtAnyMoment_leavesAWholeFile)
{
    const TemporaryFolder folder;
    const TemporaryFolder other;
    (void)SmallTables{.places = PlaceLine{.name = "First"}.Text()}.Import(folder);
    (void)SmallTables{.places = PlaceLine{.name = "Second"}.Text()}.Import(other);
    constexpr int kRounds = 25;
    for (int round = 0; round < kRounds; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) {
                (void)beacond::ImportPlaces(SmallTables::Sources(other), folder / "places.bin");
                (void)beacond::ImportPlaces(SmallTables::Sources(folder), folder / "places.bin");
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(700 * round));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const auto places = Places::Open(folder / "places.bin");
        ASSERT_EQ(places->Count("US", "first") + places->Count("US", "second"), 1U);
    }
    (void)beacond::ImportPlaces(SmallTables::Sources(folder), folder / "places.bin");
    EXPECT_EQ(PlacesFilesIn(folder), 2) << "the next import removes unfinished files";
}

TEST(Importer, Import_besideAnother_isRefused)
{
    const TemporaryFolder folder;
    const SmallTables tables{.places = PlaceLine{}.Text()};
    (void)tables.Import(folder);
    const int file = ::open((folder / "places.bin.new").c_str(), O_CREAT | O_WRONLY, 0600);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    EXPECT_THROW((void)tables.Import(folder), beacond::PlacesError);
    EXPECT_TRUE(std::filesystem::exists(folder / "places.bin.new")) << "it belongs to the other import";
    ::close(file);
    EXPECT_EQ(tables.Import(folder).places, 1U);
}

TEST(Importer, Import_truncatedCompressedTable_throwsTheReason)
{
    const TemporaryFolder folder;
    const std::string packed = Read(std::filesystem::path(PLACES_DATA) / "divisions.tsv.xz");
    Write(folder / "divisions.tsv.xz", packed.substr(0, packed.size() / 2));
    (void)SmallTables{.places = PlaceLine{}.Text()}.Import(folder);
    beacond::ImportSources sources = SmallTables::Sources(folder);
    sources.divisions = folder / "divisions.tsv.xz";
    EXPECT_EQ(ErrorOf<beacond::PlacesError>([&] { return ImportPlaces(sources, folder / "places.bin"); }),
              folder.File("divisions.tsv.xz") + ": damaged or cut off");
}
