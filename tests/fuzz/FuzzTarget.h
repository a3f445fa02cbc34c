// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What a target is to the fuzzer and to the replay of the corpus.
extern "C" {
/// Once, before the first input; a target without a window has none.
[[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);
/// One input. Always answers 0; what must not be ends the process.
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
