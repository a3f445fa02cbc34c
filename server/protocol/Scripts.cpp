// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/Scripts.h"

#include "places/Places.h"
#include "protocol/PlaceScripts.h"
#include "protocol/Reply.h"
#include "protocol/StartCounter.h"
#include "secrets/InstallationIdentifier.h"
#include "secrets/Keys.h"
#include "support/Base64.h"

#include <algorithm>
#include <iterator>

namespace beacond {

namespace {

constexpr std::string_view kPrayerCall = "prayerCall.pl";
constexpr std::string_view kConfirmSignup = "ma/confirmSignup.pl";
constexpr std::string_view kInstallation = "prod_string";

std::int32_t DayOf(std::chrono::sys_seconds time)
{
    return static_cast<std::int32_t>(std::chrono::floor<std::chrono::days>(time).time_since_epoch().count());
}

// With an empty strip the program shows its default.
Response StripReply(const Strip* strip, std::string_view identifier)
{
    XmlReply reply;
    reply.Attribute("ad_url", strip == nullptr ? std::string() : EncodeBase64(strip->html));
    reply.Attribute("wait_time", std::to_string(WaitMinutes(identifier)));
    return ScriptReply(std::move(reply));
}

// The program offers any version that differs from its own, older ones too: an empty name means none.
Response VersionReply(const Release* release)
{
    XmlReply reply;
    reply.Attribute("version_name", release == nullptr ? std::string() : release->name);
    reply.Attribute("version_sequence", release == nullptr ? std::string() : release->sequence);
    reply.Attribute("download_url", release == nullptr ? std::string() : release->url);
    return ScriptReply(std::move(reply));
}

} // namespace

struct Scripts::Script
{
    std::string_view name;
    std::optional<RequestKind> kind;
    Response (Scripts::*answer)(const Query&) const;
};

Scripts::Scripts(ScriptSources sources)
    : m_sources(std::move(sources))
    , m_messages(m_sources.keys, m_sources.store, m_sources.report, m_sources.wrongCodesAlarm)
{
}

const Scripts::Script* Scripts::Find(std::string_view name)
{
    static constexpr Script kScripts[] = {
        {"requestProdID.pl", RequestKind::Identifier, &Scripts::RequestProdID},
        // Never refused: the program waits for this reply before it opens its window.
        {"startup.pl", std::nullopt, &Scripts::Startup},
        {"getAd.pl", RequestKind::Strip, &Scripts::GetAd},
        {"version.pl", RequestKind::Version, &Scripts::Version},
    };
    const auto* const found = std::find_if(std::begin(kScripts), std::end(kScripts),
                                           [name](const Script& script) { return script.name == name; });
    return found == std::end(kScripts) ? nullptr : found;
}

std::string_view Scripts::NameOf(std::string_view path)
{
    if (!path.starts_with(kFolder)) {
        return "unknown";
    }
    const std::string_view name = path.substr(kFolder.size());
    for (const std::string_view script : {kPrayerCall, kConfirmSignup}) {
        if (name == script) {
            return script;
        }
    }
    const Script* const found = Find(name);
    return found != nullptr ? found->name : PlaceScriptName(name);
}

boost::asio::awaitable<Response> Scripts::Answer(const Request& request)
{
    if (request.method != Method::Get && request.method != Method::Head) {
        Response refusal = ScriptFailure(405, "This address takes GET and HEAD.\n");
        refusal.headers.push_back({"Allow", "GET, HEAD"});
        co_return refusal;
    }
    const std::string_view name = std::string_view(request.path).substr(kFolder.size());
    const Query query(request.query);
    if (const std::optional<RequestKind> kind = KindOf(name)) {
        if (const auto refusal =
                m_sources.limits.Refuse(*kind, request, TrimmedValue(query, kInstallation))) {
            co_return Refused(*kind, *refusal, query);
        }
    }
    if (name == kPrayerCall) {
        const auto places = m_sources.places.Get();
        co_return co_await m_messages.PrayerCall(query, places.get());
    }
    if (name == kConfirmSignup) {
        co_return co_await m_messages.ConfirmSignup(query, request, m_sources.elapsed());
    }
    if (const Script* const script = Find(name); script != nullptr) {
        co_return (this->*script->answer)(query);
    }
    co_return AnswerFromPlaces(m_sources.places.Get().get(), name, query, m_sources.now());
}

std::optional<RequestKind> Scripts::KindOf(std::string_view name)
{
    if (name == kPrayerCall) {
        return std::nullopt;
    }
    if (name == kConfirmSignup) {
        return RequestKind::Confirmation;
    }
    const Script* const script = Find(name);
    return script == nullptr ? RequestKind::Search : script->kind;
}

Response Scripts::Refused(RequestKind kind, const Refusal& refusal, const Query& query) const
{
    switch (kind) {
    case RequestKind::Strip:
        // After a failure the program would not ask for a newer version.
        return StripReply(nullptr, TrimmedValue(query, kInstallation));
    case RequestKind::Version:
        return VersionReply(nullptr);
    case RequestKind::Confirmation:
        return RefusedConfirmation();
    default:
        return RefusalReply(refusal);
    }
}

Response Scripts::RequestProdID(const Query& /*query*/) const
{
    XmlReply reply;
    reply.Attribute("prod_string",
                    MakeInstallationIdentifier(m_sources.keys.identifier, DayOf(m_sources.now())));
    return ScriptReply(std::move(reply));
}

Response Scripts::Startup(const Query& query) const
{
    const std::string dist = TrimmedValue(query, "dist_string");
    const auto dists = m_sources.dists.Get();
    m_sources.starts.Add(DayOf(m_sources.now()), CountryOf(TrimmedValue(query, "aid")),
                         dists != nullptr && dists->contains(dist) ? dist : "other");
    return ScriptReply(XmlReply());
}

Response Scripts::GetAd(const Query& query) const
{
    const std::string identifier = TrimmedValue(query, kInstallation);
    const auto announcements = m_sources.announcements.Get();
    const Strip* const strip =
        announcements == nullptr ? nullptr
                                 : ChooseStrip(*announcements, identifier, TrimmedValue(query, "dist_string"),
                                               CountryOf(TrimmedValue(query, "aid")), m_sources.now());
    return StripReply(strip, identifier);
}

Response Scripts::Version(const Query& query) const
{
    const auto announcements = m_sources.announcements.Get();
    const Release* const release =
        announcements == nullptr
            ? nullptr
            : NewerRelease(*announcements, TrimmedValue(query, "curr_v"), TrimmedValue(query, "curr_s"));
    return VersionReply(release);
}

std::string Scripts::CountryOf(std::string_view atlasId) const
{
    const auto places = m_sources.places.Get();
    const auto place = places == nullptr ? std::nullopt : places->ByAtlasId(atlasId);
    return place ? place->country : "ZZ";
}

} // namespace beacond
