// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FrmMain.h"

#include "app/DlgStart.h"
#include "app/FirstStart.h"
#include "app/MainControls.h"
#include "forms/Forms.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Http.h"
#include "platform/MediaPlayer.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "service/InternetClass.h"
#include "service/ServiceAddresses.h"
#include "service/ServiceRequests.h"
#include "service/VersionCheck.h"
#include "store/SimpleXML.h"
#include "support/Conversions.h"
#include "support/RuntimeError.h"

#include <QScopeGuard>

#include <utility>

namespace {

constexpr int kSplashMilliseconds = 2000;
constexpr float kTicksPerSkyRefresh = 300.0F;
constexpr int kMillisecondsPerMinute = 60'000;

// The scheduler takes hundredths of a degree, rounded down. Intended: 36.73 becomes 3672, since the product
// of doubles is slightly less than 3673.
std::int16_t Hundredths(double degrees)
{
    return ToInteger16(Int(degrees * 100.0));
}

std::int16_t Integer16(bool value)
{
    return value ? std::int16_t{-1} : std::int16_t{0};
}

} // namespace

FrmMain::FrmMain(Forms& forms, Calculation& calculation)
    : Form(forms, kName,
           Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
               Qt::WindowCloseButtonHint)
    , m_controls(std::make_unique<MainControls>(*this))
    , PrayerTimer(GetPlatform(), calculation)
    , m_display(GetPlatform(), Variables().Settings, PrayerTimer, *m_controls)
    , m_links(*this, *m_controls)
    , m_tray(*this)
    , m_life(*this)
    , m_sound(*this, *m_controls)
    , m_adPanel(*this)
    , m_alerts(forms, PrayerTimer)
{
    // Set the position before the desktop maps the window: the list of places is centred over it on the first
    // start.
    CentreOver(nullptr);
    PrayerTimer.events.Tick = [this] { OnTick(); };
    PrayerTimer.events.Midnight = [this] { UpdateEverything(); };
    PrayerTimer.events.Alarm = [this](std::int16_t PrayerID) { OnAlarm(PrayerID); };
    PrayerTimer.events.AdvAlarm = [this](std::int16_t PrayerID) { m_alerts.AdvAlarm(PrayerID); };
    forms.SetMain(*this);
}

FrmMain::~FrmMain() = default;

void FrmMain::OnLoad()
{
    try {
        RunLoadSequence();
    } catch (const RuntimeError& error) {
        FailLoad(error.Description(), error.Number());
    }
}

void FrmMain::OnUnload()
{
    // The scheduler and the player stop with this window, even if an open dialog keeps the program running.
    PrayerTimer.StopTimer();
    GetPlatform().player.Stop();
    if (!Variables().DebugMode) {
        m_tray.RemoveMeFromSysTray();
    }
}

void FrmMain::OnGotFocus()
{
    Refresh();
}

void FrmMain::RunLoadSequence()
{
    MainVariables& variables = Variables();
    variables.DebugMode = false;
    auto& splash = Siblings().Touch<DlgStart>();
    splash.Show();
    splash.PaintNow();
    variables.AdTimer = AdPanel::kDefaultAdTimer;
    // Only to let the user see the splash window.
    GetPlatform().process.Sleep(kSplashMilliseconds);

    SkySeconds = 0.0F;
    variables.Connected = false;
    SimpleXML settings(GetPlatform());
    if (!settings.Load(kSettingsFile)) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("settings.xml can't be loaded"));
    }
    ReadAddresses(variables.Settings, settings);
    variables.Connected =
        InternetClass(GetPlatform(), ServiceAddresses::Probe(variables.Settings)).VerifyConnectivity();
    const bool OpenLocationList = NeedsIdentifier(settings, variables.Connected);
    if (OpenLocationList) {
        RequestIdentifier(GetPlatform(), settings, variables.Settings);
    }
    UpdateEverything();
    variables.ActiveForm = Name();
    AskService();
    if (!variables.DebugMode) {
        m_tray.PutMeInSysTray();
    }
    Siblings().Unload(DlgStart::kName);
    if (OpenLocationList && IsLoaded()) {
        OpenLocationListNow();
    }
}

void FrmMain::AskService()
{
    const MainVariables& variables = Variables();
    if (variables.Connected) {
        GetPlatform().http.Notify(ServiceRequests::Startup(variables.Settings), kNotifyLimits);
    }
    // Sets Connected anew: after an ad that could not be fetched the version is not requested either.
    m_adPanel.RefreshAd(variables.Connected);
    VersionCheck(*this).CheckNewVersion(variables.Connected);
}

