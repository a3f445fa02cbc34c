// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QApplication;
class SessionEnd;
struct Platform;

/// Sets up the appearance, the desktop file and the accessibility that all windows share.
void SetUpApplication(QApplication& application);

/// Makes the folder of settings.xml the working directory: the program's own folder if the file lies there (a
/// build tree, a portable copy), otherwise the user's data folder.
void EnterSettingsFolder(const Platform& platform);

/// Runs the program from the first window to the last; answers the exit code.
int RunProgram(const Platform& platform, SessionEnd& sessionEnd);
