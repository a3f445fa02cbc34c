// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/MemoryFiles.h"
#include "soak/DueAlerts.h"
#include "soak/ProgramWorld.h"

#include <random>

/// A service that is there, is not, talks nonsense or takes its time.
class MoodyService final : public Http
{
public:
    enum class Mood { kWell, kSlow, kGarbage, kGone };

    [[nodiscard]] bool Reach(const QString& /*url*/) override { return mood != Mood::kGone; }
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& limits) override;
    void Notify(const QString& url, const HttpLimits& limits) override
    {
        static_cast<void>(Fetch(url, limits));
    }
    void FetchInBackground(const QString& /*url*/, const HttpLimits& /*limits*/, QObject* /*context*/,
                           std::function<void(Reply)> /*done*/) override
    {
    }

    Mood mood = Mood::kWell;
    /// Runs while a request is under way, as events do.
    std::function<void(const QString& url)> whileWaiting;
};

/// Files of which those that are saved lie in memory: a year of saves is hard on a disk, and says nothing
/// here.
class MemoryOverDisk final : public FileStore
{
public:
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override
    {
        const auto saved = m_memory.Read(path, limit);
        return saved ? saved : m_disk.Read(path, limit);
    }
    bool Replace(const QString& path, const QByteArray& content) override
    {
        return m_memory.Replace(path, content);
    }
    bool Write(const QString& path, const QByteArray& content) override
    {
        return m_memory.Write(path, content);
    }

private:
    MemoryFiles m_memory;
    PosixFileStore m_disk;
};

/// The program and its second account side by side, under one clock and one user.
class SoakWorld
{
public:
    explicit SoakWorld(unsigned seed);

    /// Lets seconds pass until the clock has been moved on by so many days.
    void PassDays(int days);

    /// What differed first; empty if nothing did.
    [[nodiscard]] const QString& Difference() const { return m_difference; }

    DueAlerts model;
    int given = 0;
    qint64 ticks = 0;
    int deeds = 0;
    int clockChanges = 0;
    int faults = 0;
    int hangs = 0;

private:
    void PassSecond();
    void FirePopupTimer();
    void OnRequest(const QString& url);
    void ObservePopup();
    void ObserveSound();
    void Give(const QString& what);
    void Compare();
    void CompareFile();
    void Differ(const QString& what);

    // Deeds.
    void Act();
    void LoadGeneralPage();
    void ChooseTab(int page);
    void ScheduleNextDeed();
    void OpenAlerts();
    void ActInAlerts();
    void ActOnGeneralOrPrayerPage();
    void ActOnGeneralPage();
    void ActOnPrayerPage(int prayer);
    void CloseAlerts();
    void OpenPlaces();
    void ActInPlaces();
    void MinimiseOrOpen();
    void ChangeClock();
    void ChangeOutside();

    [[nodiscard]] bool CanClick(const QString& window, const char* name) const;
    [[nodiscard]] bool IsAlertsOpen() const { return m_world.IsUp(FrmAlerts::kName); }
    [[nodiscard]] QDate Today() const { return m_world.platform.clock.now.date(); }
    [[nodiscard]] int Roll(int sides) { return static_cast<int>(m_random() % static_cast<unsigned>(sides)); }
    [[nodiscard]] bool Chance(int percent) { return Roll(100) < percent; }

    std::mt19937 m_random;
    MoodyService m_service;
    MemoryOverDisk m_files;
    ProgramWorld m_world;
    QTemporaryDir m_copy;
    CalculationLibrary m_calculation;
    std::vector<DueAlerts::Tick*> m_ticking;
    QStringList m_given;
    QString m_difference;
    /// The page of the settings dialog: 0 for the general one, 1 to 6 for a prayer.
    int m_page = 0;
    /// Where the bar beside the minutes of the advance warning stands.
    int m_minutesBar = 30;
    int m_untilDeed = 1;
    int m_untilOk = -1;
};
