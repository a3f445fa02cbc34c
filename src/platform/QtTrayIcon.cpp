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

// Qt's own window inside the host, the only one through which an embedded icon gets its mouse.
constexpr const char* kEmbeddedIconClass = "QSystemTrayIconSys";

// Asked of the session bus, with a short wait: a panel that hangs must not hang the program.
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
    // Some hosts draw no exported menu and ask the program for its own one instead.
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Context) {
                    PopUpMenu(QCursor::pos());
                }
            });
    // Once: the program's own logic adds its icon at no other time. That the toolkit and a panel that comes
    // again find each other is kept all the same: without it nothing could bring a hidden window back.
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
    // Removal may be asked for from within one of the icon's own signals.
    m_icon->disconnect(this);
    m_icon->hide();
    m_icon.release()->deleteLater();
}

bool QtTrayIcon::IsShown() const
{
    if (m_icon == nullptr) {
        return false;
    }
    // An embedded icon has a place on the screen exactly while a host holds it. Where the other kind is drawn
    // only its host knows.
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
    // Qt opens the menu of an embedded icon when the button goes down; it is to open when it comes up.
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
        // Without a window of the program in front nothing else gives the menu the keyboard.
        m_menu->activateWindow();
    }
}
