// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/FileLayout.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace beacond {

/// The number in `text`, in the notation of the C locale; nothing if `text` contains anything else.
template <typename Number>
[[nodiscard]] std::optional<Number> NumberIn(std::string_view text)
{
    Number number{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// Degrees in the units of the places file, if they lie in -most..most.
[[nodiscard]] inline std::optional<std::int32_t> UnitsIn(std::string_view degrees, double most)
{
    const std::optional<double> number = NumberIn<double>(degrees);
    // Also false for NaN.
    if (!number || !(std::abs(*number) <= most))
        return std::nullopt;
    return static_cast<std::int32_t>(std::lround(*number * layout::kUnitsPerDegree));
}

} // namespace beacond
