// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzTarget.h"
#include "places/FileLayout.h"
#include "places/Places.h"
#include "places/PlacesError.h"

#include <lzma.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

using namespace beacond;

// The linker redirects each mmap to this function. The sanitizer detects each read beyond a heap block, but
// beyond a mapping only in another page.
extern "C" {
void* __real_mmap(void* address, size_t size, int protection, int flags, int file, off_t offset);
int __real_munmap(void* address, size_t size);
void* __wrap_mmap(void* address, size_t size, int protection, int flags, int file, off_t offset);
int __wrap_munmap(void* address, size_t size);
}

namespace {

std::unordered_map<void*, std::unique_ptr<char[]>>& Copies()
{
    static std::unordered_map<void*, std::unique_ptr<char[]>> copies;
    return copies;
}

} // namespace

void* __wrap_mmap(void* address, size_t size, int protection, int flags, int file, off_t offset)
{
    if (file < 0) {
        return __real_mmap(address, size, protection, flags, file, offset);
    }
    auto copy = std::make_unique<char[]>(size);
    Demand(::pread(file, copy.get(), size, offset) == static_cast<ssize_t>(size), "the file is read");
    void* const start = copy.get();
    Copies().emplace(start, std::move(copy));
    return start;
}

int __wrap_munmap(void* address, size_t size)
{
    return Copies().erase(address) > 0 ? 0 : __real_munmap(address, size);
}

namespace {

/// A file in memory.
class MemoryFile final
{
public:
    explicit MemoryFile(std::string_view bytes)
        : m_file(::memfd_create("places", MFD_CLOEXEC))
    {
        Demand(::write(m_file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
               "the file is written");
    }
    ~MemoryFile() { ::close(m_file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    [[nodiscard]] std::string Path() const { return "/proc/self/fd/" + std::to_string(m_file); }

private:
    int m_file;
};

/// Sets the correct size and checksum, so that the content of the file is read.
void MakeWhole(std::string& file)
{
    using layout::Header;
    if (file.size() < sizeof(Header)) {
        return;
    }
    const std::uint64_t size = file.size();
    std::memcpy(file.data() + offsetof(Header, size), &size, sizeof size);
    const std::size_t covered = offsetof(Header, sections);
    const std::uint64_t checksum =
        lzma_crc64(reinterpret_cast<const std::uint8_t*>(file.data()) + covered, file.size() - covered, 0);
    std::memcpy(file.data() + offsetof(Header, checksum), &checksum, sizeof checksum);
}

void CheckPlace(const Places& places, std::string_view id)
{
    if (const std::optional<Place> place = places.ByAtlasId(id)) {
        Demand(std::abs(place->latitude) <= 90.0 && std::abs(place->longitude) <= 180.0,
               "a place lies on the globe");
    }
}

void CheckSearch(const Places& places, std::string_view state, std::string_view letters)
{
    constexpr std::size_t kMost = 10;
    const std::vector<Match> matches = places.Search(state, letters, kMost);
    Demand(matches.size() == std::min(places.Count(state, letters), kMost),
           "a search finds the places that it counts");
    for (const Match& match : matches) {
        CheckPlace(places, match.atlasId);
    }
}

void AskAll(const Places& places)
{
    constexpr std::size_t kMostStates = 8;
    const std::vector<State> states = places.States();
    for (std::size_t i = 0; i < std::min(states.size(), kMostStates); ++i) {
        for (const char* const letters : {"s", "spr", "sprignfield", "riyadhriyadh", "الر", "xpringfield"}) {
            CheckSearch(places, states[i].id, letters);
        }
    }
    for (const char* const id : {"US-G1", "US-G2", "SA-Riyadh", "SA-G3", "G4", ""}) {
        CheckPlace(places, id);
    }
    for (const char* const code : {"62701", "62701-1234", "", "M5V 3L9"}) {
        static_cast<void>(places.ByZip(code));
    }
}

} // namespace

// The bytes of a places file, but for size and checksum. The seeds are made from the small file of
// PlacesFileTest; a new version of the layout needs new ones.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string bytes(reinterpret_cast<const char*>(data), size);
    MakeWhole(bytes);
    const MemoryFile file(bytes);
    try {
        AskAll(Places(file.Path()));
    } catch (const PlacesError&) { // refused
    }
    Demand(Copies().empty(), "a mapping ends with its file");
    return 0;
}
