// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <regex>

using testing::HasSubstr;

namespace {

/// A small pipe for the log of a process, read only on demand.
class LogPipe final
{
public:
    LogPipe()
    {
        EXPECT_EQ(::pipe2(m_ends.data(), O_CLOEXEC), 0);
        ::fcntl(m_ends[1], F_SETPIPE_SZ, 8192);
    }
    ~LogPipe()
    {
        ::close(m_ends[0]);
        ::close(m_ends[1]);
    }
    LogPipe(const LogPipe&) = delete;
    LogPipe& operator=(const LogPipe&) = delete;

    /// Called in the child process.
    void BecomeErrors() const { ::dup2(m_ends[1], STDERR_FILENO); }

    /// Waits for the text; returns everything read since the last call.
    [[nodiscard]] std::string ReadThrough(const std::string& text) const
    {
        std::string all;
        std::array<char, 4096> bytes{};
        while (all.find(text) == std::string::npos) {
            const ssize_t count = ::read(m_ends[0], bytes.data(), bytes.size());
            if (count <= 0) {
                break;
            }
            all.append(bytes.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

private:
    std::array<int, 2> m_ends{};
};

} // namespace

class LogTest : public ServiceFixture
{
};

TEST_F(LogTest, readerThatStopsReading_delaysNeitherAnswersNorTheEnd)
{
    const LogPipe log;
    service.emplace(Path(), serve, "", [&log] { log.BecomeErrors(); });
    std::smatch match;
    const std::string start = log.ReadThrough("ready on port ");
    ASSERT_TRUE(std::regex_search(start, match, std::regex("ready on port ([0-9]+)")));
    const auto port = static_cast<unsigned short>(std::stoi(match[1]));
    const auto call = [&] {
        for (int number = 0; number < 200; ++number) {
            ASSERT_EQ(Fetch(port, kScripts + "prayerCall.pl?pno=1&ma=0"), "<root/>") << number;
        }
    };
    ASSERT_NO_FATAL_FAILURE(call());

    (void)log.ReadThrough("prayerCall.pl");
    (void)log.ReadThrough("prayerCall.pl");
    EXPECT_EQ(Fetch(port, "/healthz"), "ok\n");
    EXPECT_THAT(log.ReadThrough("/healthz"),
                HasSubstr(R"("level":"warning","message":"lines of the log were)"));

    ASSERT_NO_FATAL_FAILURE(call());
    EXPECT_EQ(Terminate().status, 0);
}
