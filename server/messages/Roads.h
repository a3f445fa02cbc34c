// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/IncomingFolder.h"
#include "messages/SignupOptions.h"
#include "messages/Signups.h"
#include "support/Report.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace beacond {

class StoreThread;
enum class MailRefusal;
struct Keys;

/// Files of the watched folders by their fate, since the start.
struct RoadFigures
{
    std::atomic<std::uint64_t> handled{0};
    std::atomic<std::uint64_t> withoutSender{0};
    std::atomic<std::uint64_t> automatic{0};
    std::atomic<std::uint64_t> notAuthenticated{0};
    std::atomic<std::uint64_t> withoutWish{0};
    std::atomic<std::uint64_t> setAside{0};
    std::atomic<std::uint64_t> waiting{0};   ///< now in the folders
    std::atomic<std::uint64_t> delayed{0};   ///< attempts that failed and are repeated
    std::atomic<std::uint64_t> abandoned{0}; ///< given up after an hour of attempts, or after three crashes
};

struct RoadTiming
{
    /// The folders are also listed at this interval: a network file system announces no changes.
    std::chrono::milliseconds poll{10'000};
    /// Between the first two attempts of a message; doubled at each further one, up to ten minutes.
    std::chrono::milliseconds retry{30'000};
    /// Failing attempts of a message end at this age of its file.
    std::chrono::seconds longest{3600};
};

/// Takes sign-ups from folders on a thread of its own. A file is deleted after it has been handled; one that
/// is not for the service is set aside. After a kill the file that was being handled is handled again, and
/// also if the channel does not confirm the answer: its sender can get a further answer, up to the limit of
/// an address.
class Roads final
{
public:
    /// @param report receives the reason of each failure, for the log
    Roads(const Keys& keys, StoreThread& store, Signups& signups, const RoadOptions& options, Report report,
          RoadTiming timing = {});
    // NOLINTNEXTLINE(bugprone-exception-escape): a thread that can't be joined ends the program
    ~Roads() { Stop(); }
    Roads(const Roads&) = delete;
    Roads& operator=(const Roads&) = delete;

    /// Ends after the message that is being handled.
    void Stop();

    [[nodiscard]] const RoadFigures& Figures() const { return m_figures; }

private:
    struct Attempts
    {
        std::chrono::steady_clock::time_point next;
        std::chrono::milliseconds delay{};
    };
    struct WatchedFolder
    {
        WatchedFolder(boost::asio::io_context& context, IncomingFolder taken)
            : folder(std::move(taken))
            , timer(context)
            , changes(context)
        {
        }

        IncomingFolder folder;
        boost::asio::steady_timer timer;
        boost::asio::posix::stream_descriptor changes; ///< inotify
        bool isChanged = false;
        std::map<std::string, Attempts, std::less<>> failed; ///< by the name of the file
        std::set<std::string, std::less<>>
            signups; ///< the files with a sign-up that waits for the next round
        /// The rest of the round sends nothing for sign-ups, so that a STOP need not wait for them: they have
        /// taken long.
        bool isHolding = false;
        std::chrono::steady_clock::time_point holdFrom;
        std::string lastReport;
        std::size_t waiting = 0; ///< files
        std::chrono::steady_clock::time_point nextDrop;
    };
    enum class Fate { Handled, NotForUs, Later, NextRound };

    void Add(FolderFormat format, const std::filesystem::path& folder);
    [[nodiscard]] boost::asio::awaitable<void> Watch(WatchedFolder& watched);
    [[nodiscard]] boost::asio::awaitable<void> FollowChanges(WatchedFolder& watched);
    /// Returns whether a file is left for later.
    [[nodiscard]] boost::asio::awaitable<bool> HandleAll(WatchedFolder& watched);
    [[nodiscard]] boost::asio::awaitable<bool> HandleFile(WatchedFolder& watched, const std::string& name);
    [[nodiscard]] boost::asio::awaitable<Fate> Handle(WatchedFolder& watched, const IncomingFile& file);
    [[nodiscard]] boost::asio::awaitable<Fate> TakeFile(WatchedFolder& watched, const IncomingFile& file);
    void ReportEnd(const std::exception_ptr& error);
    void CountRefusal(MailRefusal refusal);
    /// Once an hour.
    void DropOld(WatchedFolder& watched);
    void CountWaiting(WatchedFolder& watched, std::size_t waiting);
    void Postpone(WatchedFolder& watched, const std::string& name);
    void ReportOnce(WatchedFolder& watched, const std::string& reason);

    const Keys& m_keys;
    StoreThread& m_store;
    Signups& m_signups;
    std::string m_mailServer;
    Report m_report;
    RoadTiming m_timing;
    RoadFigures m_figures;
    std::atomic<bool> m_isEnding{false};
    boost::asio::io_context m_context{1};
    std::vector<std::unique_ptr<WatchedFolder>> m_folders;
    std::thread m_thread;
};

} // namespace beacond
