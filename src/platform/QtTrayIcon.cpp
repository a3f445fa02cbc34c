// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtTrayIcon.h"

void QtTrayIcon::Add(const QIcon& /*icon*/, const QString& /*tip*/, QMenu& /*menu*/) {}

void QtTrayIcon::Remove() {}

bool QtTrayIcon::IsShown() const
{
    return false;
}
