// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtMessageBoxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QWindow>

namespace {

int Execute(const QString& text, const QString& title, QMessageBox::StandardButtons buttons)
{
    // A text that a service sends may be of any length; what no screen can hold is left out.
    constexpr int kLongestText = 1024;
    // In front of the window in front, but not its child: that window may go by itself while the box waits,
    // as a popup does, and would take its children with it.
    QMessageBox box;
    if (const QWidget* const active = QApplication::activeWindow();
        active != nullptr && active->windowHandle() != nullptr) {
        box.winId();
        box.windowHandle()->setTransientParent(active->windowHandle());
    }
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title);
    box.setText(text.left(kLongestText));
    box.setStandardButtons(buttons);
    return box.exec();
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
