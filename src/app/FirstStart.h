// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class SimpleXML;
struct Configuration;
struct Platform;

/// Fetches the installation identifier on the first start, or when there still is none.
class FirstStart final
{
public:
    explicit FirstStart(const Platform& platform)
        : m_platform(platform)
    {
    }

    [[nodiscard]] static bool IsDue(const SimpleXML& settings, bool isConnected);
    /// Asks the service, whose address @p configuration holds, and saves its answer in settings.xml. A
    /// request that fails is no error: the next start asks again. Throws kInvalidCall if the answer can't be
    /// written.
    void Run(SimpleXML& settings, const Configuration& configuration) const;

private:
    const Platform& m_platform;
};
