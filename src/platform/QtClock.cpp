// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtClock.h"

#include <ctime>

QDateTime QtClock::Now() const
{
    // The zone may be changed under a program that runs for years.
    ::tzset();
    return QDateTime::currentDateTime();
}
