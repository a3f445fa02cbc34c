// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class SimpleXML;
struct Configuration;
struct Platform;

/// Requests the installation identifier from the service on the first start, and at later starts while there
/// is none.
class FirstStart final
{
public:
    explicit FirstStart(const Platform& platform)
        : m_platform(platform)
    {
    }

    [[nodiscard]] static bool IsDue(const SimpleXML& settings, bool isConnected);
    /// Sends the request to the service address in @p configuration and saves the identifier in settings.xml.
    /// A failed request is not an error: the next start repeats it. Throws kInvalidCall if the identifier
    /// can't be written.
    void Run(SimpleXML& settings, const Configuration& configuration) const;

private:
    const Platform& m_platform;
};
