// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Packing.h"
#include "SmallTables.h"
#include "places/Places.h"
#include "places/PlacesError.h"

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

using beacond::ImportReport;
using beacond::Places;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

/// Imports small tables, and files of the operator with these contents.
class DumpsTest : public testing::Test
{
protected:
    ImportReport Import(const std::vector<std::string>& contents)
    {
        std::vector<std::filesystem::path> dumps;
        for (std::size_t i = 0; i < contents.size(); ++i) {
            dumps.push_back(folder / ("dump" + std::to_string(i)));
            Write(dumps.back(), contents[i]);
        }
        ImportReport report = tables.Import(folder, dumps);
        places = Places::Open(folder / "places.bin");
        return report;
    }
    std::string ReasonToRefuse(const std::string& content)
    {
        try {
            (void)Import({content});
            return "";
        } catch (const beacond::PlacesError& error) {
            return std::string(error.what()).substr((folder / "dump0: ").string().size());
        }
    }
    std::vector<std::string> Cities(const char* state, const char* letters) const
    {
        return CitiesOf(places->Search(state, letters, 9));
    }
    std::vector<std::string> CitiesOfCode(const char* code) const { return CitiesOf(places->ByZip(code)); }

    static std::vector<std::string> CitiesOf(const std::vector<beacond::Match>& matches)
    {
        std::vector<std::string> cities;
        for (const beacond::Match& match : matches)
            cities.push_back(match.city);
        return cities;
    }

    const TemporaryFolder folder;
    SmallTables tables = {.places = PlaceLine{}.Text()};
    std::shared_ptr<const Places> places;
};

std::string Replaced(std::string text, std::string_view old, std::string_view other)
{
    return text.replace(text.find(old), old.size(), other);
}

