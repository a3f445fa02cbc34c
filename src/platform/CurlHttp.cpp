// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlHttp.h"

bool CurlHttp::Reach(const QString& /*url*/)
{
    return false;
}

Http::Reply CurlHttp::Fetch(const QString& /*url*/, const HttpLimits& /*limits*/)
{
    return std::nullopt;
}

void CurlHttp::FetchInBackground(const QString& /*url*/, const HttpLimits& /*limits*/, QObject* /*context*/,
                                 std::function<void(Reply)> done)
{
    done(std::nullopt);
}
