// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/InternetClass.h"

#include "platform/Http.h"
#include "platform/Platform.h"

bool InternetClass::VerifyConnectivity() const
{
    return m_platform.http.Reach(QStringLiteral(DUSKBEACON_PROBE_URL));
}
