// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CalculationLibrary.h"

#include <QDate>
#include <QStringList>
#include <QTime>

#include <array>
#include <cstdint>
#include <map>

/// A second account of the program: which alerts are due, and what each of them does, written from the rules
/// alone. It shares nothing with the program but the calculation's functions, of which it has its own copy.
class DueAlerts
{
public:
    struct Place
    {
        QString atlasId;
        QString name;
        /// As the file has them.
        QString latitude;
        QString longitude;
        int zoneHours = 0;
    };
    struct Prayer
    {
        bool enabled = true;
        bool popup = true;
        bool mobil = false;
        bool play = false;
        QString audioFile;
    };
    /// What settings.xml holds.
    struct File
    {
        QString current;
        QString method = QStringLiteral("ISNA");
        int angle1 = -15;
        int angle2 = -15;
        bool useAdvWarn = true;
        int advWarn = 10;
        QString asr = QStringLiteral("shafi");
        bool useDls = false;
        QString hourMode = QStringLiteral("24");
        /// Fajr, Shuruq, Duhr, Asr, Maghrib, Isha.
        std::array<Prayer, 6> prayers;
    };
    /// One tick of the scheduler, which may last longer than its second.
    struct Tick
    {
        QTime time;
        bool isPastAlarm = false;
        bool isPastWarning = false;
        QString sound;
        bool hasSound = false;
    };

    DueAlerts(Calculation& calculation, std::map<QString, Place> places);

    // What the user does, on a day.
    void Start(const QDate& today);
    void OpenAlerts();
    void CloseAlerts(const QDate& today);
    void OpenPlaces();
    void ChoosePlace(const QString& key, const QDate& today);
    void ClosePlaces();
    void PressOk() { EndPopup(); }

    // What the clock does, in this order.
    /// Up to the request to the service.
    void PassAlarm(Tick& tick, const QDate& today);
    /// When the service has answered.
    void PassAnswer(const Tick& tick);
    void PassWarning(Tick& tick);
    void PassPopupSecond();

    File file;
    /// The window that has the attention; alerts come while it is the main window.
    QString activeForm;
    bool isMainEnabled = true;
    bool isPopupUp = false;
    /// Slots 1 to 10 of the day that was computed last. The name without the underscore is a keyword of Qt.
    std::array<int, 10> slots_{};
    /// What has been due since somebody last took it, in order.
    QStringList due;
    int alarms = 0;
    int warnings = 0;
    /// Slots that came while another window had the attention or the prayer was off.
    int dropped = 0;

private:
    void UpdateEverything(const QDate& today);
    void ShowPopup(const QString& text, int seconds);
    void EndPopup();
    [[nodiscard]] int SlotAt(int minute) const;
    [[nodiscard]] bool IsOn(int slot, const QString& asr) const;
    [[nodiscard]] const Prayer& PrayerOf(int slot) const;
    [[nodiscard]] QString Clock(int minute, bool is24Hour) const;

    Calculation& m_calculation;
    std::map<QString, Place> m_places;
    /// The file as the program last read it.
    File m_taken;
    int m_popupSeconds = 0;
    int m_popupLimit = 0;
};
