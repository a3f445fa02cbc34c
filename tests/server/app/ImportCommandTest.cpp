// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"

#include <string>

/// Tests of the command with packed tables beside the sources of the operator.
class ImportCommandTest : public ServiceFixture
{
protected:
    ImportCommandTest()
    {
        for (const char* const table : {"divisions.tsv.xz", "postal.tsv.xz", "overlay.tsv", "shipped.tsv"}) {
            Write(folder / table, "");
        }
        Write(folder / "places.tsv.xz", Line({.id = "1", .name = "Makkah"}));
        Write(folder / "regions.tsv", "SA\tSA\tSaudi Arabia\n");
    }

    static std::string Line(PlaceLine line)
    {
        line.country = "SA";
        line.zone = "Asia/Riyadh";
        return line.Text();
    }
    ProcessEnd Import(const std::string& source)
    {
        return Run({"import", "--tables", ".", source, "--out", "places.bin"});
    }
};

TEST_F(ImportCommandTest, sourceOfTheOperator_isImportedAndReported)
{
    Write(folder / "cities500.txt",
          Line({.id = "2", .name = "Madinah"}) + Line({.id = "x"}) + Line({.id = "y"}));
    const ProcessEnd end = Import("cities500.txt");
    EXPECT_EQ(end.status, 0) << end.errors;
    EXPECT_EQ(end.output, "places.bin: 2 places, 2 names, 0 postal codes, 1 countries and states\n"
                          "read: cities500.txt, places, 3 rows\n"
                          "left out: 2 rows, place: its id is not a number above 0; first cities500.txt, "
                          "line 2\n");
}

TEST_F(ImportCommandTest, postalCodesOfTheOperator_areReportedWithTheReplacedOnes)
{
    const std::string point = "\t\t\t\t\t\t\t\t39.8\t-89.6\t\n";
    Write(folder / "postal.tsv.xz", "SA\t11564" + point + "SA\t12211" + point);
    Write(folder / "SA.txt", "SA\t21955" + point);
    EXPECT_EQ(Import("SA.txt").output,
              "places.bin: 1 places, 1 names, 1 postal codes, 1 countries and states\n"
              "read: SA.txt, postal codes, 1 rows\n"
              "replaced: 2 postal codes of Saudi Arabia by 1\n");
}

TEST_F(ImportCommandTest, unusableSource_isRefusedAndTheFileStays)
{
    const std::string before = Read(folder / "places.bin");
    Write(folder / "cities500.txt", "404: Not Found\n");
    const ProcessEnd end = Import("cities500.txt");
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.errors, "dusk-beacond: cities500.txt: not a table of GeoNames\n");
    EXPECT_EQ(Import("none.txt").errors, "dusk-beacond: none.txt: No such file or directory\n");
    EXPECT_EQ(Read(folder / "places.bin"), before);
}
