// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "platform/QtPlatform.h"
#include "platform/SessionEnd.h"
#include "platform/SystemProcess.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    PrepareProcess();
    QApplication application(argc, argv);
    SessionEnd sessionEnd;
    SetUpApplication(application);
    const QtPlatform platform;
    EnterSettingsFolder(platform.GetPlatform());
    return RunProgram(platform.GetPlatform(), sessionEnd);
}
