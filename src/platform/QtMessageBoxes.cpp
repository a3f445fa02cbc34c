// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtMessageBoxes.h"

#include <QApplication>
#include <QMessageBox>

namespace {

int Execute(const QString& text, const QString& title, QMessageBox::StandardButtons buttons)
{
    // A text that a service sends may be of any length; what no screen can hold is left out.
    constexpr int kLongestText = 1024;
    QMessageBox box(QApplication::activeWindow());
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
