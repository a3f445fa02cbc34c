// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Timers.h"

class Clock;

/// Timers on Qt's event loop.
class QtTimers final : public Timers
{
public:
    explicit QtTimers(const Clock& clock)
        : m_clock(clock)
    {
    }
    [[nodiscard]] std::unique_ptr<Timer> CreateTimer() override;
    [[nodiscard]] std::unique_ptr<Timer> CreateSecondTicker() override;

private:
    const Clock& m_clock;
};
