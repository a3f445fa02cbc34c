// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WindowsTrayIcon.h"

void WindowsTrayIcon::Add(const QIcon& /*icon*/, const QString& /*tip*/, QMenu& /*menu*/) {}

void WindowsTrayIcon::Remove() {}

bool WindowsTrayIcon::IsShown() const
{
    return false;
}
