// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/RuntimeError.h"

#include <gtest/gtest.h>

/// The number of the run-time error that the step throws, 0 for no error. The result of the step is
/// ignored.
template <typename Step>
[[nodiscard]] int ErrorOf(Step step)
{
    try {
        static_cast<void>(step());
    } catch (const RuntimeError& error) {
        EXPECT_FALSE(error.Description().isEmpty());
        return error.Number();
    }
    return 0;
}
