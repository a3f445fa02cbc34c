// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/MessageScripts.h"

#include "messages/PersonalCode.h"
#include "messages/TextWording.h"
#include "places/Places.h"
#include "protocol/Reply.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"
#include "support/Network.h"

#include <optional>

namespace beacond {

namespace {

// Wrong codes of one household within an hour. The code is the only secret, so that guessing must be slow.
constexpr int kMostWrongCodes = 10;

// Of an installation with texts. The service's own identifiers are longer; those of other services count too,
// but a short one could be guessed by others, who would have texts sent.
constexpr std::size_t kShortestIdentifier = 16;

struct WantedText
{
    int prayer = 0;
    std::string time;
    std::string place;
};

// The text that a call asks for. The numbers of the prayers, 1 to 6, are those of src/engine/Prayers.h. A
// message contains only a validated time and the service's own place identifier.
std::optional<WantedText> TextOf(const Query& query, const Places* places)
{
    const std::string prayer = TrimmedValue(query, "pno");
    WantedText text{0, TrimmedValue(query, "time"), {}};
    if (TrimmedValue(query, "ma") != "1" || prayer.size() != 1 || prayer < "1" || prayer > "6" ||
        !IsClockTime(text.time)) {
        return std::nullopt;
    }
    text.prayer = prayer[0] - '0';
    if (places != nullptr) {
        if (const auto place = places->ByAtlasId(TrimmedValue(query, "aid"))) {
            text.place = place->atlasId;
        }
    }
    return text;
}

Response ConfirmationReply(bool isConfirmed, std::string_view message)
{
    XmlReply reply;
    reply.Attribute("result", isConfirmed ? "1" : "0");
    // Always send a message: without one the program says that it could not verify the settings.
    reply.Attribute("message", message);
    return ScriptReply(std::move(reply));
}

std::string_view MessageOf(Confirmation confirmation)
{
    switch (confirmation) {
    case Confirmation::Confirmed:
        return "Your mobile device is registered. Tick Enable Mobile Alerts, then choose its messages on the "
               "page of each prayer. The message with the code says how to end them.";
    case Confirmation::Expired:
        return "This personal code has expired: it is valid for 30 minutes. Please sign up again for a new "
               "one.";
    case Confirmation::Unknown:
        break;
    }
    return "This personal code is not known. Please check its 16 digits, or sign up again for a new one. A "
           "code registers one installation only.";
}

} // namespace

Response RefusedConfirmation()
{
    return ConfirmationReply(false, "Too many requests come in just now. Please try again in a minute.");
}

MessageScripts::MessageScripts(const Keys& keys, StoreThread& store, Report report, int wrongCodesAlarm)
    : m_keys(keys)
    , m_store(store)
    , m_report(std::move(report))
    , m_wrongCodes(kMostWrongCodes, std::chrono::hours(1))
    , m_wrongCodesAlarm(wrongCodesAlarm)
    , m_wrongCodesOfAll(wrongCodesAlarm, std::chrono::hours(1))
{
}

std::string MessageScripts::HashOfInstallation(std::string_view identifier) const
{
    return m_keys.lookup.Hash("installation", identifier);
}

boost::asio::awaitable<Response> MessageScripts::PrayerCall(const Query& query, const Places* places)
{
    const std::optional<WantedText> text = TextOf(query, places);
    const std::string identifier = TrimmedValue(query, "prod_string");
    if (!text || identifier.empty()) {
        co_return ScriptReply(XmlReply());
    }
    const std::string installation = HashOfInstallation(identifier);
    // A named variable: see docs/service.md.
    auto isDue = [installation, prayer = text->prayer](const Store& store) {
        return store.IsTextDue(installation, prayer);
    };
    auto queue = [installation, text = *text](Store& store) {
        return store.QueueText(installation, text.prayer, text.time, text.place);
    };
    const StoreCall::Clock::time_point begin = StoreCall::Clock::now();
    try {
        // These calls are never refused: invented identifiers must not keep the writes of others waiting.
        bool isQueued = co_await m_store.Run(std::move(isDue), begin);
        if (isQueued) {
            isQueued = co_await m_store.Run(std::move(queue), begin);
        }
        if (isQueued) {
            ++m_figures.textsQueued;
        }
    } catch (const StoreError& error) {
        m_report(error.what());
        ++m_figures.textsMissed;
        co_return ScriptFailure(503, "The text could not be stored.\n");
    }
    co_return ScriptReply(XmlReply());
}

boost::asio::awaitable<Response> MessageScripts::ConfirmSignup(const Query& query, const Request& request,
                                                               AttemptLimit::Time now)
{
    const std::string identifier = TrimmedValue(query, "prod_string");
    if (identifier.size() < kShortestIdentifier) {
        co_return ConfirmationReply(false,
                                    "This installation is not known yet. Please start Dusk Beacon again "
                                    "while the computer is connected to the Internet, then register.");
    }
    const std::string network = NetworkOf(request.client);
    // Count the attempt before the store is asked, so that simultaneous attempts count too.
    if (!m_wrongCodes.TryConsume(network, now)) {
        ++m_figures.codesLimited;
        co_return ConfirmationReply(false, "Too many wrong codes. Please try again in an hour.");
    }
    Confirmation confirmation = Confirmation::Unknown;
    if (const std::optional<std::string> digits = DigitsOfPersonalCode(query.Value("vCode"))) {
        auto confirm = [code = m_keys.lookup.Hash("personal code", *digits),
                        installation = HashOfInstallation(identifier)](Store& store) {
            return store.Confirm(code, installation);
        };
        try {
            confirmation = co_await m_store.Run(std::move(confirm));
        } catch (const StoreError& error) {
            m_report(error.what());
            m_wrongCodes.GiveBack(network);
            co_return ConfirmationReply(false,
                                        "The service can't store anything just now. Please try again later.");
        }
    }
    Count(confirmation, now);
    const bool isConfirmed = confirmation == Confirmation::Confirmed;
    if (isConfirmed) {
        m_wrongCodes.GiveBack(network);
    }
    co_return ConfirmationReply(isConfirmed, MessageOf(confirmation));
}

void MessageScripts::Count(Confirmation confirmation, AttemptLimit::Time now)
{
    if (confirmation == Confirmation::Confirmed) {
        ++m_figures.codesConfirmed;
        return;
    }
    if (confirmation == Confirmation::Expired) {
        ++m_figures.codesExpired;
        return;
    }
    ++m_figures.codesWrong;
    // A network has few attempts, so that many wrong codes together come from many networks.
    if (!m_wrongCodesOfAll.TryConsume("all", now) && m_alarms.TryConsume("all", now)) {
        m_report("more than " + std::to_string(m_wrongCodesAlarm) + " wrong personal codes within an hour");
    }
}

} // namespace beacond
