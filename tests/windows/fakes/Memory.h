// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

/// Measured on Linux only: the peak of a process of Windows can't be forgotten.
namespace Memory {

inline constexpr bool kIsTrue = false;

[[nodiscard]] inline qint64 Resident()
{
    return 0;
}

[[nodiscard]] inline qint64 Peak()
{
    return 0;
}

inline qint64 ForgetPeak()
{
    return 0;
}

} // namespace Memory