void FrmMain::OpenLocationListNow()
{
    // Not a click on the label: an alert may have disabled the window and its links meanwhile.
    m_links.ClickLblLocLink();
}

void FrmMain::FailLoad(const QString& description, int number)
{
    if (Variables().DebugMode) {
        GetPlatform().boxes.Show(
            QStringLiteral("%1 %2 on %3").arg(description, QString::number(number), Variables().ActiveForm));
    }
    GetPlatform().boxes.Show(QStringLiteral("An error has occured, The application will be terminated."),
                             QStringLiteral("Error - 5"));
    Siblings().Unload(DlgStart::kName);
    GetPlatform().process.End();
}

int FrmMain::UpdateEverything()
{
    if (!IsLoaded()) {
        return 0;
    }
    try {
        LoadConfiguration(Variables().Settings, GetPlatform());
        FeedFromConfiguration();
        return 1;
    } catch (const RuntimeError& error) {
        // A file without a usable configuration changes nothing and shows no message.
        if (error.Number() != ErrorNumber::kConfiguration) {
            EndWithFatalBox(GetPlatform(), 6);
        }
        return 0;
    }
}

void FrmMain::FeedFromConfiguration()
{
    m_sound.ShowVolume();
    PopLocation();
    const Configuration& settings = Variables().Settings;
    PrayerTimer.SetupPTimer(
        Hundredths(settings.LatitudeFinal), Hundredths(settings.LongitudeFinal), settings.ZoneHours,
        Integer16(settings.UseDayLight), MultiplyInteger16(settings.FajrAngle, 100),
        MultiplyInteger16(settings.IshaAngle, 100), Integer16(settings.UseAdvAlert), settings.AdvAlertMinutes,
        Integer16(true), settings.MinutesBeyondZone.value_or(0));
    PrayerTimer.StartTimer();
    m_display.ShowQibla();
    m_display.RefreshSkyPicture();
    PopPrayerFrame();
}

void FrmMain::PopLocation()
{
    if (IsLoaded()) {
        m_display.PopLocation();
    }
}

void FrmMain::PopPrayerFrame()
{
    if (IsLoaded()) {
        m_display.PopPrayerFrame();
    }
}

void FrmMain::Enable(bool enabled)
{
    if (IsLoaded()) {
        Form::Enable(enabled);
    }
}

void FrmMain::TakeFocus()
{
    if (IsLoaded() && isVisible() && isEnabled()) {
        SetFocus();
    }
}

void FrmMain::EnableStopLink()
{
    if (IsLoaded()) {
        m_controls->LblStopLink->setEnabled(true);
    }
}

void FrmMain::RefreshAd()
{
    if (IsLoaded()) {
        m_adPanel.RefreshAd(true);
    }
}

void FrmMain::OnTick()
{
    // Read the clock before the work below: a tick just before second 0 must not be treated as the tick of
    // second 0.
    const int second = GetPlatform().clock.Now().time().second();
    SkySeconds += 1.0F;
    AdSeconds += 1.0F;
    m_display.UpdateCountDown();
    if (SkySeconds >= kTicksPerSkyRefresh) {
        m_display.RefreshSkyPicture();
        SkySeconds = 0.0F;
    }
    RefreshAdIfDue(second);
}

void FrmMain::OnAlarm(std::int16_t PrayerID)
{
    const bool isInsideAnother = std::exchange(m_isAlarmUnderWay, true);
    const auto end = qScopeGuard([this, isInsideAnother] { m_isAlarmUnderWay = isInsideAnother; });
    m_alerts.Alarm(PrayerID);
}

void FrmMain::RefreshAdIfDue(int second)
{
    // Intended: a test for equality. An AdTimer below the count stops the refreshes until it is raised again.
    if (AdSeconds != Variables().AdTimer && !(m_isAdPostponed && second > 0)) {
        return;
    }
    // The refresh starts with the probe, which blocks the ticks. If the tick of second 0 is missed, its
    // alerts are lost, and at midnight the new day; so near the end of a minute the refresh waits for second
    // 1. A probe that starts in second 0 does no harm: this is the tick that is compared with the alerts.
    // While an alarm waits for its reply, a refresh would delay the sound.
    m_isAdPostponed =
        m_isAlarmUnderWay || second * 1000 + Http::kLongestReachMilliseconds >= kMillisecondsPerMinute;
    if (!m_isAdPostponed) {
        m_adPanel.RefreshAd(true);
        AdSeconds = 0.0F;
    }
}
