// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/DuskBeaconDBN.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

// Measures the module in calls of the C library's sine on varied arguments in the same run, so that the
// figures of two machines can be compared. The exit code is 1 if a limit is exceeded.
namespace {

using Short = std::int16_t;

struct Module
{
    decltype(&::SetHorParams) setHorParams = nullptr;
    decltype(&::SetHorTemkin) setHorTemkin = nullptr;
    decltype(&::SetHorAngle) setHorAngle = nullptr;
    decltype(&::Horarium) horarium = nullptr;
    decltype(&::SunElev) sunElev = nullptr;
    decltype(&::MoonElevation) moonElevation = nullptr;
    decltype(&::Hday) hday = nullptr;
};

Module module;

template <typename Function>
void Find(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(::dlsym(library, name));
    if (function == nullptr) {
        std::fprintf(stderr, "%s\n", ::dlerror());
        std::exit(2);
    }
}

void OpenModule()
{
    void* const library = ::dlopen(DUSKBEACON_MODULE, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", ::dlerror());
        std::exit(2);
    }
    Find(library, "SetHorParams", module.setHorParams);
    Find(library, "SetHorTemkin", module.setHorTemkin);
    Find(library, "SetHorAngle", module.setHorAngle);
    Find(library, "Horarium", module.horarium);
    Find(library, "SunElev", module.sunElev);
    Find(library, "MoonElevation", module.moonElevation);
    Find(library, "Hday", module.hday);
}

struct Date
{
    Short latitude;
    Short longitude;
    Short offset;
    Short day;
    Short month;
    Short year;
};

constexpr std::size_t kCases = 4096;

// No date comes twice in a row, so that no cached value is used.
const std::vector<Date>& Dates()
{
    static const std::vector<Date> dates = [] {
        std::mt19937 generator(5);
        const auto pick = [&generator](int least, int most) {
            return static_cast<Short>(std::uniform_int_distribution<int>(least, most)(generator));
        };
        std::vector<Date> made(kCases);
        for (Date& date : made) {
            date = {pick(-6500, 6500), pick(-18000, 18000), 0, pick(1, 28), pick(1, 12), pick(1900, 2100)};
            date.offset = static_cast<Short>(std::lround(date.longitude / 1500.0) * 60);
        }
        return made;
    }();
    return dates;
}

void Sine(benchmark::State& state)
{
    std::mt19937 generator(3);
    std::uniform_real_distribution<double> distribution(-1000.0, 1000.0);
    std::vector<double> arguments(kCases);
    std::generate(arguments.begin(), arguments.end(), [&] { return distribution(generator); });
    std::size_t next = 0;
    for ([[maybe_unused]] auto step : state) {
        benchmark::DoNotOptimize(std::sin(arguments[next]));
        next = (next + 1) % kCases;
    }
}

void SetDate(const Date& date)
{
    module.setHorParams(date.latitude, date.longitude, date.offset, date.day, date.month, date.year);
    module.setHorTemkin(0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    module.setHorAngle(-1800, 500, 500, -1700);
}

int TenSlots()
{
    int sum = 0;
    for (Short slot = 1; slot <= 10; ++slot) {
        sum += module.horarium(slot);
    }
    return sum;
}

void NewDate(benchmark::State& state)
{
    const std::vector<Date>& dates = Dates();
    std::size_t next = 0;
    for ([[maybe_unused]] auto step : state) {
        SetDate(dates[next]);
        benchmark::DoNotOptimize(TenSlots());
        next = (next + 1) % kCases;
    }
}

void Reading(benchmark::State& state, Short (*const& function)(Short))
{
    SetDate(Dates().front());
    benchmark::DoNotOptimize(TenSlots());
    Short minute = 0;
    for ([[maybe_unused]] auto step : state) {
        benchmark::DoNotOptimize(function(minute));
        minute = static_cast<Short>((minute + 1) % 1440);
    }
}

// Cached at the first call for a date: a call that takes longer has asked ICU again.
void KnownHijri(benchmark::State& state)
{
    SetDate(Dates().front());
    benchmark::DoNotOptimize(module.hday());
    for ([[maybe_unused]] auto step : state) {
        benchmark::DoNotOptimize(module.hday());
    }
}

// The median times of a run, by name.
class MedianReporter final : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                m_medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
            }
        }
    }

    [[nodiscard]] double Of(const std::string& name) const { return m_medians.at(name); }

private:
    std::map<std::string, double> m_medians;
};

struct Limit
{
    const char* name;
    double sines;
};

// A sine takes 8.4 ns on the machine that the limits were set on, so that a new date may take 2.5 us.
constexpr std::array<Limit, 4> kLimits{
    {{"NewDate", 300.0}, {"SunElev", 50.0}, {"MoonElevation", 400.0}, {"KnownHijri", 2.0}}};

bool ReportRatios(const MedianReporter& reporter)
{
    bool isWithin = true;
    const double sine = reporter.Of("Sine");
    for (const Limit& limit : kLimits) {
        const double time = reporter.Of(limit.name);
        const double ratio = time / sine;
        std::printf("%-14s %8.1f ns = %6.1f sines, at most %.0f\n", limit.name, time, ratio, limit.sines);
        isWithin = isWithin && ratio <= limit.sines;
    }
    return isWithin;
}

} // namespace

int main(int argc, char** argv)
{
    OpenModule();
    constexpr int kRepetitions = 9;
    const auto add = [](const char* name, auto&& run) {
        benchmark::RegisterBenchmark(name, run)
            ->Repetitions(kRepetitions)
            ->ReportAggregatesOnly()
            ->MinTime(0.05);
    };
    add("Sine", Sine);
    add("NewDate", NewDate);
    add("SunElev", [](benchmark::State& state) { Reading(state, module.sunElev); });
    add("MoonElevation", [](benchmark::State& state) { Reading(state, module.moonElevation); });
    add("KnownHijri", KnownHijri);
    benchmark::Initialize(&argc, argv);
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return ReportRatios(reporter) ? 0 : 1;
}
