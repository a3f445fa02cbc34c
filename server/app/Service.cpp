// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Service.h"

#include "app/Listeners.h"
#include "app/Log.h"
#include "app/Metrics.h"
#include "app/OperatorTask.h"
#include "app/Reloading.h"
#include "app/RoadMetrics.h"
#include "app/RoadSettings.h"
#include "app/Site.h"
#include "app/StoreKeys.h"
#include "app/StoreTasks.h"
#include "http/HttpFigures.h"
#include "http/HttpServer.h"
#include "messages/Channels.h"
#include "messages/Hooks.h"
#include "messages/Roads.h"
#include "messages/Sender.h"
#include "messages/Signups.h"
#include "places/Places.h"
#include "places/ZoneOffset.h"
#include "protocol/StartCounter.h"
#include "secrets/KeyFolder.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include <csignal>
#include <exception>
#include <functional>
#include <optional>
#include <utility>

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

// Shutdown takes five seconds at most: the counted starts are stored after the last request. It takes longer
// only if the disk hangs, since a call of the store that has begun can't be cancelled.
constexpr auto kDrainTime = 5s - StoreThread::kLongestCall;

std::chrono::sys_seconds Now()
{
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

// Completion of a detached task: report an error that ends it.
void LogTaskError(const std::exception_ptr& error)
{
    try {
        if (error) {
            std::rethrow_exception(error);
        }
    } catch (const std::exception& failure) {
        LogError(std::string("a task of the service has ended: ") + failure.what());
    }
}

struct ScopeExit
{
    std::function<void()> action;
    ~ScopeExit() { action(); }
};

class Service final
{
public:
    Service(const Settings& settings, std::filesystem::path file);
    void Run();

private:
    void Apply(const Settings& settings);
    [[nodiscard]] std::string AllMetrics() const;
    void End(HttpServer& server, HttpServer& metrics);
    void Reload();

    const Settings& m_settings;
    const std::filesystem::path m_file;
    // Declared first, so that signals are handled during construction and destruction.
    asio::io_context m_context{1};
    asio::signal_set m_ends{m_context, SIGTERM, SIGINT};
    Hangups m_hangups{m_context, [this] { Reload(); }};
    KeyFolderLock m_keyLock;
    Keys m_keys;
    Channels m_channels;
    Latest<Places> m_places;
    Latest<Announcements> m_announcements;
    Latest<Distributions> m_dists;
    Latest<std::string> m_signupAddress;
    StartCounter m_starts;
    RequestLimits m_limits;
    HttpFigures m_figures;
    HttpFigures m_metricsFigures;
    ListeningSocket m_listener;
    ListeningSocket m_metricsListener;
    std::optional<StoreThread> m_store;
    std::optional<Sender> m_sender;
    std::optional<Signups> m_signups;
    std::optional<Hooks> m_hooks;
    std::optional<Roads> m_roads;
    std::optional<StoreTasks> m_tasks;
    std::optional<OperatorTask> m_operator;
    std::optional<Site> m_site;
};

Service::Service(const Settings& settings, std::filesystem::path file)
    : m_settings(settings)
    , m_file(std::move(file))
    , m_keyLock(settings.keys.folder, KeyFolderLock::For::Using)
    , m_keys(OpenKeys(settings))
    , m_channels(settings.messages.channelOptions)
    , m_limits(settings.limits, m_keys.identifier)
    , m_listener(MainListener(settings))
    , m_metricsListener(Listen("metrics.listen", settings.metrics.listen))
{
    auto store = std::make_unique<SqliteStore>(SqlitePathInItsFolder(settings.store.url));
    RequireKeysOf(*store, m_keys, settings.keys.folder);
    m_announcements.Set(ReadAnnouncements(*store));
    m_store.emplace(std::move(store));
    Apply(settings);
    m_sender.emplace(m_keys, *m_store, m_channels,
                     SenderOptions{settings.messages.spendPerDay, settings.messages.language}, &LogError);
    SignupOptions signups = settings.messages.signups;
    signups.spendPerDay = settings.messages.spendPerDay;
    const RoadOptions& roads = settings.messages.roads;
    signups.isStopReadFromMail = !roads.maildir.empty() && !settings.messages.signupAddress.empty();
    signups.isStopReadFromText =
        !roads.gammuInbox.empty() || !roads.smstoolsIncoming.empty() || !settings.messages.hooks.empty();
    signups.invites = ReadInvites(settings.messages.inviteFile);
    m_signups.emplace(m_keys, *m_store, m_channels, std::move(signups), &LogError);
    m_hooks.emplace(m_keys, *m_store, *m_signups, settings.messages.hooks, &LogError);
    m_tasks.emplace(*m_store, m_announcements, m_starts, *m_signups);
    m_operator.emplace(*m_store, m_channels, settings.notices, settings.messages.spendPerDay);
    m_site.emplace(ScriptSources{m_keys, *m_store, m_starts, m_places, m_announcements, m_dists, &Now,
                                 &LogError, m_limits, static_cast<int>(settings.messages.wrongCodesAlarm)},
                   *m_signups, *m_hooks, m_signupAddress);
}

void Service::Apply(const Settings& settings)
{
    // The part that can fail comes first, so that a failure changes nothing.
    m_places.Set(Places::Open(settings.places.file));
    const std::vector<std::string>& dists = settings.service.dists;
    m_dists.Set(std::make_shared<const Distributions>(dists.begin(), dists.end()));
    m_signupAddress.Set(std::make_shared<const std::string>(settings.messages.signupAddress));
}

void Service::Reload()
{
    const bool hasFile = !m_file.empty();
    const std::string parts = hasFile ? "configuration and places" : "places";
    try {
        // A program that rewrites the file may just have truncated it.
        if (hasFile && std::filesystem::exists(m_file) && std::filesystem::is_empty(m_file)) {
            throw SettingsError({m_file.string() + ": empty"});
        }
        const Settings settings = hasFile ? ReadSettings(m_file) : m_settings;
        Apply(settings);
        ReloadZones();
        if (const std::string keys = KeysThatNeedARestart(m_settings, settings); !keys.empty()) {
            LogWarning("needs a restart: " + keys);
        }
        LogInfo("the " + parts + " were read again");
        SetLogLevel(settings.log.level);
    } catch (const std::exception& error) {
        LogError(error.what() + ("; the previous " + parts + " stay in use"));
    }
}

void Service::Run()
{
    HttpServer server(
        std::move(m_listener), MainHttpOptions(m_settings),
        [this](const Request& request) { return m_site->Answer(request); }, m_figures);
    HttpServer metrics(
        std::move(m_metricsListener), MetricsHttpOptions(),
        [this](const Request& request) -> asio::awaitable<Response> {
            const bool isKnown = request.path == "/metrics";
            co_return Response{isKnown ? 200U : 404U,
                               "text/plain; version=0.0.4; charset=utf-8",
                               isKnown ? AllMetrics() : std::string(),
                               {}};
        },
        m_metricsFigures);
    // Stop roads, sign-ups and store before the servers are destroyed, also after an exception: their
    // coroutines resume on the servers' threads.
    const ScopeExit stop{[this] {
        if (m_roads) {
            m_roads->Stop();
        }
        m_sender.reset();
        m_signups->Join();
        m_operator->Join();
        m_store.reset();
    }};
    m_roads.emplace(m_keys, *m_store, *m_signups, m_settings.messages.roads, &LogError);
    LogInfo("metrics on port " + std::to_string(metrics.Port()));
    LogInfo("ready on port " + std::to_string(server.Port()));

    m_ends.async_wait([this](const boost::system::error_code&, int) { m_context.stop(); });
    asio::co_spawn(m_context, m_tasks->FollowAnnouncements(), &LogTaskError);
    asio::co_spawn(m_context, m_tasks->TidyEveryMinute(), &LogTaskError);
    asio::co_spawn(m_context, m_tasks->DropSilentDevices(), &LogTaskError);
    asio::co_spawn(m_context, m_operator->FollowSending(), &LogTaskError);
    m_sender->Start();
    m_context.run();

    LogInfo("ending");
    End(server, metrics);
}

std::string Service::AllMetrics() const
{
    std::vector<ChannelMetrics> channels;
    for (std::size_t index = 0; index < m_channels.All().size(); ++index) {
        channels.push_back({m_channels.All()[index]->Name(), m_sender->FiguresOf(index)});
    }
    return MetricsText(m_figures, m_site->Figures(), m_limits.Figures()) +
           SendingMetricsText(m_sender->Figures(), channels) +
           RoadMetricsText(m_signups->Counts(), m_roads->Figures(), m_hooks->Figures(),
                           m_signups->AnswersWaiting());
}

void Service::End(HttpServer& server, HttpServer& metrics)
{
    const auto deadline = Sender::Clock::now() + kDrainTime;
    m_sender->BeginStop();
    if (!server.Drain(kDrainTime)) {
        LogWarning("requests were cut off at the end");
    }
    m_sender->Stop(deadline);
    // Also ends an answer to a sign-up that is under way.
    m_channels.Abort();
    metrics.Drain(0ms);
    asio::io_context last;
    asio::co_spawn(last, m_tasks->StoreStarts(), &LogTaskError);
    last.run();
}

} // namespace

void Serve(const Settings& settings, const std::filesystem::path& file)
{
    // A closed reader of the log must not end the service.
    std::signal(SIGPIPE, SIG_IGN);
    Service(settings, file).Run();
}

std::string SqlitePath(const std::string& url)
{
    return url.substr(std::string_view("sqlite:").size());
}

std::string SqlitePathInItsFolder(const std::string& url)
{
    const std::filesystem::path path = SqlitePath(url);
    std::error_code ignored;
    // If the folder can't be created, opening the file reports it.
    std::filesystem::create_directories(path.parent_path(), ignored);
    return path.string();
}

} // namespace beacond
