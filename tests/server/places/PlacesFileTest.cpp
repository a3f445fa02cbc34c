// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmallTables.h"
#include "places/FileLayout.h"
#include "places/Places.h"
#include "places/PlacesError.h"
#include "server/ErrorOf.h"

#include <gmock/gmock.h>
#include <lzma.h>

#include <cstring>

using beacond::Places;

namespace {

std::string SmallFile(const TemporaryFolder& folder)
{
    (void)TablesOfEachKind().Import(folder);
    return Read(folder / "places.bin");
}

std::string ReasonToRefuse(const std::filesystem::path& path)
{
    const std::string error = ErrorOf<beacond::PlacesError>([&] { return Places::Open(path); });
    return error.empty() ? "" : error.substr(error.find(": ") + 2);
}

/// Calls every function, so that the sanitizers check each access.
void AskAll(const Places& places)
{
    for (const beacond::State& state : places.States()) {
        for (const char* letters : {"s", "spr", "sprignfield", "riy", "الر"})
            EXPECT_EQ(places.Search(state.id, letters, 10).size(),
                      std::min<std::size_t>(places.Count(state.id, letters), 10));
    }
    for (const char* id : {"US-G1", "US-G2", "SA-Riyadh", "SA-G3"})
        (void)places.ByAtlasId(id);
    (void)places.ByZip("62701");
}

void RenewChecksum(std::string& file)
{
    const std::size_t covered = offsetof(beacond::layout::Header, sections);
    const std::uint64_t checksum =
        lzma_crc64(reinterpret_cast<const std::uint8_t*>(file.data()) + covered, file.size() - covered, 0);
    std::memcpy(file.data() + offsetof(beacond::layout::Header, checksum), &checksum, sizeof checksum);
}

} // namespace

TEST(PlacesFile, Open_truncatedAtAnyLength_isRefused)
{
    const TemporaryFolder folder;
    const std::string file = SmallFile(folder);
    for (std::size_t length = 0; length < file.size(); ++length) {
        Write(folder / "cut.bin", file.substr(0, length));
        ASSERT_NE(ReasonToRefuse(folder / "cut.bin"), "") << length;
    }
}

TEST(PlacesFile, Open_anyByteChanged_isRefused)
{
    const TemporaryFolder folder;
    const std::string file = SmallFile(folder);
    for (std::size_t i = 0; i < file.size(); ++i) {
        std::string damaged = file;
        damaged[i] = static_cast<char>(~damaged[i]);
        Write(folder / "damaged.bin", damaged);
        ASSERT_NE(ReasonToRefuse(folder / "damaged.bin"), "") << i;
    }
}

TEST(PlacesFile, Open_wrongContentWithAValidChecksum_isRefusedOrHarmless)
{
    const TemporaryFolder folder;
    const std::string file = SmallFile(folder);
    for (std::size_t i = sizeof(beacond::layout::Header::magic); i < file.size(); ++i) {
        for (const int change : {1, 0x80, 0xFF}) {
            std::string damaged = file;
            damaged[i] = static_cast<char>(damaged[i] ^ change);
            RenewChecksum(damaged);
            Write(folder / "damaged.bin", damaged);
            if (ReasonToRefuse(folder / "damaged.bin").empty())
                AskAll(*Places::Open(folder / "damaged.bin"));
        }
    }
}

TEST(PlacesFile, Open_unusableFile_throwsTheReason)
{
    const TemporaryFolder folder;
    const std::string file = SmallFile(folder);
    std::string newer = file;
    ++newer[offsetof(beacond::layout::Header, version)];
    std::string damaged = file;
    ++damaged.back();
    const std::pair<std::string, const char*> rows[] = {
        {"", "too short to be one"},
        {std::string(file.size(), 'x'), "not a places file"},
        {file.substr(0, file.size() - 1), "cut off or lengthened"},
        {newer, "made by a newer version of this program"},
        {damaged, "damaged: its checksum is wrong"},
    };
    for (const auto& [content, reason] : rows) {
        Write(folder / "unusable.bin", content);
        EXPECT_EQ(ReasonToRefuse(folder / "unusable.bin"), reason);
    }
    EXPECT_EQ(ReasonToRefuse(folder / "none.bin"), "No such file or directory");
    EXPECT_EQ(ReasonToRefuse(folder / ""), "too short to be one");
}

TEST(PlacesFile, Open_fileReplacedByARename_keepsAnswering)
{
    const TemporaryFolder folder;
    (void)SmallFile(folder);
    const auto old = Places::Open(folder / "places.bin");
    (void)SmallTables{.places = PlaceLine{.id = "8", .name = "Newtown"}.Text()}.Import(folder);
    EXPECT_EQ(old->Count("US", "spr"), 2U);
    EXPECT_EQ(Places::Open(folder / "places.bin")->Count("US", "newt"), 1U);
}
