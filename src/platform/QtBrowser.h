// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Browser.h"

/// Hands pages to the desktop's choice of a browser.
class QtBrowser final : public Browser
{
public:
    void Open(const QString& url) override;
};
