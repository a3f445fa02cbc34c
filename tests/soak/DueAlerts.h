// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CalculationLibrary.h"
#include "forms/MainForm.h"
#include "store/Configuration.h"

#include <QDate>
#include <QStringList>
#include <QTime>

#include <array>

class SimpleXML;
struct Platform;
struct Prayer;

/// The alerts that are due by the rules, from the settings that the program holds and the file. The tables of
/// prayers and the texts are the program's, stated by other tests; the calculation module is a second one.
class DueAlerts
{
public:
    /// One tick of the scheduler, which may last longer than its second.
    struct Tick
    {
        QTime time;
        bool isPastAlarm = false;
        bool isPastWarning = false;
        QString sound;
        bool hasSound = false;
    };

    DueAlerts(const Platform& platform, const Configuration& held, const QString& moduleFolder);

    /// The program has read the file. False if it holds anything else than the file.
    [[nodiscard]] bool Update();

    // The clock, in this order.
    /// Up to the request to the service. False if the new day was read wrongly.
    [[nodiscard]] bool PassAlarm(Tick& tick);
    void PassAnswer(const Tick& tick);
    void PassWarning(Tick& tick);
    void PassPopupSecond();
    /// Also when the user presses "OK".
    void EndPopup();

    /// The window that has the attention; alerts come while it is the main window.
    QString activeForm = MainForm::kName;
    bool isMainEnabled = true;
    bool isPopupUp = false;
    std::array<int, 10> minutes{};
    /// The alerts since the last comparison, in order.
    QStringList due;
    int alarms = 0;
    int warnings = 0;
    /// Slots that came while another window had the attention or the prayer was off.
    int dropped = 0;

private:
    void ShowPopup(const QString& text, int seconds);
    /// The prayer of the first slot at that minute.
    [[nodiscard]] const Prayer* PrayerAt(int minute) const;
    [[nodiscard]] bool IsOn(const Prayer& prayer, SimpleXML& file, const QString& asr);

    const Platform& m_platform;
    const Configuration& m_held;
    CalculationLibrary m_calculation;
    int m_popupSeconds = 0;
    int m_popupLimit = 0;
};
