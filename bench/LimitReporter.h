// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Prints the runs as usual and compares their processor time per iteration with a limit in milliseconds:
/// wall-clock time would include other processes and the disk.
class LimitReporter final : public benchmark::ConsoleReporter
{
public:
    explicit LimitReporter(std::map<std::string, double> limits)
        : m_limits(std::move(limits))
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && run.iterations > 0) {
                m_milliseconds[run.run_name.function_name] =
                    run.cpu_accumulated_time * 1000.0 / static_cast<double>(run.iterations);
            }
        }
    }

    /// Runs the benchmarks of this program. Returns the exit code: 1 if a benchmark exceeded its limit, or
    /// did not run without a filter.
    [[nodiscard]] int RunAll()
    {
        const bool areAll = benchmark::GetBenchmarkFilter().empty();
        benchmark::RunSpecifiedBenchmarks(this);
        int result = 0;
        for (const auto& [name, limit] : m_limits) {
            const auto time = m_milliseconds.find(name);
            if (time == m_milliseconds.end()) {
                result = areAll ? 1 : result;
                continue;
            }
            std::printf("%-28s %8.3f ms of processor time, at most %.0f ms\n", name.c_str(), time->second,
                        limit);
            result = time->second > limit ? 1 : result;
        }
        return result;
    }

private:
    std::map<std::string, double> m_limits;
    std::map<std::string, double> m_milliseconds;
};
