// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Hooks.h"
#include "messages/Signups.h"

#include <string>

namespace beacond {

struct RoadFigures;

/// The figures of sign-ups and of their roads, in the text format of Prometheus.
/// @param answersWaiting see Signups::AnswersWaiting
[[nodiscard]] std::string RoadMetricsText(const Signups::Figures& signups, const RoadFigures& roads,
                                          const Hooks::Counts& hooks, std::uint64_t answersWaiting);

} // namespace beacond
