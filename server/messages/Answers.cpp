// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Answers.h"

#include "messages/Channels.h"
#include "secrets/Keys.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <atomic>
#include <chrono>
#include <thread>

namespace beacond {

namespace {

// Beyond this number the channel is too slow for the sign-ups that come in.
constexpr int kMostWaiting = 100;
// A person waits for the reply to the form, and a shutdown for the message.
constexpr std::chrono::seconds kLongestWait{3};

// Returns false, without a slot, after @p latest.
bool WaitForSlot(Channel& channel, Channel::Clock::time_point latest)
{
    while (Channel::Clock::now() <= latest) {
        if (const auto slot = channel.TakeSlot(Channel::Use::Answer)) {
            std::this_thread::sleep_until(*slot);
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

} // namespace

/// A channel with its threads.
struct Answers::Lane
{
    explicit Lane(Channel& used)
        : channel(used)
        , threads(static_cast<std::size_t>(used.Connections()))
    {
    }

    Channel& channel;
    std::atomic<int> waiting{0}; ///< messages that wait for a thread or for the channel
    boost::asio::thread_pool threads;
};

Answers::Answers(const Channels& channels, Report report)
    : m_report(std::move(report))
{
    for (const std::unique_ptr<Channel>& channel : channels.All()) {
        m_lanes.emplace(channel->Kind(), std::make_unique<Lane>(*channel));
    }
}

Answers::~Answers() = default;

std::uint64_t Answers::Waiting() const
{
    std::uint64_t waiting = 0;
    for (const auto& [kind, lane] : m_lanes) {
        waiting += static_cast<std::uint64_t>(lane->waiting.load());
    }
    return waiting;
}

void Answers::Join()
{
    for (const auto& [kind, lane] : m_lanes) {
        lane->threads.join();
    }
}

boost::asio::awaitable<Answers::Result> Answers::Send(Address address, std::string text)
{
    const auto found = m_lanes.find(NameOf(address.kind));
    if (found == m_lanes.end()) {
        co_return Result{Handover::RetryLater, false};
    }
    Lane& lane = *found->second;
    if (++lane.waiting > kMostWaiting) {
        --lane.waiting;
        m_report("a message is not sent: too many wait for the channel");
        co_return Result{Handover::RetryLater, true};
    }
    const OutgoingMessage message{.address = std::move(address.text),
                                  .subject = "Dusk Beacon: your personal code",
                                  .text = std::move(text),
                                  .id = "code-" + std::to_string(RandomBelow(1U << 31U)),
                                  .language = "en"};
    bool isBusy = false;
    const Channel::Clock::time_point latest = Channel::Clock::now() + kLongestWait;
    auto send = [&lane, &message, &isBusy, latest]() -> boost::asio::awaitable<SendResult> {
        isBusy = !WaitForSlot(lane.channel, latest);
        co_return isBusy ? SendResult{Handover::RetryLater, "a message is not sent: its channel is busy"}
                         : lane.channel.Send(message);
    };
    const SendResult result = co_await boost::asio::co_spawn(lane.threads, send, boost::asio::use_awaitable);
    --lane.waiting;
    if (!result.reason.empty()) {
        m_report(result.reason);
    }
    co_return Result{result.handover, isBusy};
}

} // namespace beacond
