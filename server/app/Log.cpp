// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Log.h"

#include "support/RepeatLimit.h"
#include "support/Utf8.h"

#include <poll.h>
#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/dist_sink.h>
#include <spdlog/spdlog.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>

namespace beacond {

namespace {

constexpr std::chrono::seconds kRepeatWindow{10};

/// Suppresses repeated warnings and errors: while the store is unavailable, each request fails with the same
/// text. spdlog's own filter compares a line only with the line before it, which is usually that of a
/// request.
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

/// Standard error. A reader that stops reading must block neither the answers nor the shutdown: lines that
/// would block are dropped.
class StderrSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex>
{
private:
    // A writable pipe takes PIPE_BUF bytes at once; lines are shorter.
    static bool IsReady()
    {
        pollfd error = {STDERR_FILENO, POLLOUT, 0};
        return ::poll(&error, 1, 0) > 0;
    }

    void sink_it_(const spdlog::details::log_msg& message) override
    {
        if (m_dropped > 0 && IsReady()) {
            const std::string text = "\"message\":\"lines of the log were dropped: its reader did not keep "
                                     "up\",\"dropped\":" +
                                     std::to_string(std::exchange(m_dropped, 0));
            Write({message.time, {}, message.logger_name, spdlog::level::warn, text});
        }
        if (IsReady()) {
            Write(message);
        } else {
            ++m_dropped;
        }
    }

    void Write(const spdlog::details::log_msg& message)
    {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        // There is no other place to report a failure.
        [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
    }

    void flush_() override {}

    std::uint64_t m_dropped = 0;
};

} // namespace

void StartLog(const std::string& level)
{
    // The messages are JSON already; the pattern adds the time and the level around them.
    auto filter = std::make_shared<RepeatFilter>();
    filter->add_sink(std::make_shared<StderrSink>());
    auto logger = std::make_shared<spdlog::logger>("beacond", std::move(filter));
    logger->set_pattern(R"({"time":"%Y-%m-%dT%H:%M:%S.%eZ","level":"%l",%v})",
                        spdlog::pattern_time_type::utc);
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
