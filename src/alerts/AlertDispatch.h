// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

class Forms;
class PTimer;
class SimpleXML;
struct Configuration;
struct Prayer;

/// Handles the events of the scheduler: reads the settings of the prayer afresh and starts the alerts that
/// are set there. Keeps no state between two events.
///
/// Shows no message box: a RuntimeError goes to the caller, which has raised the event.
class AlertDispatch final
{
public:
    AlertDispatch(Forms& forms, const PTimer& prayerTimer);

    /// The time of a slot has come: popup, request to the service, sound and ad, in this order. Serves events
    /// while it waits for the reply to the request, for at most 3 seconds. If such an event opens a message
    /// box or waits itself, the sound starts after that has ended.
    /// @param PrayerID slot 1 to 10; any other number is ignored
    void Alarm(std::int16_t PrayerID);
    /// The time of a slot is AdvAlertMinutes away: only a popup, even for a prayer whose own popup is off.
    void AdvAlarm(std::int16_t PrayerID);

private:
    [[nodiscard]] bool MainWindowHasAttention() const;
    [[nodiscard]] bool IsMainWindowLoaded() const;
    [[nodiscard]] const Configuration& Settings() const;
    void TellService(const Prayer& prayer, const SimpleXML& settings, bool wantsMobile,
                     bool wantsSound) const;

    Forms& m_forms;
    const PTimer& m_prayerTimer;
};
