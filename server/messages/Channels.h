// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Channel.h"

#include <memory>
#include <string_view>
#include <vector>

namespace beacond {

/// The channels of the service, one at most for each kind of address.
class Channels final
{
public:
    Channels() = default;
    /// Opens each channel; sends nothing. Throws ChannelError if one can't be used, for instance since the
    /// file of its secret is missing.
    explicit Channels(const std::vector<ChannelOptions>& options);

    /// Null if there is none for that kind of address.
    [[nodiscard]] Channel* ForKind(std::string_view kind) const;
    [[nodiscard]] const std::vector<std::unique_ptr<Channel>>& All() const { return m_channels; }
    /// The messages of that kind that can be sent in a second; 0 without a channel.
    [[nodiscard]] double PerSecond(std::string_view kind) const;
    /// See Channel::Abort.
    void Abort() const;

private:
    std::vector<std::unique_ptr<Channel>> m_channels;
};

} // namespace beacond
