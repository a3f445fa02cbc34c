// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"

#include <QTimer>

#include <memory>

class QSystemTrayIcon;

/// The tray icon of Qt, which opens the menu itself, and adds the icon again after the taskbar has restarted.
/// The shell may refuse an icon while it is busy, as after a sign-in: it is then added again until it is
/// there.
class WindowsTrayIcon final : public TrayIcon
{
public:
    WindowsTrayIcon();
    ~WindowsTrayIcon() override;

    void Add(const QIcon& icon, const QString& tip, QMenu& menu) override;
    void Remove() override;
    [[nodiscard]] bool IsShown() const override;

private:
    void AddAgain();

    std::unique_ptr<QSystemTrayIcon> m_icon;
    QTimer m_again;
};
