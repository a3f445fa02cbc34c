// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

struct Platform;

/// The connectivity probe and four text codecs.
class InternetClass final
{
public:
    explicit InternetClass(const Platform& platform)
        : m_platform(platform)
    {
    }

    /// Whether a public web site could be reached. Blocks for as long as the request takes, at most 5
    /// seconds.
    [[nodiscard]] bool VerifyConnectivity() const;

private:
    const Platform& m_platform;
};
