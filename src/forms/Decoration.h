// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Hides the widgets whose property "isDecoration" is true in their .ui file from screen readers: lines, and
/// notes that another control has as its description. Call once, before the first window is made.
void InstallDecorationAccessibility();
