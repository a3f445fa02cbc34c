// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DumpsFixture.h"
#include "Packing.h"

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

std::string Replaced(std::string text, std::string_view old, std::string_view other)
{
    return text.replace(text.find(old), old.size(), other);
}

std::string AlternateLine(const char* id, const char* language, const char* name)
{
    return std::string("1\t") + id + "\t" + language + "\t" + name + "\t\t\t\t\t\t\n";
}

} // namespace

TEST_F(DumpsTest, Places_knownAndNewRows_replaceAndAdd)
{
    tables.places += PlaceLine{.id = "2", .name = "Riyadh", .latitude = "24.6", .country = "SA"}.Text();
    tables.shipped = "Riyadh\tSA-Riyadh\t2\tRiyadh\tSaudi Arabia\n";
    const ImportReport report = Import(
        {PlaceLine{.name = "Springfield City", .latitude = "39.9", .population = "2000", .elevation = "9"}
             .Text() +
         PlaceLine{.id = "3", .name = "Chicago", .latitude = "41.9"}.Text()});
    EXPECT_EQ(report.places, 3U);
    EXPECT_THAT(SkippedRowsOf(report), IsEmpty());
    ASSERT_EQ(report.tables.size(), 1U);
    EXPECT_EQ(report.tables.front().kind, "places");
    EXPECT_EQ(report.tables.front().rows, 2U);
    const auto springfield = places->ByAtlasId("US-G1");
    ASSERT_TRUE(springfield);
    EXPECT_EQ(springfield->city, "Springfield City");
    EXPECT_DOUBLE_EQ(springfield->latitude, 39.9);
    EXPECT_EQ(springfield->elevation, 9);
    EXPECT_TRUE(places->ByAtlasId("US-G3"));
    EXPECT_EQ(places->ByAtlasId("SA-Riyadh")->key, "Riyadh") << "no newer row";
    tables.places = PlaceLine{.name = "Old Name"}.Text();
    (void)Import({PlaceLine{.name = "Newtown"}.Text()});
    EXPECT_THAT(Cities("US", "old name"), ElementsAre("Newtown"));
}

TEST_F(DumpsTest, Places_newIdentifierAtTheSamePoint_keepsTheOldOne)
{
    const ImportReport report = Import({PlaceLine{.id = "9"}.Text()});
    EXPECT_THAT(SkippedRowsOf(report),
                ElementsAre(Pair("place: a place of that name at the same point is there already", 1U)));
    EXPECT_EQ(places->Search("US", "spr", 9).at(0).atlasId, "US-G1");
}

TEST_F(DumpsTest, Places_replacedAwayFromItsPoint_leavesItToAnother)
{
    (void)Import({PlaceLine{.latitude = "38"}.Text() + PlaceLine{.id = "9"}.Text()});
    EXPECT_EQ(places->Count("US", "spr"), 2U);
}

TEST_F(DumpsTest, Places_oneIdentifierTwice_takesTheLaterRow)
{
    const ImportReport report =
        Import({PlaceLine{.id = "9", .name = "First"}.Text() + PlaceLine{.id = "9", .name = "Second"}.Text(),
                PlaceLine{.id = "9", .name = "Third"}.Text()});
    EXPECT_EQ(report.places, 2U);
    EXPECT_EQ(places->ByAtlasId("US-G9")->city, "Third");
}

TEST_F(DumpsTest, Places_otherFeatures_areSkipped)
{
    const std::string line = PlaceLine{.id = "9", .name = "Other"}.Text();
    for (const char* feature : {"\tT\tMT\t", "\tP\tPPLQ\t", "\tP\tPPLH\t"}) {
        const ImportReport report = Import({Replaced(line, "\tP\tPPL\t", feature)});
        EXPECT_THAT(SkippedRowsOf(report), ElementsAre(Pair("place: not a populated place", 1U))) << feature;
    }
}

TEST_F(DumpsTest, Places_rowWithoutARegion_keepsItsRegion)
{
    (void)Import({PlaceLine{.division = "", .population = "5"}.Text()});
    EXPECT_THAT(Cities("US-IL", "spr"), ElementsAre("Springfield"));
}

