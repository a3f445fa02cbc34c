// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"

/// The icon in the notification area of Windows.
class WindowsTrayIcon final : public TrayIcon
{
public:
    void Add(const QIcon& icon, const QString& tip, QMenu& menu) override;
    void Remove() override;
    [[nodiscard]] bool IsShown() const override;
};
