// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Http.h"

/// HTTP over libcurl.
class CurlHttp final : public Http
{
public:
    [[nodiscard]] bool Reach(const QString& url) override;
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& limits) override;
    void FetchInBackground(const QString& url, const HttpLimits& limits, QObject* context,
                           std::function<void(Reply)> done) override;
};
