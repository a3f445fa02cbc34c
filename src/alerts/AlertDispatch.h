// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

class Forms;
class MainForm;
class PTimer;
class SimpleXML;
struct Prayer;

/// What an alert asks of its neighbours. Each may be left unset and is then passed over.
struct AlertHooks
{
    /// The address of the request that tells the service of a prayer call; takes pno, alert_type, ma and
    /// time.
    std::function<QString(int pno, const QString& alertType, const QString& ma, const QString& time)>
        PrayerCall;
    /// Greys the stop link, or lets it take clicks.
    std::function<void(bool enabled)> EnableStopLink;
    std::function<void(bool fetch)> RefreshAd;
};

/// Decides what happens when a prayer is due, or is about to be: reads the prayer's settings afresh and fires
/// what they ask for. Keeps no state between two events.
///
/// Nothing here shows a message: a run-time error goes to whoever raised the event.
class AlertDispatch final
{
public:
    AlertDispatch(Forms& forms, const PTimer& prayerTimer, AlertHooks hooks);

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
    [[nodiscard]] const MainForm& Main() const;
    void TellService(const Prayer& prayer, const SimpleXML& settings, bool wantsMobile,
                     bool wantsSound) const;

    Forms& m_forms;
    const PTimer& m_prayerTimer;
    AlertHooks m_hooks;
};
