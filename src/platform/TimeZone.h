// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Makes the C library take the time zone of the system anew: it may change while the program runs.
void ReadTimeZone();
