// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TrayIcon.h"

/// The tray icon of Qt, for both protocols in use.
class QtTrayIcon final : public TrayIcon
{
public:
    void Add(const QIcon& icon, const QString& tip, QMenu& menu) override;
    void Remove() override;
    [[nodiscard]] bool IsShown() const override;
};
