// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The user's web browser.
class Browser
{
public:
    Browser() = default;
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;
    virtual ~Browser() = default;

    /// Opens http and https addresses only; anything else is an open that failed. Nothing reports a failure.
    virtual void Open(const QString& url) = 0;
};
