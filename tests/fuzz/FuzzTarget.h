// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Entry points of a fuzz target.
extern "C" {
/// Called once, before the first input. Optional: only targets with windows define it.
[[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);
/// Runs one input. Always returns 0; a violated rule ends the process.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
}

/// Ends the process, so that the fuzzer keeps the input, where @p holds is false.
inline void Demand(bool holds, const char* rule)
{
    if (!holds) {
        std::fprintf(stderr, "Broken: %s\n", rule);
        std::abort();
    }
}
