// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Log.h"

#include "support/Utf8.h"

#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

namespace beacond {

void StartLog(const std::string& level)
{
    // The messages are JSON already; the pattern adds the time and the level around them.
    auto logger = spdlog::stderr_logger_mt("beacond");
    logger->set_pattern(R"({"time":"%Y-%m-%dT%H:%M:%S.%eZ","level":"%l",%v})",
                        spdlog::pattern_time_type::utc);
    logger->flush_on(spdlog::level::info);
    spdlog::set_default_logger(std::move(logger));
    SetLogLevel(level);
}

void SetLogLevel(const std::string& level)
{
    spdlog::set_level(spdlog::level::from_str(level));
}

void LogInfo(std::string_view message)
{
    spdlog::info("\"message\":{}", JsonString(message));
}

void LogWarning(std::string_view message)
{
    spdlog::warn("\"message\":{}", JsonString(message));
}

void LogError(std::string_view message)
{
    spdlog::error("\"message\":{}", JsonString(message));
}

void LogRequest(std::string_view name, unsigned status, std::chrono::microseconds duration)
{
    spdlog::info("\"request\":\"{}\",\"status\":{},\"microseconds\":{}", name, status, duration.count());
}

std::string JsonString(std::string_view text)
{
    std::string json = "\"";
    while (!text.empty()) {
        const std::size_t length = Utf8SequenceLength(text);
        const char first = text.front();
        if (length == 0) {
            json += "\\ufffd";
        } else if (first == '"' || first == '\\') {
            json += {'\\', first};
        } else if (length == 1 && static_cast<unsigned char>(first) < 0x20) {
            json += fmt::format("\\u{:04x}", static_cast<unsigned>(first));
        } else {
            json += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return json + '"';
}

} // namespace beacond
