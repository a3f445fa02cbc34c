// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RepeatLimit.h"

#include <utility>

namespace beacond {

std::optional<std::size_t> RepeatLimit::Pass(std::string_view text, Time now)
{
    const auto found = m_texts.find(text);
    if (found != m_texts.end() && now - found->second.at < m_window) {
        ++found->second.heldBack;
        return std::nullopt;
    }
    const std::size_t heldBack = found == m_texts.end() ? 0 : found->second.heldBack;
    if (m_texts.size() >= kMostTexts) {
        std::erase_if(m_texts, [&](const auto& entry) { return now - entry.second.at >= m_window; });
    }
    if (m_texts.size() < kMostTexts) {
        m_texts.insert_or_assign(std::string(text), Passed{now, 0});
    }
    return heldBack;
}

} // namespace beacond
