// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace calculation {

// The whole number at or below the quotient, for a divisor above 0; C++ rounds towards 0.
[[nodiscard]] constexpr std::int32_t FloorDivide(std::int32_t dividend, std::int32_t divisor)
{
    const std::int32_t quotient = dividend / divisor;
    return quotient * divisor > dividend ? quotient - 1 : quotient;
}

} // namespace calculation
