// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <QFont>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    // Fix locale and time zone, and a default display, so that results do not depend on the machine.
    qputenv("TZ", "UTC");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("LANG", "C.UTF-8");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);
    return RUN_ALL_TESTS();
}
