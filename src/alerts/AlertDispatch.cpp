// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/AlertDispatch.h"

#include "alerts/FrmPopup.h"
#include "engine/PTimer.h"
#include "engine/Prayers.h"
#include "forms/Forms.h"
#include "platform/Http.h"
#include "platform/MediaPlayer.h"
#include "platform/Platform.h"
#include "service/ServiceRequests.h"
#include "store/SimpleXML.h"
#include "support/Conversions.h"

namespace {

const QString kTrue = QStringLiteral("true");
constexpr std::int16_t kAlarmSeconds = 600;

QString PathOf(QLatin1String element)
{
    return kAlertsPath + QStringLiteral("//") + element;
}

} // namespace

AlertDispatch::AlertDispatch(Forms& forms, const PTimer& prayerTimer)
    : m_forms(forms)
    , m_prayerTimer(prayerTimer)
{
}

void AlertDispatch::Alarm(std::int16_t PrayerID)
{
    if (!MainWindowHasAttention()) {
        return;
    }
    SimpleXML settings(m_forms.GetPlatform());
    settings.Load(kSettingsFile);
    const Prayer* const prayer = PrayerOfSlot(PrayerID);
    if (prayer == nullptr) {
        return;
    }
    const QString path = PathOf(prayer->element);
    // Intended: the Asr method is the one in memory, in AdvAlarm the one in the file. At most one of the two
    // Asr slots passes.
    if (settings.GetAttribute(QStringLiteral("enabled"), path) != kTrue ||
        !prayer->CountsUnder(Settings().AsrMethod)) {
        return;
    }
    const bool wantsPopup = settings.GetAttribute(QStringLiteral("popup"), path) == kTrue;
    const bool wantsMobile = settings.GetAttribute(QStringLiteral("mobil"), path) == kTrue;
    const bool wantsSound = settings.GetAttribute(QStringLiteral("play"), path) == kTrue;
    const QString audioFile = settings.GetAttribute(QStringLiteral("audioFile"), path);

    if (wantsPopup) {
        auto& popup = m_forms.Touch<FrmPopup>();
        // Intended: the alarm compares with "12", the advance warning with "24".
        const QString time =
            FormatPrayerTime(m_prayerTimer.GetPrayerTime(PrayerID), Settings().HourMode != u"12");
        popup.ShowPopup(QStringLiteral("Prayer Time:\r\n") + prayer->name + QStringLiteral(": ") + time,
                        kAlarmSeconds);
    }
    TellService(*prayer, settings, wantsMobile, wantsSound);
    if (!IsMainWindowLoaded()) {
        // The user has closed the main window during the request: no sound starts.
        return;
    }
    if (wantsSound) {
        m_forms.GetPlatform().player.SetUrl(audioFile);
        // Intended: also for a path that is empty or can't be played.
        m_forms.Main().EnableStopLink();
    }
    m_forms.Main().RefreshAd();
}

void AlertDispatch::TellService(const Prayer& prayer, const SimpleXML& settings, bool wantsMobile,
                                bool wantsSound) const
{
    const bool isConfirmed =
        settings.GetAttribute(QStringLiteral("mobileConfirm"), kAlertsPath) == QStringLiteral("1");
    const QString ma = wantsMobile && isConfirmed ? QStringLiteral("1") : QStringLiteral("0");
    const QString alertType = wantsSound ? QStringLiteral("Normal") : QStringLiteral("Quite");
    const QString time = FormatPrayerTime(m_prayerTimer.GetPrayerTime(prayer.slot), true);
    // Sent at every alarm, with or without a text message, with or without a network.
    m_forms.GetPlatform().http.Notify(
        ServiceRequests::PrayerCall(Settings(), prayer.number, alertType, ma, time), kNotifyLimits);
}

void AlertDispatch::AdvAlarm(std::int16_t PrayerID)
{
    if (!MainWindowHasAttention()) {
        return;
    }
    SimpleXML settings(m_forms.GetPlatform());
    settings.Load(kSettingsFile);
    const bool is24Hour = Settings().HourMode == u"24";
    const Prayer* const prayer = PrayerOfSlot(PrayerID);
    if (prayer == nullptr) {
        return;
    }
    if (settings.GetAttribute(QStringLiteral("enabled"), PathOf(prayer->element)) != kTrue ||
        !prayer->CountsUnder(settings.GetAttribute(QStringLiteral("asrMethode"), kAlertsPath))) {
        return;
    }
    const QString time = FormatPrayerTime(m_prayerTimer.GetPrayerTime(PrayerID), is24Hour);
    auto& popup = m_forms.Touch<FrmPopup>();
    // The popup ends 59 seconds before the prayer's own alarm, which would be dropped while the popup is
    // open. More than 547 minutes exceed the 16-bit range.
    const std::int16_t seconds =
        AddInteger16(MultiplyInteger16(AddInteger16(Settings().AdvAlertMinutes, -1), 60), 1);
    popup.ShowPopup(QStringLiteral("Advanced Alert\r\n") + prayer->name + u' ' + time, seconds);
}

bool AlertDispatch::MainWindowHasAttention() const
{
    // Intended: an alert that is due while another window is ActiveForm is dropped, not postponed.
    return IsMainWindowLoaded() && m_forms.Variables().ActiveForm == MainForm::kName;
}

bool AlertDispatch::IsMainWindowLoaded() const
{
    return m_forms.Loaded(MainForm::kName) != nullptr;
}

const Configuration& AlertDispatch::Settings() const
{
    return m_forms.Variables().Settings;
}
