// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class Form;
class SimpleXML;
struct Configuration;
struct Platform;

/// Offers another version of the program, once at each start.
class VersionCheck final
{
public:
    /// @param window the main window; the check ends if it is unloaded meanwhile
    explicit VersionCheck(const Form& window);

    /// Asks the service if @p check is true and the probe is reached, and asks the user if the service has
    /// another version. Yes opens the download and ends the program; No silences the question for fourteen
    /// days. A failure is not reported.
    void CheckNewVersion(bool check);

private:
    void Check();
    [[nodiscard]] bool IsOther(const SimpleXML& reply) const;
    [[nodiscard]] bool IsSilenced(const SimpleXML& settings) const;
    void Offer(SimpleXML& settings, const SimpleXML& reply);

    const Form& m_window;
    const Platform& m_platform;
    const Configuration& m_configuration;
};
