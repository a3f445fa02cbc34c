// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The start and the end of the process where the systems differ.

/// Call it first in main(). On Windows no library and no plugin is then looked for in the working directory
/// or in a folder that the environment of another program names.
void PrepareProcess();

/// Ends the process without destructors. On Windows it removes the tray icon, which would remain until the
/// mouse touches it. Call it on the main thread.
[[noreturn]] void EndAtOnce(int exitCode);
