// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Service.h"

#include "app/Log.h"
#include "app/Metrics.h"
#include "app/Site.h"
#include "http/HttpFigures.h"
#include "http/HttpServer.h"
#include "http/ListeningSocket.h"
#include "messages/Signups.h"
#include "messages/Spool.h"
#include "places/Places.h"
#include "places/PlacesError.h"
#include "protocol/StartCounter.h"
#include "secrets/Keys.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <csignal>
#include <optional>

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

constexpr auto kDrainTime = 5s;
// How soon a strip that a subcommand has added is shown.
constexpr auto kAnnouncementsAge = 2s;
constexpr auto kStartsAge = 60s;

std::chrono::sys_seconds Now()
{
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

ListeningSocket Listen(const ListenAddress& where)
{
    try {
        return ListeningSocket::Open(where);
    } catch (const std::exception& error) {
        throw ListenError(error.what());
    }
}

HttpOptions OptionsOf(const Settings& settings)
{
    HttpOptions options;
    options.threads = static_cast<unsigned>(settings.http.threads);
    options.maxConnections = static_cast<std::size_t>(settings.http.connections);
    options.maxConnectionsPerAddress = static_cast<std::size_t>(settings.http.connectionsPerAddress);
    options.proxies = ProxyList(settings.http.proxies);
    return options;
}

class Service final
{
public:
    explicit Service(const Settings& settings);
    void Run();

private:
    void LoadPlaces();
    void LoadAnnouncements(Store& store);
    [[nodiscard]] asio::awaitable<void> FollowSignals();
    [[nodiscard]] asio::awaitable<void> FollowAnnouncements();
    [[nodiscard]] asio::awaitable<void> StoreStarts();
    [[nodiscard]] asio::awaitable<void> FlushStarts();

    const Settings& m_settings;
    Keys m_keys;
    std::optional<Spool> m_spool;
    Latest<Places> m_places;
    Latest<Announcements> m_announcements;
    StartCounter m_starts;
    HttpFigures m_figures;
    HttpFigures m_metricsFigures;
    ListeningSocket m_listener;
    ListeningSocket m_metricsListener;
    // In the order in which they need each other: the servers end before what they answer from.
    asio::io_context m_context{1};
    std::optional<StoreThread> m_store;
    std::optional<Signups> m_signups;
    std::optional<Site> m_site;
};

Service::Service(const Settings& settings)
    : m_settings(settings)
    , m_keys(Keys::FromFolder(settings.keys.folder))
    , m_listener(Listen(settings.http.listen))
    , m_metricsListener(Listen(settings.metrics.listen))
{
    if (!settings.messages.channels.empty()) {
        m_spool.emplace(settings.messages.spool);
    }
    auto store = std::make_unique<SqliteStore>(SqlitePath(settings.store.url));
    LoadAnnouncements(*store);
    m_store.emplace(std::move(store));
    LoadPlaces();
    m_signups.emplace(m_keys, *m_store, m_spool ? &*m_spool : nullptr);
    m_site.emplace(ScriptSources{m_keys,
                                 *m_store,
                                 m_starts,
                                 m_places,
                                 m_announcements,
                                 {settings.service.dists.begin(), settings.service.dists.end()},
                                 &Now},
                   *m_signups, settings.messages.signupAddress);
}

void Service::LoadPlaces()
{
    m_places.Set(Places::Open(m_settings.places.file));
}

void Service::LoadAnnouncements(Store& store)
{
    m_announcements.Set(
        std::make_shared<const Announcements>(Announcements{store.Strips(), store.Releases()}));
}

void Service::Run()
{
    HttpServer server(
        std::move(m_listener), OptionsOf(m_settings),
        [this](const Request& request) { return m_site->Answer(request); }, m_figures);
    HttpOptions metricsOptions;
    metricsOptions.threads = 1;
    HttpServer metrics(
        std::move(m_metricsListener), metricsOptions,
        [this](const Request& request) -> asio::awaitable<Response> {
            const bool isKnown = request.path == "/metrics";
            co_return Response{isKnown ? 200U : 404U,
                               "text/plain; version=0.0.4; charset=utf-8",
                               isKnown ? MetricsText(m_figures, m_site->Figures()) : std::string(),
                               {}};
        },
        m_metricsFigures);
    LogInfo("ready on port " + std::to_string(server.Port()));

    asio::co_spawn(m_context, FollowSignals(), asio::detached);
    asio::co_spawn(m_context, FollowAnnouncements(), asio::detached);
    asio::co_spawn(m_context, FlushStarts(), asio::detached);
    m_context.run();

    LogInfo("ending");
    if (!server.Drain(kDrainTime)) {
        LogWarning("requests were cut off at the end");
    }
    metrics.Drain(0ms);
    asio::io_context last;
    asio::co_spawn(last, StoreStarts(), asio::detached);
    last.run();
    // Before the servers, on whose threads its answers would go on.
    m_signups->Join();
    m_store.reset();
}

asio::awaitable<void> Service::FollowSignals()
{
    asio::signal_set signals(m_context, SIGTERM, SIGINT, SIGHUP);
    while (co_await signals.async_wait(asio::use_awaitable) == SIGHUP) {
        try {
            LoadPlaces();
            LogInfo("the places were read again");
        } catch (const PlacesError& error) {
            LogError(std::string(error.what()) + "; the places before go on");
        }
    }
    m_context.stop();
}

asio::awaitable<void> Service::FollowAnnouncements()
{
    asio::steady_timer timer(m_context);
    std::int64_t known = 0;
    for (;;) {
        try {
            known = co_await m_store->Run([this, known](Store& store) {
                const std::int64_t version = store.DataVersion();
                if (version != known) {
                    LoadAnnouncements(store);
                }
                return version;
            });
        } catch (const StoreError& error) {
            LogError(error.what());
        }
        timer.expires_after(kAnnouncementsAge);
        co_await timer.async_wait(asio::use_awaitable);
    }
}

asio::awaitable<void> Service::StoreStarts()
{
    const std::vector<StartCount> counts = m_starts.Take();
    if (counts.empty()) {
        co_return;
    }
    try {
        co_await m_store->Run([&counts](Store& store) {
            store.AddStarts(counts);
            return true;
        });
    } catch (const StoreError& error) {
        LogError(error.what());
        for (const StartCount& count : counts) {
            m_starts.Add(count.day, count.country, count.dist, count.count);
        }
    }
}

asio::awaitable<void> Service::FlushStarts()
{
    asio::steady_timer timer(m_context);
    for (;;) {
        timer.expires_after(kStartsAge);
        co_await timer.async_wait(asio::use_awaitable);
        co_await StoreStarts();
    }
}

} // namespace

void Serve(const Settings& settings)
{
    Service(settings).Run();
}

std::string SqlitePath(const std::string& url)
{
    const std::filesystem::path path = url.substr(std::string_view("sqlite:").size());
    std::error_code ignored;
    // A folder that can't be made shows in the error of opening the file.
    std::filesystem::create_directories(path.parent_path(), ignored);
    return path.string();
}

} // namespace beacond
