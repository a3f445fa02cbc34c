// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtDesktop.h"

#include "platform/BesideBox.h"
#include "platform/SystemProcess.h"

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

// The identifier of the user's locale, the only one that is known here.
constexpr std::uint32_t kUserLocale = 0x400;

bool StaysOnTop(const QWidget& window)
{
    return window.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
}

/// Placed by the window manager, but moved if a window that stays on top would cover its buttons.
class Box final : public QMessageBox
{
protected:
    void showEvent(QShowEvent* event) override
    {
        // Sets the final size.
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

// The window below a new box; nullptr if another program is active.
QWindow* WindowInFront()
{
    if (const QWidget* const modal = QApplication::activeModalWidget(); modal != nullptr) {
        return modal->windowHandle();
    }
    // A window that stays on top becomes a transient child of the box and can't be its parent too.
    const QWidget* const active = QApplication::activeWindow();
    return active == nullptr || StaysOnTop(*active) ? nullptr : active->windowHandle();
}

int Execute(const QString& text, const QString& title, QMessageBox::StandardButtons buttons,
            QMessageBox::StandardButton defaultButton)
{
    // Texts of the service may have any length, and a longer box would not fit on a screen.
    constexpr int kLongestText = 1024;
    // A transient parent and no parent: the window below may be destroyed while the box is open, as the main
    // window may, and would destroy its children.
    Box box;
    box.winId();
    box.windowHandle()->setTransientParent(WindowInFront());
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title);
    box.setText(text.left(kLongestText));
    box.setStandardButtons(buttons);
    box.setDefaultButton(defaultButton);
    const int answer = box.exec();
    if (box.clickedButton() == nullptr) {
        // The program ends, perhaps since its last window was closed. The user gave no answer, so the caller
        // must not continue. Intended: the exit status is 0 under a fatal box too.
        EndAtOnce(EXIT_SUCCESS);
    }
    return answer;
}

} // namespace

void QtBrowser::Open(const QString& url)
{
    const QUrl address(url, QUrl::TolerantMode);
    // Addresses of the service must not reach the handlers of file:, smb: or any other scheme.
    if (address.isValid() && !address.host().isEmpty() &&
        (address.scheme() == u"http" || address.scheme() == u"https")) {
        QDesktopServices::openUrl(address);
    }
}

void QtMessageBoxes::Show(const QString& text, const QString& title)
{
    Execute(text, title, QMessageBox::Ok, QMessageBox::Ok);
}

bool QtMessageBoxes::Ask(const QString& text, const QString& title, DefaultAnswer defaultAnswer)
{
    return Execute(text, title, QMessageBox::Yes | QMessageBox::No,
                   defaultAnswer == DefaultAnswer::Yes ? QMessageBox::Yes : QMessageBox::No) ==
           QMessageBox::Yes;
}

void QtProcess::End()
{
    // Without destructors: they would unload windows, which a fatal end must not do.
    EndAtOnce(EXIT_FAILURE);
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
