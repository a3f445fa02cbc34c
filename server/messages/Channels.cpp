// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Channels.h"

#include "messages/ChannelTypes.h"
#include "messages/Spool.h"

#include <optional>

namespace beacond {

namespace {

class SpoolChannel final : public Channel
{
public:
    explicit SpoolChannel(const ChannelOptions& options)
        : Channel(options)
        , m_spool(options.folder)
    {
    }

private:
    SendResult SendNow(const OutgoingMessage& message) override
    {
        const std::optional<std::string> warning = m_spool.Send(message.address, message.text);
        return {Handover::Accepted, warning.value_or(std::string())};
    }

    Spool m_spool;
};

std::unique_ptr<Channel> MakeChannel(const ChannelOptions& options)
{
    if (options.type == "spool") {
        return std::make_unique<SpoolChannel>(options);
    }
    if (options.type == "smtp") {
        return MakeSmtpChannel(options);
    }
    if (options.type == "http") {
        return MakeHttpChannel(options);
    }
    if (options.type == "ntfy") {
        return MakeNtfyChannel(options);
    }
    throw ChannelError(options.name + ": no type of channel is called \"" + options.type + '"');
}

} // namespace

Channels::Channels(const std::vector<ChannelOptions>& options)
{
    for (const ChannelOptions& channel : options) {
        if (ForKind(channel.kind) != nullptr) {
            throw ChannelError(channel.name + ": there is another channel for addresses of the kind \"" +
                               channel.kind + '"');
        }
        m_channels.push_back(MakeChannel(channel));
    }
}

Channel* Channels::ForKind(std::string_view kind) const
{
    for (const std::unique_ptr<Channel>& channel : m_channels) {
        if (channel->Kind() == kind) {
            return channel.get();
        }
    }
    return nullptr;
}

double Channels::PerSecond(std::string_view kind) const
{
    const Channel* const channel = ForKind(kind);
    return channel == nullptr ? 0 : channel->PerSecond();
}

void Channels::Abort() const
{
    for (const std::unique_ptr<Channel>& channel : m_channels) {
        channel->Abort();
    }
}

} // namespace beacond
