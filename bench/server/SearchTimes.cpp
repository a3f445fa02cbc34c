// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the answers to searches in the process: search_times PLACES prints the megabytes of the places
// file in memory, then for each kind of text the 99th percentile and the maximum of an answer's processor
// time in milliseconds. Texts are beginnings of the names of the largest cities, searched in their whole
// country.
#include "http/Query.h"
#include "places/Places.h"
#include "places/PlacesFile.h"
#include "protocol/PlaceScripts.h"

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using namespace beacond;

namespace {

constexpr std::size_t kCities = 3000;

double Milliseconds()
{
    timespec now = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// The memory of this process, without what it allows others to share, and with the mapped places file.
double Megabytes()
{
    std::ifstream file("/proc/self/smaps_rollup");
    std::string word;
    while (file >> word && word != "Rss:") {
    }
    double kilobytes = 0.0;
    file >> kilobytes;
    return kilobytes * 1024.0 / 1e6;
}

struct City
{
    std::string country;
    std::string name; ///< ASCII letters only
};

std::vector<City> LargestCities(const PlacesFile& file)
{
    std::vector<const layout::Place*> largest;
    for (const layout::Place& place : file.Places()) {
        const std::string_view name = file.TextAt(place.name);
        const bool isPlain = name.size() > 5 && std::all_of(name.begin(), name.end(), [](char c) {
                                 return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
                             });
        if (isPlain)
            largest.push_back(&place);
    }
    std::sort(largest.begin(), largest.end(),
              [](const layout::Place* a, const layout::Place* b) { return a->population > b->population; });
    largest.resize(std::min(largest.size(), kCities));
    std::vector<City> cities;
    for (const layout::Place* const place : largest)
        cities.push_back({file.TextAt(file.Regions()[place->region].country), file.TextAt(place->name)});
    return cities;
}

void Measure(const char* kind, const Places& places, const std::vector<City>& cities,
             const std::function<std::string(const std::string&)>& text)
{
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    std::vector<double> times;
    for (const City& city : cities) {
        const std::string query = "state_id=" + city.country + "&city_string=" + text(city.name);
        const double begin = Milliseconds();
        const Response reply = AnswerFromPlaces(&places, "getMatchingCities.pl", Query(query), now);
        times.push_back(Milliseconds() - begin);
        if (reply.status != 200)
            throw std::runtime_error("no reply to " + query);
    }
    std::sort(times.begin(), times.end());
    std::printf("%s %.3f %.3f\n", kind, times[times.size() * 99 / 100], times.back());
}

void MeasureAll(const char* path)
{
    const double before = Megabytes();
    const Places places(path);
    std::printf("megabytes %.1f\n", Megabytes() - before);
    const std::vector<City> cities = LargestCities(PlacesFile(path));
    for (const std::size_t letters : {1U, 2U, 3U, 4U}) {
        Measure((std::to_string(letters) + "_letters").c_str(), places, cities,
                [letters](const std::string& name) { return name.substr(0, letters); });
    }
    Measure("missing_letter", places, cities,
            [](const std::string& name) { return std::string(name).erase(2, 1); });
    Measure("wrong_letter", places, cities,
            [](const std::string& name) { return std::string(name).replace(0, 1, 1, 'q'); });
    // The longest text that is searched has 200 letters.
    Measure("long_text", places, cities,
            [](const std::string& name) { return name + std::string(200 - name.size(), 'x'); });
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc != 2)
            throw std::runtime_error("usage: search_times PLACES");
        MeasureAll(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "search_times: %s\n", error.what());
        return 1;
    }
}
