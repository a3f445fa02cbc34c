// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class MainForm;

/// Makes the main window the one with the user's attention again.
void ReturnToMain(MainForm& main);
