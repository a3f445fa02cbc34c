// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "alerts/AlertDispatch.h"
#include "app/MainLinks.h"
#include "app/PrayerDisplay.h"
#include "app/WindowLife.h"
#include "engine/PTimer.h"
#include "forms/Form.h"
#include "forms/MainForm.h"
#include "service/AdPanel.h"

#include <memory>

struct MainControls;

/// The main window and the centre of the program.
class FrmMain final : public Form, public MainForm
{
    Q_OBJECT

public:
    FrmMain(Forms& forms, Calculation& calculation);
    ~FrmMain() override;

    int UpdateEverything() override;
    void PopLocation() override;
    void PopPrayerFrame() override;
    void Enable(bool enabled) override;
    void TakeFocus() override;
    void EnableStopLink() override;
    void RefreshAd() override;

protected:
    void OnLoad() override;
    void OnUnload() override;
    void OnGotFocus() override;

private:
    void RunLoadSequence();
    void AskService();
    void OpenLocationListNow();
    void FailLoad(const QString& description, int number);
    void FeedFromConfiguration();
    void OnTick();
    void OnAlarm(std::int16_t PrayerID);
    /// @param second of the tick, 0 to 59
    void RefreshAdIfDue(int second);

    std::unique_ptr<MainControls> m_controls;
    PTimer PrayerTimer;
    PrayerDisplay m_display;
    MainLinks m_links;
    MainTray m_tray;
    WindowLife m_life;
    SoundControls m_sound;
    AdPanel m_adPanel;
    AlertDispatch m_alerts;

    /// Ticks since the last refresh of the sky picture and of the ad by a tick. A refresh for another reason,
    /// such as that of an alarm, does not count.
    float SkySeconds = 0.0F;
    float AdSeconds = 0.0F;
    /// A refresh of the ad is due and waits for a later tick.
    bool m_isAdPostponed = false;
    bool m_isAlarmUnderWay = false;
};
