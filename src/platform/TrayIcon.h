// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QIcon;
class QMenu;

/// The entry in the notification area. Nothing reports a failure: without a notification area there is no
/// icon.
class TrayIcon
{
public:
    TrayIcon() = default;
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    virtual ~TrayIcon() = default;

    /// @param menu opens when the right mouse button is released over the icon; must outlive the icon
    virtual void Add(const QIcon& icon, const QString& tip, QMenu& menu) = 0;
    /// Harmless when there is no icon.
    virtual void Remove() = 0;
    /// True while a notification area shows the icon.
    [[nodiscard]] virtual bool IsShown() const = 0;
};
