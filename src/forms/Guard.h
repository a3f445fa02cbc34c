// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

struct Platform;

/// Runs a handler that the window system calls. What it lets through is shown, and the program ends: no
/// exception may cross the window system's frames.
void RunGuarded(const Platform& platform, const std::function<void()>& handler) noexcept;

/// The fatal box, "Error - @p number", and the end of the process.
void EndWithFatalBox(const Platform& platform, int number);
