// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"

#include <chrono>
#include <string>
#include <string_view>

namespace beacond {

class Places;
class Query;

/// The reply of a script that finds places, "getStates.pl" and the like; a 404 for another name.
/// @param places null while none are loaded: the reply is then a failure
/// @param now the time for which a place's offset from UTC is computed
[[nodiscard]] Response AnswerFromPlaces(const Places* places, std::string_view name, const Query& query,
                                        std::chrono::sys_seconds now);

/// @p name if it is one of these scripts, otherwise "unknown".
[[nodiscard]] std::string_view PlaceScriptName(std::string_view name);

/// Hours in the form that the program reads: "3", "-5", "5.5", "5.75".
[[nodiscard]] std::string HoursText(std::chrono::minutes offset);

} // namespace beacond
