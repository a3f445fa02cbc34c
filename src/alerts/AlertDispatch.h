// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

class Forms;
class PTimer;
class SimpleXML;
struct Configuration;
struct Prayer;

/// Decides what happens when a prayer is due, or is about to be: reads the prayer's settings afresh and fires
/// what they ask for. Keeps no state between two events.
///
/// Nothing here shows a message: a run-time error goes to whoever raised the event.
class AlertDispatch final
{
public:
    AlertDispatch(Forms& forms, const PTimer& prayerTimer);

    /// The minute of a slot has come: popup, request to the service, sound and ad, in this order. Serves
    /// events while it waits for the reply to the request, for at most 3 seconds. A message box or another
    /// wait that such an event opens has to end first, and holds the sound back until then.
    /// @param PrayerID slot 1 to 10; any other is passed over
    void Alarm(std::int16_t PrayerID);
    /// The minute of a slot is AdvAlertMinutes away: a popup and nothing else, also for a prayer whose own
    /// popup is off.
    void AdvAlarm(std::int16_t PrayerID);

private:
    [[nodiscard]] bool MainWindowHasAttention() const;
    [[nodiscard]] bool IsMainWindowThere() const;
    [[nodiscard]] const Configuration& Settings() const;
    void TellService(const Prayer& prayer, const SimpleXML& settings, bool wantsMobile,
                     bool wantsSound) const;

    Forms& m_forms;
    const PTimer& m_prayerTimer;
};
