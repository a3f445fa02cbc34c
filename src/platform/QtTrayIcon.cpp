// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtTrayIcon.h"

#include "platform/BesideBox.h"

#include <QApplication>
#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QIcon>
#include <QMenu>
#include <QMouseEvent>
#include <QSystemTrayIcon>
#include <QWidget>

namespace {

// Class of Qt's window inside the host, which receives the mouse events of an embedded icon.
constexpr const char* kEmbeddedIconClass = "QSystemTrayIconSys";

// Asks the session bus with a short time-out: a panel that hangs must not block the program.
bool IsStatusNotifierHostThere()
{
    constexpr int kLongestWaitMilliseconds = 500;
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    QDBusMessage question = QDBusMessage::createMethodCall(watcher, QStringLiteral("/StatusNotifierWatcher"),
                                                           QStringLiteral("org.freedesktop.DBus.Properties"),
                                                           QStringLiteral("Get"));
    question << watcher << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(question, QDBus::Block, kLongestWaitMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty() &&
           answer.arguments().constFirst().value<QDBusVariant>().variant().toBool();
}

} // namespace

QtTrayIcon::QtTrayIcon() = default;

QtTrayIcon::~QtTrayIcon() = default;

void QtTrayIcon::Add(const QIcon& icon, const QString& tip, QMenu& menu)
{
    m_menu = &menu;
    m_icon = std::make_unique<QSystemTrayIcon>(icon);
    m_icon->setToolTip(tip);
    m_icon->setContextMenu(&menu);
    // Some hosts do not draw the exported menu and ask the program to show its own.
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Context) {
                    PopUpMenu(QCursor::pos());
                }
            });
    // Added once. Qt shows the icon again when a panel restarts, which is wanted: without the icon a hidden
    // window could not be shown again.
    m_icon->show();
    m_usesStatusNotifier = IsStatusNotifierHostThere();
    qApp->installEventFilter(this);
}

void QtTrayIcon::Remove()
{
    if (m_icon == nullptr) {
        return;
    }
    qApp->removeEventFilter(this);
    // Remove may be called from a slot of one of the icon's signals.
    m_icon->disconnect(this);
    m_icon->hide();
    m_icon.release()->deleteLater();
}

bool QtTrayIcon::IsShown() const
{
    if (m_icon == nullptr) {
        return false;
    }
    // An embedded icon has a geometry exactly while a host shows it. With StatusNotifier only the host knows
    // the geometry.
    return !m_icon->geometry().isEmpty() || (m_usesStatusNotifier && IsStatusNotifierHostThere());
}

bool QtTrayIcon::eventFilter(QObject* watched, QEvent* event)
{
    const bool isBlocked = event->type() == QEvent::WindowBlocked;
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    const bool isRelease = event->type() == QEvent::MouseButtonRelease;
    if ((!isBlocked && !isPress && !isRelease) || !watched->inherits(kEmbeddedIconClass)) {
        return false;
    }
    if (isBlocked) {
        UnblockWindow(*static_cast<QWidget*>(watched));
        return false;
    }
    // Qt opens the menu of an embedded icon on the press; it must open on the release.
    const auto* const mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() != Qt::RightButton) {
        return false;
    }
    if (isRelease && static_cast<QWidget*>(watched)->rect().contains(mouse->position().toPoint())) {
        PopUpMenu(mouse->globalPosition().toPoint());
    }
    return true;
}

void QtTrayIcon::PopUpMenu(const QPoint& position)
{
    if (m_menu != nullptr) {
        m_menu->popup(position);
        // The menu gets no keyboard focus otherwise if no window of the program is active.
        m_menu->activateWindow();
    }
}
