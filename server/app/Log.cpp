// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Log.h"

#include "support/RepeatLimit.h"
#include "support/Utf8.h"

#include <spdlog/sinks/dist_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <mutex>

namespace beacond {

namespace {

constexpr std::chrono::seconds kRepeatWindow{10};

/// Suppresses repeated warnings and errors: while the store is unavailable, each request fails with the same
/// text. spdlog's own filter compares a line with the one before it only, which is that of a request.
class RepeatFilter final : public spdlog::sinks::dist_sink<std::mutex>
{
private:
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        if (message.level < spdlog::level::warn) {
            dist_sink::sink_it_(message);
            return;
        }
        const std::string_view text(message.payload.data(), message.payload.size());
        const auto heldBack = m_limit.Pass(text, RepeatLimit::Time::clock::now());
        if (!heldBack) {
            return;
        }
        const std::string counted = std::string(text) + ",\"held_back\":" + std::to_string(*heldBack);
        spdlog::details::log_msg shown = message;
        if (*heldBack > 0) {
            shown.payload = counted;
        }
        dist_sink::sink_it_(shown);
    }

    RepeatLimit m_limit{kRepeatWindow};
};

} // namespace

void StartLog(const std::string& level)
{
    // The messages are JSON already; the pattern adds the time and the level around them.
    auto filter = std::make_shared<RepeatFilter>();
    filter->add_sink(std::make_shared<spdlog::sinks::stderr_sink_st>());
    auto logger = std::make_shared<spdlog::logger>("beacond", std::move(filter));
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