TEST_F(DumpsTest, Regions_newName_replacesTheOldOne)
{
    tables.places += PlaceLine{.id = "2", .latitude = "30", .division = "TX"}.Text();
    (void)Import({"US.IL\tLand of Lincoln\tLand of Lincoln\t4896861\n"});
    EXPECT_THAT(Cities("US", "spr"), ElementsAre("Springfield (Land of Lincoln)", "Springfield (Texas)"));
}

TEST_F(DumpsTest, AlternateNames_ofALanguage_findThePlace)
{
    const ImportReport report =
        Import({AlternateLine("1", "ar", "سبرينغفيلد") + AlternateLine("1", "", "Flower City") +
                AlternateLine("1", "zh-Hant", "春田市") + AlternateLine("1", "piny", "Chuntian, Shi") +
                AlternateLine("1", "link", "https://example.org/wiki") + AlternateLine("1", "post", "62701") +
                AlternateLine("1", "iata", "SPI") + AlternateLine("7", "en", "Nowhere") +
                AlternateLine("1", "en", "\xC3(") + "x\ty\n" + AlternateLine("1", "en", "Springfield")});
    for (const char* letters : {"سبرينغ", "flower", "春田", "chuntian shi"})
        EXPECT_THAT(Cities("US", letters), ElementsAre("Springfield")) << letters;
    EXPECT_EQ(places->Count("US", "spi") + places->Count("US", "https"), 0U);
    EXPECT_THAT(SkippedRowsOf(report),
                ElementsAre(Pair("alternate name: a code or a link", 3U),
                            Pair("alternate name: not 8 columns with the id of a place", 1U),
                            Pair("alternate name: not valid text", 1U),
                            Pair("alternate name: of no place in the tables", 1U)));
    EXPECT_EQ(report.skipped.at("alternate name: a code or a link").first,
              (folder / "dump0, line 5").string());
}

TEST_F(DumpsTest, AlternateNames_preferredAndHistoric_countMoreAndLess)
{
    tables.places = PlaceLine{.name = "Eins", .latitude = "50.0", .country = "DE"}.Text() +
                    PlaceLine{.id = "2", .name = "Zwei", .latitude = "51.0", .country = "DE"}.Text() +
                    PlaceLine{.id = "3", .name = "Drei", .latitude = "52.0", .country = "DE"}.Text() +
                    PlaceLine{.id = "4", .name = "Vier", .latitude = "53.0", .country = "DE"}.Text() +
                    PlaceLine{.id = "5", .name = "Acht", .latitude = "54.0", .country = "DE"}.Text();
    const auto line = [](const char* id, const char* language, const char* flags) {
        return std::string("1\t") + id + "\t" + language + "\tBurgstadt\t" + flags + "\t\t\n";
    };
    (void)Import({line("1", "de", "\t\t\t1") + line("2", "de", "\t\t\t") + line("3", "fr", "1\t\t\t") +
                  line("4", "de", "1\t\t\t") + line("5", "en", "\t1\t\t")});
    EXPECT_THAT(Cities("DE", "burgst"), ElementsAre("Vier", "Acht", "Zwei", "Drei", "Eins"));
}

TEST_F(DumpsTest, AlternateNames_tooManyForAPlace_areSkipped)
{
    std::string names;
    for (int i = 0; i < 100; ++i)
        names += AlternateLine("1", "en", (std::to_string(i) + std::string(1000, 'x')).c_str());
    EXPECT_THAT(SkippedRowsOf(Import({names})),
                ElementsAre(Pair("alternate name: its place has too many names", 35U)));
}

TEST_F(DumpsTest, ByteOrderMark_isSkipped)
{
    const ImportReport report = Import({"\xEF\xBB\xBF" + PlaceLine{.id = "9", .name = "First"}.Text()});
    EXPECT_THAT(Cities("US", "first"), ElementsAre("First"));
    EXPECT_THAT(SkippedRowsOf(report), IsEmpty());
}

