// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace beacond {

/// Writes the log to standard error, one JSON object a line, from @p level on: "info", "warning" or "error".
/// If the reader is too slow, lines are dropped and counted: a call never blocks.
void StartLog(const std::string& level);
void SetLogLevel(const std::string& level);

void LogInfo(std::string_view message);
void LogWarning(std::string_view message);
void LogError(std::string_view message);
/// Logs an answered request, but never its query or its address: the identifier in the query is a secret.
/// @param name of the script or page
void LogRequest(std::string_view name, unsigned status, std::chrono::microseconds duration);

/// @p text as a JSON string, quotes included. Bytes that are not valid UTF-8 become U+FFFD.
[[nodiscard]] std::string JsonString(std::string_view text);

} // namespace beacond
