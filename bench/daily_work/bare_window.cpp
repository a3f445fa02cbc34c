// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The lower limit for the measurements: a window of the program's size with one label that a timer rewrites
// each second.
#include <QApplication>
#include <QFont>
#include <QLabel>
#include <QTimer>
#include <QWidget>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Bare window"));
    window.setFixedSize(602, 423);
    auto* const label = new QLabel(QStringLiteral("0"), &window);
    label->setGeometry(8, 8, 100, 16);
    int seconds = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, label,
                     [label, &seconds] { label->setText(QString::number(++seconds)); });
    timer.start(1000);
    window.show();
    return QApplication::exec();
}
