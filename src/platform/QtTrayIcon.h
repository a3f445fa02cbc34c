// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"

#include <QObject>
#include <QPointer>

#include <memory>

class QMenu;
class QSystemTrayIcon;

/// The tray icon of Qt, with both protocols: StatusNotifier over D-Bus, where the host draws the exported
/// menu, and the older XEmbed, where a window of this program is embedded into the host's.
class QtTrayIcon final : public QObject, public TrayIcon
{
    Q_OBJECT

public:
    QtTrayIcon();
    ~QtTrayIcon() override;

    void Add(const QIcon& icon, const QString& tip, QMenu& menu) override;
    void Remove() override;
    [[nodiscard]] bool IsShown() const override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void PopUpMenu(const QPoint& position);

    std::unique_ptr<QSystemTrayIcon> m_icon;
    QPointer<QMenu> m_menu;
    /// Qt chooses the protocol once in a process.
    bool m_usesStatusNotifier = false;
};
