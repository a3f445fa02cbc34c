// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// The text of the error that the step throws; empty if it throws none. The result of the step is ignored.
template <typename Error, typename Step>
[[nodiscard]] std::string ErrorOf(Step step)
{
    try {
        static_cast<void>(step());
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}
