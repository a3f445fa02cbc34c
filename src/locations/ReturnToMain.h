// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class Forms;

/// Makes the main window the one with the user's attention again.
void ReturnToMain(Forms& forms);
