// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtDesktop.h"

#include "platform/BesideBox.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QScreen>
#include <QShowEvent>
#include <QStandardPaths>
#include <QThread>
#include <QUrl>
#include <QWindow>

#include <algorithm>
#include <cstdlib>

namespace {

// One locale is known here: the user's own.
constexpr std::uint32_t kUserLocale = 0x400;

bool StaysOnTop(const QWidget& window)
{
    return window.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
}

/// Comes up where the window manager puts it, but clear of a window that stays on top, which would cover its
/// buttons.
class Box final : public QMessageBox
{
protected:
    void showEvent(QShowEvent* event) override
    {
        // It has its size behind this.
        QMessageBox::showEvent(event);
        const std::vector<const QWidget*> onTop = ShownWindows(StaysOnTop);
        if (event->spontaneous() || onTop.empty()) {
            return;
        }
        const QWindow* const below = windowHandle()->transientParent();
        const QRect area =
            (below == nullptr ? onTop.front()->screen() : below->screen())->availableGeometry();
        MoveClear(*this, below == nullptr ? area : below->frameGeometry(), onTop, area);
    }
};

// The window that a box comes up in front of; none if another program is in front.
QWindow* WindowInFront()
{
    if (const QWidget* const modal = QApplication::activeModalWidget(); modal != nullptr) {
        return modal->windowHandle();
    }
    // One that stays on top is put in front of the box, and can't be behind it as well.
    const QWidget* const active = QApplication::activeWindow();
    return active == nullptr || StaysOnTop(*active) ? nullptr : active->windowHandle();
}

int Execute(const QString& text, const QString& title, QMessageBox::StandardButtons buttons)
{
    // A text that a service sends may be of any length; what no screen can hold is left out.
    constexpr int kLongestText = 1024;
    // In front of the window in front, but not its child: that window may go by itself while the box waits,
    // as the main window does, and would take its children with it.
    Box box;
    box.winId();
    box.windowHandle()->setTransientParent(WindowInFront());
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title);
    box.setText(text.left(kLongestText));
    box.setStandardButtons(buttons);
    const int answer = box.exec();
    if (box.clickedButton() == nullptr) {
        // The program was told to end, also by the close of its last window. The user gave no answer, so the
        // caller must not go on. Intended: the status is 0 under a fatal box too.
        std::_Exit(EXIT_SUCCESS);
    }
    return answer;
}

} // namespace

void QtBrowser::Open(const QString& url)
{
    const QUrl address(url, QUrl::TolerantMode);
    // What a service sends must not reach the handlers of file:, smb: or any other scheme.
    if (address.isValid() && !address.host().isEmpty() &&
        (address.scheme() == u"http" || address.scheme() == u"https")) {
        QDesktopServices::openUrl(address);
    }
}

void QtMessageBoxes::Show(const QString& text, const QString& title)
{
    Execute(text, title, QMessageBox::Ok);
}

bool QtMessageBoxes::Ask(const QString& text, const QString& title)
{
    return Execute(text, title, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

void QtProcess::End()
{
    // Destructors would unload windows, and that is what a fatal end must not do.
    std::_Exit(EXIT_FAILURE);
}

void QtProcess::Sleep(int milliseconds)
{
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

QString QtProcess::ApplicationFolder() const
{
    return QCoreApplication::applicationDirPath();
}

QString QtProcess::UserDataFolder() const
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/dusk-beacon");
}

std::uint32_t QtRegionalSettings::GetUserDefaultLCID() const
{
    return kUserLocale;
}

int QtRegionalSettings::GetLocaleInfo(std::uint32_t lcid, std::uint32_t lctype, QChar* buffer,
                                      int length) const
{
    if (lcid != kUserLocale || lctype != LOCALE_SDECIMAL) {
        return 0;
    }
    const QString sign = UserLocale().decimalPoint();
    const int needed = static_cast<int>(sign.size()) + 1;
    if (length == 0) {
        return needed;
    }
    if (length < needed) {
        return 0;
    }
    std::copy(sign.begin(), sign.end(), buffer);
    buffer[sign.size()] = QChar();
    return needed;
}

QLocale QtRegionalSettings::UserLocale() const
{
    return QLocale::system();
}
