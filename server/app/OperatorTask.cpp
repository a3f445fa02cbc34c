// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/OperatorTask.h"

#include "app/Log.h"
#include "messages/Address.h"
#include "messages/Channels.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

constexpr auto kInterval = 5s;
// A notice that can't be sent is repeated with the next one, after an hour.
constexpr auto kNoticeLifetime = 1h;

Channel* ChannelOf(const Channels& channels, const std::string& address)
{
    const std::optional<Address> parsed = ParseAddress(address);
    return parsed ? channels.ForKind(NameOf(parsed->kind)) : nullptr;
}

} // namespace

OperatorTask::OperatorTask(StoreThread& store, const Channels& channels, const Settings::Operator& settings,
                           std::int64_t spendPerDay, std::chrono::seconds retry)
    : m_store(store)
    , m_channels(channels)
    , m_address(settings.address)
    , m_spendPerDay(spendPerDay)
    , m_retry(retry)
    , m_channel(ChannelOf(channels, settings.address))
    , m_alerts(settings.limits)
{
    if (!m_address.empty() && m_channel == nullptr) {
        LogWarning("operator.address: no channel serves addresses of its kind; only the log tells");
    }
}

asio::awaitable<void> OperatorTask::FollowSending()
{
    asio::steady_timer timer(co_await asio::this_coro::executor);
    for (;;) {
        try {
            const SendingFigures figures = co_await Figures();
            for (const OperatorNotice& notice :
                 m_alerts.Update(figures, OperatorAlerts::Time::clock::now())) {
                Take(notice);
            }
            co_await SendWaiting();
        } catch (const std::exception& error) {
            LogError(error.what());
        }
        timer.expires_after(kInterval);
        co_await timer.async_wait(asio::use_awaitable);
    }
}

asio::awaitable<SendingFigures> OperatorTask::Figures()
{
    auto read = [](const Store& store) { return store.StateOfOutbox(); };
    const OutboxState outbox = co_await m_store.Run(read);
    SendingFigures figures{.oldestWaiting = std::chrono::seconds(outbox.oldestAge),
                           .spentToday = outbox.spentToday,
                           .spendPerDay = m_spendPerDay};
    for (const std::unique_ptr<Channel>& channel : m_channels.All()) {
        figures.failuresInARow[channel->Name()] = channel->FailuresInARow();
    }
    co_return figures;
}

void OperatorTask::Take(const OperatorNotice& notice)
{
    const std::string text = "messages: " + notice.text;
    notice.isOver ? LogInfo(text) : LogError(text);
    if (m_channel != nullptr) {
        m_waiting.push_back({notice.text, "operator-" + std::to_string(RandomBelow(1U << 31U)),
                             OperatorAlerts::Time::clock::now() + kNoticeLifetime});
    }
}

asio::awaitable<void> OperatorTask::SendWaiting()
{
    while (!m_waiting.empty() && OperatorAlerts::Time::clock::now() >= m_nextAttempt) {
        const OutgoingMessage message{.address = m_address,
                                      .subject = "dusk-beacond: the sending of messages",
                                      .text = m_waiting.front().text + '.',
                                      .id = m_waiting.front().id,
                                      .language = "en"};
        auto send = [channel = m_channel, message]() -> asio::awaitable<SendResult> {
            co_return channel->Send(message);
        };
        const SendResult result = co_await asio::co_spawn(m_sender, send, asio::use_awaitable);
        const OperatorAlerts::Time now = OperatorAlerts::Time::clock::now();
        // A notice that arrives twice does less harm than one that does not arrive.
        const bool mayBeMissing =
            result.handover == Handover::RetryLater || result.handover == Handover::Unknown;
        if (mayBeMissing && now < m_waiting.front().until) {
            m_nextAttempt = now + m_retry;
            co_return;
        }
        m_waiting.pop_front();
    }
}

void OperatorTask::Join()
{
    if (m_channel != nullptr) {
        m_channel->Abort();
    }
    m_sender.join();
}

} // namespace beacond
