// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"

#include "alerts/FrmPopup.h"
#include "app/Appearance.h"
#include "app/DlgStart.h"
#include "app/FrmMain.h"
#include "engine/CalculationLibrary.h"
#include "forms/Decoration.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"
#include "locations/FrmWait.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "platform/SessionEnd.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"
#include "store/Configuration.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

void SetUpApplication(QApplication& application)
{
    SetAppearance();
    application.setQuitOnLastWindowClosed(false);
    // Panels read the icon and the name from the desktop file.
    QGuiApplication::setDesktopFileName(QStringLiteral("dusk-beacon"));
    InstallLinkAccessibility();
    InstallDecorationAccessibility();
    InstallPopupAccessibility();
}

void EnterSettingsFolder(const Platform& platform)
{
    const QString own = platform.process.ApplicationFolder();
    const bool isPortable = QFileInfo::exists(own + u'/' + kSettingsFile);
    // If the user's data folder can't be entered, use the program's folder: a settings.xml in the folder from
    // which the program was started may belong to something else.
    if (isPortable || !QDir::setCurrent(platform.process.UserDataFolder())) {
        QDir::setCurrent(own);
    }
}

int RunProgram(const Platform& platform, SessionEnd& sessionEnd)
{
    CalculationLibrary calculation(platform.process.ApplicationFolder());
    Forms forms(platform);
    MobileSignup mobileSignup(forms);
    forms.Register(DlgStart::kName, [&] { return std::make_unique<DlgStart>(forms); });
    forms.Register(FrmMain::kName, [&] { return std::make_unique<FrmMain>(forms, calculation); });
    forms.Register(FrmAlerts::kName, [&] { return std::make_unique<FrmAlerts>(forms, mobileSignup); });
    forms.Register(FrmLocation::kName, [&] { return std::make_unique<FrmLocation>(forms); });
    forms.Register(FrmNewLoc::kName, [&] { return std::make_unique<FrmNewLoc>(forms); });
    forms.Register(FrmPopup::kName, [&] { return std::make_unique<FrmPopup>(forms); });
    forms.Register(FrmWait::kName, [&] { return std::make_unique<FrmWait>(forms); });

    bool isOver = false;
    forms.SetLastUnloadedHandler([&isOver] {
        isOver = true;
        QCoreApplication::exit(0);
    });
    RunGuarded(platform, [&] { forms.Touch<FrmMain>().Show(); });
    sessionEnd.EnterMainLoop([&platform] { platform.tray.Remove(); });
    // If the program ends while the first window loads, there is no event loop yet that exit() could end.
    return isOver ? 0 : QCoreApplication::exec();
}
