// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Roads.h"

#include "messages/IncomingMail.h"
#include "messages/TextFiles.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

constexpr auto kLongestRetry = std::chrono::milliseconds(10min);
// A file that is being written is tried again after it has settled.
constexpr auto kUnsettled = 1s;
// The time after which a round begins no further sign-up.
constexpr auto kLongestRound = 1s;

Road RoadOf(FolderFormat format)
{
    return format == FolderFormat::Maildir ? Road::Mail : Road::Text;
}

} // namespace

Roads::Roads(const Keys& keys, StoreThread& store, Signups& signups, const RoadOptions& options,
             Report report, RoadTiming timing)
    : m_keys(keys)
    , m_store(store)
    , m_signups(signups)
    , m_mailServer(options.mailServer)
    , m_report(std::move(report))
    , m_timing(timing)
{
    Add(FolderFormat::Maildir, options.maildir);
    Add(FolderFormat::Gammu, options.gammuInbox);
    Add(FolderFormat::Smstools, options.smstoolsIncoming);
    if (!m_folders.empty()) {
        m_thread = std::thread([this] { m_context.run(); });
    }
}

void Roads::Add(FolderFormat format, const std::filesystem::path& folder)
{
    if (folder.empty()) {
        return;
    }
    WatchedFolder& watched =
        *m_folders.emplace_back(std::make_unique<WatchedFolder>(m_context, IncomingFolder(format, folder)));
    const auto reportEnd = [this](const std::exception_ptr& error) { ReportEnd(error); };
    if (const int changes = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC); changes >= 0) {
        watched.changes.assign(changes);
        asio::co_spawn(m_context, FollowChanges(watched), reportEnd);
    }
    asio::co_spawn(m_context, Watch(watched), reportEnd);
}

// An error that leaves a task must not end the service.
void Roads::ReportEnd(const std::exception_ptr& error)
{
    try {
        if (error) {
            std::rethrow_exception(error);
        }
    } catch (const std::exception& failure) {
        m_report(std::string("a folder is no longer followed: ") + failure.what());
    }
}

void Roads::Stop()
{
    if (!m_thread.joinable()) {
        return;
    }
    m_isEnding = true;
    asio::post(m_context, [this] {
        for (const std::unique_ptr<WatchedFolder>& watched : m_folders) {
            boost::system::error_code ignored;
            watched->timer.cancel();
            watched->changes.close(ignored);
        }
    });
    m_thread.join();
}

asio::awaitable<void> Roads::FollowChanges(WatchedFolder& watched)
{
    std::array<char, 4096> events{};
    boost::system::error_code failure;
    while (!failure && !m_isEnding) {
        co_await watched.changes.async_read_some(asio::buffer(events),
                                                 asio::redirect_error(asio::use_awaitable, failure));
        watched.isChanged = true;
        watched.timer.cancel();
    }
}

asio::awaitable<void> Roads::Watch(WatchedFolder& watched)
{
    while (!m_isEnding) {
        // Again in each round: the folder may have been created or replaced.
        if (watched.changes.is_open()) {
            // A file in "new" is complete from the beginning, and Postfix links it there.
            const std::uint32_t created = watched.folder.Format() == FolderFormat::Maildir ? IN_CREATE : 0U;
            ::inotify_add_watch(watched.changes.native_handle(), watched.folder.Watched().c_str(),
                                created | IN_CLOSE_WRITE | IN_MOVED_TO | IN_ONLYDIR);
        }
        watched.isChanged = false;
        DropOld(watched);
        const bool isAnyLeft = co_await HandleAll(watched);
        if (!watched.isChanged && !m_isEnding) {
            boost::system::error_code cancelled;
            const std::chrono::milliseconds soon = kUnsettled;
            watched.timer.expires_after(isAnyLeft ? std::min(soon, m_timing.poll) : m_timing.poll);
            co_await watched.timer.async_wait(asio::redirect_error(asio::use_awaitable, cancelled));
        }
    }
}

asio::awaitable<bool> Roads::HandleAll(WatchedFolder& watched)
{
    std::vector<std::string> names;
    try {
        names = watched.folder.Names();
        watched.lastReport.clear();
    } catch (const std::filesystem::filesystem_error& error) {
        ReportOnce(watched, watched.folder.Watched().string() + ": " + error.code().message());
    }
    CountWaiting(watched, names.size());
    std::erase_if(watched.failed, [&](const auto& failed) {
        return !std::binary_search(names.begin(), names.end(), failed.first);
    });
    std::erase_if(watched.signups, [&](const std::string& name) {
        return !std::binary_search(names.begin(), names.end(), name);
    });
    watched.isHolding = false;
    watched.holdFrom = std::chrono::steady_clock::now() + kLongestRound;
    bool isAnyLeft = false;
    for (const std::string& name : names) {
        if (m_isEnding) {
            break;
        }
        const bool isLeft = co_await HandleFile(watched, name);
        isAnyLeft = isAnyLeft || isLeft;
        CountWaiting(watched, isLeft ? watched.waiting : watched.waiting - 1);
    }
    co_return isAnyLeft;
}

