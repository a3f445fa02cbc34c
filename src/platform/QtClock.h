// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"

/// The computer's clock in the computer's time zone.
class QtClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override;
};
