// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"

/// A megabyte and 0.6 s in all, for servers that never finish.
inline constexpr HttpLimits kShort{1024 * 1024, 1, 600};

[[nodiscard]] inline QByteArray Text(const Http::Reply& reply)
{
    return reply ? *reply : QByteArray("(nothing)");
}