asio::awaitable<bool> Roads::HandleFile(WatchedFolder& watched, const std::string& name)
{
    const auto now = std::chrono::steady_clock::now();
    const auto failed = watched.failed.find(name);
    watched.isHolding = watched.isHolding || now > watched.holdFrom;
    if ((failed != watched.failed.end() && failed->second.next > now) ||
        (watched.isHolding && watched.signups.contains(name))) {
        co_return true;
    }
    std::optional<IncomingFile> file;
    try {
        file = watched.folder.Open(name);
    } catch (const std::filesystem::filesystem_error& error) {
        ReportOnce(watched, watched.folder.Watched().string() +
                                ": a message can't be read: " + error.code().message());
        Postpone(watched, name);
    }
    if (!file) {
        co_return true;
    }
    Fate fate = co_await Handle(watched, *file);
    if (fate == Fate::Later && std::chrono::abs(file->age) > m_timing.longest) {
        ++m_figures.abandoned;
        fate = Fate::NotForUs;
    }
    try {
        if (fate == Fate::Handled) {
            watched.folder.Remove(*file);
        } else if (fate == Fate::NotForUs) {
            watched.folder.SetAside(*file);
            ++m_figures.setAside;
        }
    } catch (const std::filesystem::filesystem_error& error) {
        ReportOnce(watched, watched.folder.Watched().string() +
                                ": a message can't be removed: " + error.code().message());
        fate = Fate::Later;
    }
    if (fate == Fate::Later) {
        Postpone(watched, name);
    }
    co_return fate == Fate::Later || fate == Fate::NextRound;
}

// The calls of the store are named variables before they are awaited: see docs/service.md.
asio::awaitable<Roads::Fate> Roads::Handle(WatchedFolder& watched, const IncomingFile& file)
{
    const std::string road(NameOf(RoadOf(watched.folder.Format())));
    const std::string id = m_keys.lookup.Hash("incoming", road + ' ' + file.identity);
    auto begin = [id](Store& rows) { return rows.BeginIncoming(id, 0); };
    auto end = [id](Store& rows) {
        rows.EndIncoming(id, IncomingKept::ForDays);
        return true;
    };
    auto giveBack = [id](Store& rows) {
        rows.ReturnIncoming(id);
        return true;
    };
    Fate fate = Fate::Later;
    try {
        const IncomingState state = co_await m_store.Run(std::move(begin));
        if (state == IncomingState::Done) {
            co_return Fate::Handled;
        }
        if (state != IncomingState::Begun) {
            ++m_figures.abandoned;
            m_report("a message is set aside: it was begun three times without an end");
            co_return Fate::NotForUs;
        }
        fate = co_await TakeFile(watched, file);
        if (fate == Fate::Handled) {
            co_await m_store.Run(std::move(end));
        } else {
            // Also a message that is set aside: that can fail, and then it is begun again.
            co_await m_store.Run(std::move(giveBack));
        }
    } catch (const StoreError& error) {
        // A handled message is not handled again: its file goes.
        m_report(error.what());
    }
    co_return fate;
}

asio::awaitable<Roads::Fate> Roads::TakeFile(WatchedFolder& watched, const IncomingFile& file)
{
    const FolderFormat format = watched.folder.Format();
    std::optional<IncomingText> text;
    if (format == FolderFormat::Maildir) {
        auto read = ReadMail(file.content, m_mailServer);
        if (const auto* const refusal = std::get_if<MailRefusal>(&read)) {
            CountRefusal(*refusal);
            co_return Fate::NotForUs;
        }
        text = std::get<IncomingText>(std::move(read));
    } else {
        text = format == FolderFormat::Gammu ? ReadGammuFile(file.name, file.content)
                                             : ReadSmstoolsFile(file.content);
    }
    if (!text) {
        ++m_figures.withoutSender;
        co_return Fate::NotForUs;
    }
    if (watched.isHolding && WishOf(text->subject, text->text) == Wish::SignUp) {
        watched.signups.insert(file.name);
        co_return Fate::NextRound;
    }
    watched.signups.erase(file.name);
    const Signups::Outcome outcome =
        co_await m_signups.Take(std::move(*text), RoadOf(format), AttemptLimit::Clock::now());
    if (Signups::CanBeRepeated(outcome)) {
        ++m_figures.delayed;
        co_return Fate::Later;
    }
    const bool isForUs = outcome != Signups::Outcome::Nothing;
    ++(isForUs ? m_figures.handled : m_figures.withoutWish);
    co_return isForUs ? Fate::Handled : Fate::NotForUs;
}

void Roads::CountRefusal(MailRefusal refusal)
{
    switch (refusal) {
    case MailRefusal::NoSender:
        ++m_figures.withoutSender;
        break;
    case MailRefusal::Automatic:
        ++m_figures.automatic;
        break;
    case MailRefusal::NotAuthenticated:
        ++m_figures.notAuthenticated;
        break;
    }
}

void Roads::DropOld(WatchedFolder& watched)
{
    const auto now = std::chrono::steady_clock::now();
    if (now < watched.nextDrop) {
        return;
    }
    watched.nextDrop = now + 1h;
    try {
        watched.folder.DropSetAside();
    } catch (const std::filesystem::filesystem_error& error) {
        m_report("an old message can't be deleted: " + error.code().message());
    }
}

void Roads::CountWaiting(WatchedFolder& watched, std::size_t waiting)
{
    m_figures.waiting += waiting - watched.waiting;
    watched.waiting = waiting;
}

void Roads::Postpone(WatchedFolder& watched, const std::string& name)
{
    Attempts& attempts = watched.failed[name];
    attempts.delay = attempts.delay == 0ms ? m_timing.retry : std::min(attempts.delay * 2, kLongestRetry);
    attempts.next = std::chrono::steady_clock::now() + attempts.delay;
}

void Roads::ReportOnce(WatchedFolder& watched, const std::string& reason)
{
    if (watched.lastReport != reason) {
        m_report(reason);
    }
    watched.lastReport = reason;
}

} // namespace beacond
