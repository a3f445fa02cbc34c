// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Site.h"

#include "app/Log.h"
#include "http/Query.h"
#include "messages/Hooks.h"
#include "messages/Signups.h"
#include "pages/Pages.h"
#include "places/Places.h"
#include "store/StoreThread.h"
#include "support/Network.h"

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <chrono>
#include <iterator>

namespace beacond {

namespace {

constexpr std::string_view kHookFolder = "/hook/";
constexpr std::string_view kSoundPage = "/cgi-bin/dbeacon/sound/sound.pl";

Response Plain(unsigned status, std::string text)
{
    return {status, "text/plain; charset=utf-8", std::move(text), {{"Cache-Control", "no-store"}}};
}

Response OnlyFor(std::string methods)
{
    Response refusal = Plain(405, "This address takes " + methods + ".\n");
    refusal.headers.push_back({"Allow", std::move(methods)});
    return refusal;
}

// A name for the log. Only known paths are logged: other paths may hold a secret.
std::string_view LogName(std::string_view path)
{
    if (path.starts_with(kHookFolder)) {
        return kHookFolder;
    }
    static constexpr std::string_view kPages[] = {
        "/", "/dbeacon/help.html", "/downloads/", "/healthz", "/readyz", "/signup", kSoundPage};
    const auto* const page = std::find(std::begin(kPages), std::end(kPages), path);
    return page != std::end(kPages) ? *page : Scripts::NameOf(path);
}

// The sign-up address belongs to a person's mail or phone: without a channel for either its texts stay
// unanswered.
SignupOffer OfferOf(const Signups& signups, const std::string* address)
{
    const bool mail = signups.Serves(AddressKind::Mail);
    const bool hasAddress = address != nullptr && (mail || signups.Serves(AddressKind::Sms));
    return {mail, signups.Serves(AddressKind::Ntfy), signups.NeedsInvite(),
            hasAddress ? *address : std::string_view()};
}

} // namespace

Site::Site(ScriptSources sources, Signups& signups, Hooks& hooks, const Latest<std::string>& signupAddress)
    : m_sources(sources)
    , m_scripts(std::move(sources))
    , m_signups(signups)
    , m_hooks(hooks)
    , m_signupAddress(signupAddress)
{
}

boost::asio::awaitable<Response> Site::Answer(const Request& request)
{
    const auto begin = std::chrono::steady_clock::now();
    Response response = co_await AnswerAny(request);
    LogRequest(
        LogName(request.path), response.status,
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin));
    co_return response;
}

boost::asio::awaitable<Response> Site::AnswerAny(const Request& request)
{
    if (request.path.starts_with(Scripts::kFolder) && request.path != kSoundPage) {
        co_return co_await m_scripts.Answer(request);
    }
    const bool isHealthCheck = request.path == "/healthz" || request.path == "/readyz";
    if (!isHealthCheck) {
        if (const auto refusal = m_sources.limits.Refuse(RequestKind::Page, request, {})) {
            co_return RefusalReply(*refusal);
        }
    }
    if (request.path == "/signup") {
        co_return co_await AnswerSignup(request);
    }
    if (request.path.starts_with(kHookFolder)) {
        co_return co_await AnswerHook(request);
    }
    if (request.method != Method::Get && request.method != Method::Head) {
        co_return OnlyFor("GET, HEAD");
    }
    if (request.path == kSoundPage) {
        co_return SoundPage();
    }
    if (request.path == "/") {
        const auto address = m_signupAddress.Get();
        co_return HomePage(OfferOf(m_signups, address.get()));
    }
    if (request.path == "/dbeacon/help.html") {
        const auto address = m_signupAddress.Get();
        co_return HelpPage(OfferOf(m_signups, address.get()));
    }
    if (request.path == "/downloads/") {
        const auto announcements = m_sources.announcements.Get();
        co_return DownloadsPage(announcements == nullptr ? std::vector<Release>() : announcements->releases);
    }
    if (request.path == "/healthz") {
        co_return Plain(200, "ok\n");
    }
    if (request.path == "/readyz") {
        co_return Readiness();
    }
    co_return NotFoundPage();
}

boost::asio::awaitable<Response> Site::AnswerSignup(const Request& request)
{
    if (request.method != Method::Post) {
        co_return OnlyFor("POST");
    }
    if (!request.contentType.starts_with("application/x-www-form-urlencoded")) {
        co_return Plain(415, "A form is expected.\n");
    }
    // Another site's page could make its visitors sign up an address, each from an own network.
    for (const RequestField& field : request.fields) {
        if (field.name == "sec-fetch-site" && field.value == "cross-site") {
            co_return Plain(403, "The form of this service is expected.\n");
        }
    }
    const Query form(request.body, Query::Plus::Space);
    Signups::Form fields{form.Value("address"), form.Value("invite")};
    std::string network = NetworkOf(request.client);
    co_return SignupPage(
        co_await m_signups.SignUp(std::move(fields), std::move(network), m_sources.elapsed()));
}

// The replies have no text: some providers send it to the phone.
boost::asio::awaitable<Response> Site::AnswerHook(const Request& request)
{
    if (request.method != Method::Post) {
        co_return OnlyFor("POST");
    }
    std::string name = request.path.substr(kHookFolder.size());
    const std::string_view header = m_hooks.ProofHeader(name);
    std::string proof;
    for (const RequestField& field : request.fields) {
        if (boost::algorithm::iequals(field.name, header)) {
            proof = field.value;
        }
    }
    std::string body = request.body;
    const Hooks::Result result = co_await m_hooks.Post(std::move(name), std::move(proof), std::move(body),
                                                       m_sources.now(), m_sources.elapsed());
    switch (result) {
    case Hooks::Result::Done:
        co_return Plain(200, {});
    case Hooks::Result::Unknown:
        co_return Plain(404, {});
    case Hooks::Result::Malformed:
        co_return Plain(400, {});
    case Hooks::Result::Forged:
    case Hooks::Result::Old:
        co_return Plain(403, {});
    case Hooks::Result::Later:
        break;
    }
    co_return Plain(503, {});
}

Response Site::Readiness() const
{
    if (m_sources.places.Get() == nullptr) {
        return Plain(503, "no places are loaded\n");
    }
    // Use the result of the store's last call: the check must be answered while the store is stuck.
    switch (m_sources.store.State()) {
    case StoreState::Failing:
        return Plain(503, "the store fails; the log says why\n");
    case StoreState::Stuck:
        return Plain(503, "the store does not answer\n");
    case StoreState::Working:
        break;
    }
    return Plain(200, "ready\n");
}

} // namespace beacond
