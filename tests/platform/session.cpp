// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SessionEnd.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMessageBox>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace {

/// Refuses to close, as a disabled window does.
class StubbornWindow final : public QWidget
{
protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

void Print(const QByteArray& line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

} // namespace

// A program with a window that refuses to close, "shown", "hidden", "disabled" or under a message "box" as
// its argument says. Prints the number of the window, and a line when the end of the session comes.
int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    SessionEnd sessionEnd;
    StubbornWindow window;
    const QByteArray state = argc > 1 ? argv[1] : "";
    QMessageBox box;
    QPixmap pixels(16, 16);
    pixels.fill(Qt::red);
    QSystemTrayIcon icon{QIcon(pixels)};
    icon.show();
    window.show();
    window.setVisible(state != "hidden");
    window.setEnabled(state != "disabled");
    sessionEnd.EnterMainLoop([] { Print("tidied"); });
    QTimer::singleShot(0, &window, [&] {
        QTimer::singleShot(0, &window, [&] { Print(QByteArray::number(quint64(window.winId()))); });
        if (state == "box") {
            box.exec();
        }
    });
    return QApplication::exec();
}
