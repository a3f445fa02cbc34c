// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzTarget.h"

#include <QApplication>
#include <QFont>

// The font library hides its pointers, so their blocks look leaked while the application lives.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

// For the targets that show windows: the application object, on no display, locale and zone pinned as in the
// tests.
int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("TZ", "UTC");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("LANG", "C.UTF-8");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Drop the warnings of the offscreen platform about features that it lacks.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
        if (type == QtCriticalMsg || type == QtFatalMsg) {
            std::fprintf(stderr, "%s\n", qPrintable(message));
        }
    });
    static int count = 1;
    // Never destroyed: the fuzzer ends by exit, when it is too late to destroy Qt objects.
    static const auto* const application = new QApplication(count, *argv);
    static_cast<void>(application);
    QApplication::setQuitOnLastWindowClosed(false);
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);
    return *argc > 0 ? 0 : 1;
}
