// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MessageBoxes.h"

/// Message boxes as windows of their own.
class QtMessageBoxes final : public MessageBoxes
{
public:
    void Show(const QString& text, const QString& title) override;
    [[nodiscard]] bool Ask(const QString& text, const QString& title) override;
};
