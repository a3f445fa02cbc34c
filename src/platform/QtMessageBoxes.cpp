// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtMessageBoxes.h"

#include "platform/BesideBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QShowEvent>
#include <QWindow>

#include <cstdlib>

namespace {

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

void QtMessageBoxes::Show(const QString& text, const QString& title)
{
    Execute(text, title, QMessageBox::Ok);
}

bool QtMessageBoxes::Ask(const QString& text, const QString& title)
{
    return Execute(text, title, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}