TEST_F(DumpsTest, PackedFile_ofEachKind_isRead)
{
    const std::string line = PlaceLine{.id = "9", .name = "Packed"}.Text();
    for (const Packing packing : {Packing::Xz, Packing::Gzip, Packing::Bzip2, Packing::Zstd}) {
        (void)Import({Packed(packing, line)});
        EXPECT_THAT(Cities("US", "packed"), ElementsAre("Packed")) << static_cast<int>(packing);
        (void)Import({PlaceLine{}.Text()});
    }
    const ImportReport report =
        Import({Zipped({{"readme.txt", "A readme.\n"},
                        {"US.txt", line},
                        {"codes.txt", PostalLine("US", "62701", "", "39.8\t-89.6")}})});
    EXPECT_THAT(Cities("US", "packed"), ElementsAre("Packed"));
    EXPECT_FALSE(CitiesOfCode("62701").empty());
    std::vector<std::string> read;
    for (const beacond::ImportedTable& table : report.tables)
        read.push_back(table.name.substr((folder / "dump0: ").string().size()) + ", " + table.kind);
    EXPECT_THAT(read, ElementsAre("readme.txt, not a table of GeoNames, ignored", "US.txt, places",
                                  "codes.txt, postal codes"));
}

TEST_F(DumpsTest, UnusableFile_isRefusedWithTheReason)
{
    const std::string line = PlaceLine{.id = "9"}.Text();
    const std::string packed = Packed(Packing::Gzip, line + std::string(100'000, '#'));
    const std::string zipped = Zipped({{"US.txt", line}});
    std::vector<std::pair<std::string, std::string>> many;
    for (int i = 0; i < 101; ++i)
        many.emplace_back(std::to_string(i), line);
    const std::pair<std::string, const char*> rows[] = {
        {"", "not a table of GeoNames"},
        {"a\tb\tc\n", "not a table of GeoNames"},
        {std::string(2'000, '\0'), "not a table of GeoNames"},
        {"ISO 639-3\tISO 639-2\tISO 639-1\tLanguage Name\n", "not a table of GeoNames"},
        {line + std::string(600'000, 'x'), "line 2 is longer than 256 KiB"},
        {packed.substr(0, packed.size() / 2), "damaged or cut off"},
        {zipped.substr(0, 80), "damaged or cut off"},
        {Zipped(many), "more than 100 files in it"},
    };
    for (const auto& [content, reason] : rows)
        EXPECT_EQ(ReasonToRefuse(content), reason) << content.substr(0, 20);
    std::filesystem::remove(folder / "places.bin");
    std::filesystem::remove(folder / "dump0");
    EXPECT_THROW((void)tables.Import(folder, {folder / "dump0"}), beacond::PlacesError);
    EXPECT_THROW((void)tables.Import(folder, {folder / ""}), beacond::PlacesError);
    EXPECT_FALSE(std::filesystem::exists(folder / "places.bin"));
}

TEST_F(DumpsTest, HostileRows_areSkipped)
{
    const std::string before = PlaceLine{.id = "8", .name = "Before"}.Text();
    const std::string after = PlaceLine{.id = "9", .name = "After"}.Text();
    const std::string hostile[] = {
        std::string(5000, '\t') + "\n",
        "\xFF\xFE\xFD\n",
        PlaceLine{.id = "7", .name = std::string("a\0b", 3)}.Text(),
        PlaceLine{.id = "7", .name = "\x1B[31mred"}.Text(),
        PlaceLine{.id = "99999999999999999999", .name = "Big"}.Text(),
        PlaceLine{.id = "-1", .name = "Negative"}.Text(),
        PlaceLine{.id = "7", .name = "Far", .latitude = "1e999"}.Text(),
    };
    for (const std::string& line : hostile) {
        const ImportReport report = Import({before + line + after});
        EXPECT_EQ(report.places, 3U) << line.substr(0, 40);
        ASSERT_EQ(report.skipped.size(), 1U);
        EXPECT_EQ(report.skipped.begin()->second.first, (folder / "dump0, line 2").string());
    }
    (void)Import({before + PlaceLine{.id = "7",
                                     .name = "Odd",
                                     .population = "99999999999999999999",
                                     .elevation = "1e5",
                                     .surface = "99999"}
                               .Text()});
    EXPECT_EQ(places->ByAtlasId("US-G7")->elevation, std::nullopt);
}
