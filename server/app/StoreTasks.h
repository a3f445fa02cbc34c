// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "protocol/Announcements.h"
#include "support/Latest.h"

#include <boost/asio/awaitable.hpp>

namespace beacond {

class Signups;
class StartCounter;
class StoreThread;

/// The current strips and releases of the store. Throws StoreError.
[[nodiscard]] std::shared_ptr<const Announcements> ReadAnnouncements(const Store& store);

/// The periodic calls of the store. A call that fails is logged and repeated at its next time.
class StoreTasks final
{
public:
    /// All references must outlive the coroutines.
    StoreTasks(StoreThread& store, Latest<Announcements>& announcements, StartCounter& starts,
               Signups& signups);

    /// Applies changes of strips and releases by another process within two seconds. Does not end.
    [[nodiscard]] boost::asio::awaitable<void> FollowAnnouncements();
    /// Stores the counted starts and drops old sign-ups once a minute. Does not end.
    [[nodiscard]] boost::asio::awaitable<void> TidyEveryMinute();
    /// Deletes devices after a year of silence: looks for them at once, then once an hour. Does not end.
    [[nodiscard]] boost::asio::awaitable<void> DropSilentDevices();
    /// Stores the starts counted so far; keeps them counted if that fails.
    [[nodiscard]] boost::asio::awaitable<void> StoreStarts();

private:
    StoreThread& m_store;
    Latest<Announcements>& m_announcements;
    StartCounter& m_starts;
    Signups& m_signups;
};

} // namespace beacond
