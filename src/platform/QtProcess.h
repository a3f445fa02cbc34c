// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Process.h"

/// This process.
class QtProcess final : public Process
{
public:
    void End() override;
    void Sleep(int milliseconds) override;
    [[nodiscard]] QString ApplicationFolder() const override;
    [[nodiscard]] QString UserDataFolder() const override;
};
