// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// Suppresses a text that is repeated within a time window. Not thread-safe.
class RepeatLimit final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// The number of texts that are remembered. A further text always passes until one of them is forgotten.
    static constexpr std::size_t kMostTexts = 100;

    /// @param window the shortest time between two passes of one text
    explicit RepeatLimit(std::chrono::seconds window)
        : m_window(window)
    {
    }

    /// Nothing if @p text is suppressed; otherwise how often it was suppressed since its last pass.
    [[nodiscard]] std::optional<std::size_t> Pass(std::string_view text, Time now);

    [[nodiscard]] std::size_t Texts() const { return m_texts.size(); }

private:
    struct Passed
    {
        Time at;
        std::size_t heldBack = 0;
    };

    const std::chrono::seconds m_window;
    std::map<std::string, Passed, std::less<>> m_texts;
};

} // namespace beacond