std::string PostalLine(const char* country, const char* code, const char* name, const char* point)
{
    return std::string(country) + "\t" + code + "\t" + name + "\t\t\t\t\t\t\t" + point + "\t4\n";
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

TEST_F(DumpsTest, PostalCodes_ofOneCountry_replaceTheCodesOfThatCountryOnly)
{
    tables.places += PlaceLine{.id = "2", .name = "Toronto", .country = "CA"}.Text() +
                     PlaceLine{.id = "3", .name = "Ponce", .latitude = "18", .country = "PR"}.Text();
    tables.regions += "CA\tCA\tCanada\nPR\tPR\tPuerto Rico\n";
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6") + PostalLine("US", "00716", "", "18\t-89.6");
    (void)Import(
        {PostalLine("CA", "M5V 3L9", "Toronto", "39.8\t-89.6"), PostalLine("CA", "M5V", "", "39.8\t-89.6")});
    for (const char* code : {"62701", "62701-1234", "00716", "m5v3l9", "M5V", "M5V 1A1"})
        EXPECT_EQ(places->ByZip(code).size(), 1U) << code;
    (void)Import({PostalLine("US", "60601", "Springfield", "39.8\t-89.6")});
    EXPECT_THAT(CitiesOfCode("60601"), ElementsAre("Springfield"));
    EXPECT_THAT(CitiesOfCode("62701"), IsEmpty());
    EXPECT_THAT(CitiesOfCode("00716"), ElementsAre("Ponce")) << "a territory, which has a table of its own";
    (void)Import({PostalLine("US", "60601", "Springfield", "99\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62701"), ElementsAre("Springfield")) << "no usable row";
}

TEST_F(DumpsTest, PostalCodes_severalRowsOfACode_listEachPlaceOnceAndTheNamedOnesFirst)
{
    tables.places =
        PlaceLine{.name = "Altdorf", .latitude = "50.0", .country = "DE"}.Text() +
        PlaceLine{.id = "2", .name = "Neudorf", .latitude = "50.1", .country = "DE"}.Text() +
        PlaceLine{.id = "3", .name = "Stadt", .latitude = "50.05", .country = "DE", .population = "900000"}
            .Text();
    const ImportReport report = Import({PostalLine("DE", "97618", "Neudorf", "50.1\t-89.6") +
                                        PostalLine("DE", "97618", "Altdorf", "50\t-89.6")});
    EXPECT_THAT(CitiesOfCode("97618"), ElementsAre("Altdorf", "Neudorf", "Stadt"));
    EXPECT_EQ(report.codes, 1U);
}

TEST_F(DumpsTest, PostalCodes_ofSeveralCountries_nameTheCountryAndBeginWithTheUnitedStates)
{
    tables.places += PlaceLine{.id = "2", .latitude = "50.1", .country = "DE"}.Text();
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6");
    (void)Import({PostalLine("DE", "62701", "", "50.1\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62701"), ElementsAre("Springfield, United States", "Springfield, Germany"));
}

TEST_F(DumpsTest, PostalCodes_ofAreas_answerTheCodesInThem)
{
    tables.places = PlaceLine{.name = "London", .country = "GB"}.Text();
    tables.regions += "GB\tGB\tUnited Kingdom\n";
    (void)Import({PostalLine("GB", "SW1A", "", "39.8\t-89.6")});
    EXPECT_THAT(CitiesOfCode("sw1a 1aa"), ElementsAre("London"));
    EXPECT_THAT(CitiesOfCode("sw1b 1aa"), IsEmpty());
    tables.places = PlaceLine{.country = "DE"}.Text();
    (void)Import({PostalLine("DE", "1012", "", "39.8\t-89.6") + PostalLine("DE", "D02", "", "39.8\t-89.6") +
                  PostalLine("DE", "X1", "", "39.8\t-89.6")});
    for (const char* code : {"1012AB", "1012 A", "D02 X285"})
        EXPECT_THAT(CitiesOfCode(code), ElementsAre("Springfield")) << code;
    EXPECT_THAT(CitiesOfCode("x1 ab"), IsEmpty()) << "areas have three letters or more";
}

TEST_F(DumpsTest, PostalCodes_withoutAnArea_listThePlacesOfTheirNeighbours)
{
    tables.places += PlaceLine{.id = "2", .name = "Decatur", .latitude = "41"}.Text() +
                     PlaceLine{.id = "3", .name = "Peoria", .latitude = "45"}.Text();
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6") +
                    PostalLine("US", "62702", "", "41\t-89.6") + PostalLine("US", "62703", "", "41\t-89.6") +
                    PostalLine("US", "62790", "", "45\t-89.6");
    (void)Import({PostalLine("US", "627", "", "45\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62704"), IsEmpty()) << "a code of another length";
    tables.postal += PostalLine("US", "99999", "", "45\t-89.6");
    (void)Import({PlaceLine{}.Text()});
    EXPECT_THAT(CitiesOfCode("62704"), ElementsAre("Decatur", "Springfield")) << "that of most codes first";
    EXPECT_THAT(CitiesOfCode("62704-1234"), ElementsAre("Decatur", "Springfield"));
    EXPECT_THAT(CitiesOfCode("62788"), ElementsAre("Decatur", "Springfield", "Peoria")) << "of three digits";
    EXPECT_THAT(CitiesOfCode("62888"), IsEmpty());
    EXPECT_THAT(CitiesOfCode("٦٢٧٠١"), ElementsAre("Springfield")) << "digits of another script";
}

TEST_F(DumpsTest, PostalCodes_unknownZipThatAnotherCountryHas_beginWithTheNeighbours)
{
    tables.places += PlaceLine{.id = "2", .name = "Stadt", .latitude = "50.1", .country = "DE"}.Text();
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6");
    (void)Import({PostalLine("DE", "62702", "", "50.1\t-89.6") +
                  PostalLine("DE", "62703", "", "50.1\t-89.6") +
                  PostalLine("DE", "99999", "", "50.1\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62702"), ElementsAre("Springfield, United States", "Stadt, Germany"));
    EXPECT_THAT(CitiesOfCode("99999"), ElementsAre("Stadt"));
    EXPECT_THAT(CitiesOfCode("62704"), ElementsAre("Springfield")) << "only neighbours in the United States";
}

TEST_F(DumpsTest, PostalCodes_ofTheOverlay_areAdded)
{
    tables.overlay = "postal\t" + PostalLine("US", "73301", "Springfield", "39.8\t-89.6");
    EXPECT_THAT(SkippedRowsOf(Import({PlaceLine{}.Text()})), IsEmpty());
    EXPECT_THAT(CitiesOfCode("73344"), ElementsAre("Springfield"));
    (void)Import({PostalLine("US", "62701", "", "39.8\t-89.6")});
    EXPECT_THAT(CitiesOfCode("73301"), IsEmpty()) << "the operator's table has all codes";
}

TEST_F(DumpsTest, PostalCodes_ofBrazil_belongToTheCodeBefore)
{
    tables.places = PlaceLine{.name = "Cidade", .latitude = "-23", .country = "DE"}.Text() +
                    PlaceLine{.id = "2", .name = "Vila", .latitude = "-24", .country = "DE"}.Text();
    (void)Import({PostalLine("DE", "01000-000", "", "-23\t-89.6") +
                  PostalLine("DE", "06000-000", "", "-24\t-89.6") +
                  PostalLine("DE", "0300", "", "-24\t-89.6")});
    EXPECT_THAT(CitiesOfCode("01000-000"), ElementsAre("Cidade"));
    EXPECT_THAT(CitiesOfCode("05999-999"), ElementsAre("Cidade"));
    EXPECT_THAT(CitiesOfCode("06310-100"), ElementsAre("Vila"));
    EXPECT_THAT(CitiesOfCode("00999-999"), IsEmpty());
    EXPECT_THAT(CitiesOfCode("10000-000"), IsEmpty()) << "another part of the country";
}

TEST_F(DumpsTest, PostalCodes_whoseNameContainsThatOfACity_listTheCityFirst)
{
    tables.places = PlaceLine{.name = "Toronto", .latitude = "39.9", .population = "2700000"}.Text() +
                    PlaceLine{.id = "2", .name = "Niagara"}.Text() +
                    PlaceLine{.id = "3", .name = "Downtown", .latitude = "39.81"}.Text() +
                    PlaceLine{.id = "4", .name = "Bay", .latitude = "39.82", .population = "3000000"}.Text();
    (void)Import(
        {PostalLine("US", "12345", "Old Toronto (Railway Lands / South Niagara / Bay)", "39.8\t-89.64") +
         PostalLine("US", "12346", "Torontoville", "39.8\t-89.64") +
         PostalLine("US", "12347", "Niagara", "39.8\t-89.64")});
    EXPECT_THAT(CitiesOfCode("12345"), ElementsAre("Toronto", "Niagara", "Bay", "Downtown"));
    EXPECT_THAT(CitiesOfCode("12346"), ElementsAre("Bay", "Toronto", "Niagara", "Downtown"));
    EXPECT_THAT(CitiesOfCode("12347").front(), "Niagara");
}

TEST_F(DumpsTest, PostalCodes_thatReplaceOthers_areReported)
{
    tables.postal =
        PostalLine("US", "62701", "", "39.8\t-89.6") + PostalLine("US", "62702", "", "39.8\t-89.6");
    const ImportReport report = Import({PostalLine("US", "62703", "", "39.8\t-89.6")});
    EXPECT_THAT(report.replacedCodes, ElementsAre(Pair("United States", beacond::ReplacedCodes{2, 1})));
    EXPECT_THAT(Import({PlaceLine{}.Text()}).replacedCodes, IsEmpty());
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
