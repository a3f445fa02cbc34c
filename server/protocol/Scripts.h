// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "protocol/Announcements.h"
#include "protocol/MessageScripts.h"
#include "protocol/RequestLimits.h"
#include "support/Latest.h"
#include "support/Report.h"

#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace beacond {

class Places;
class Query;
class StartCounter;
class StoreThread;
struct Keys;

/// Names of distributions of the program.
using Distributions = std::set<std::string, std::less<>>;

/// The data and services that the scripts use; they must outlive the scripts.
struct ScriptSources
{
    const Keys& keys;
    StoreThread& store;
    StartCounter& starts;
    const Latest<Places>& places;
    const Latest<Announcements>& announcements;
    const Latest<Distributions>& dists; ///< counted by name
    std::function<std::chrono::sys_seconds()> now;
    Report report; ///< receives the reasons of failures
    RequestLimits& limits;
    /// More wrong codes than this from all clients within an hour are reported, at most once an hour.
    int wrongCodesAlarm = 100;
    std::function<AttemptLimit::Time()> elapsed = &AttemptLimit::Clock::now; ///< for limits of an hour
};

/// The requests of the program, each a script under one path. The program doesn't look at the status of a
/// reply: a script that can't answer sends no XML. Thread-safe.
class Scripts final
{
public:
    static constexpr std::string_view kFolder = "/cgi-bin/dbeacon/";

    explicit Scripts(ScriptSources sources);

    /// @param request its path begins with kFolder
    [[nodiscard]] boost::asio::awaitable<Response> Answer(const Request& request);

    /// The name of the script at the end of @p path, such as "getAd.pl", or "unknown". Never contains text of
    /// the client.
    [[nodiscard]] static std::string_view NameOf(std::string_view path);

    [[nodiscard]] const MessageFigures& Figures() const { return m_messages.Figures(); }

private:
    struct Script;
    static const Script* Find(std::string_view name);
    /// Nothing for the scripts that are never refused.
    static std::optional<RequestKind> KindOf(std::string_view name);
    [[nodiscard]] Response Refused(RequestKind kind, const Refusal& refusal, const Query& query) const;

    [[nodiscard]] Response RequestProdID(const Query& query) const;
    [[nodiscard]] Response Startup(const Query& query) const;
    [[nodiscard]] Response GetAd(const Query& query) const;
    [[nodiscard]] Response Version(const Query& query) const;
    /// Two letters, "ZZ" for an unknown place.
    [[nodiscard]] std::string CountryOf(std::string_view atlasId) const;

    ScriptSources m_sources;
    MessageScripts m_messages;
};

} // namespace beacond
