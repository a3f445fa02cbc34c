// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SystemProcess.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSystemTrayIcon>

#include <windows.h>

#include <cstdlib>
#include <string>

namespace {

QString ProgramFolder()
{
    constexpr DWORD kLongest = 32767;
    std::wstring name(kLongest, L'\0');
    name.resize(::GetModuleFileNameW(nullptr, name.data(), kLongest));
    return QFileInfo(QString::fromStdWString(name)).path();
}

} // namespace

void PrepareProcess()
{
    ::SetDllDirectoryW(L"");
    // Installers of other programs set these for the whole system; the plugins there fit another Qt.
    qunsetenv("QT_PLUGIN_PATH");
    qunsetenv("QT_QPA_PLATFORM_PLUGIN_PATH");
    QCoreApplication::setLibraryPaths({ProgramFolder()});
}

void EndAtOnce(int exitCode)
{
    if (const QCoreApplication* const application = QCoreApplication::instance(); application != nullptr) {
        for (QSystemTrayIcon* const icon : application->findChildren<QSystemTrayIcon*>()) {
            icon->hide();
        }
    }
    // Not _Exit(), which runs the end of each DLL after its threads were cut off: one of them may have held a
    // lock that such an end waits for.
    ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(exitCode));
    std::abort();
}
