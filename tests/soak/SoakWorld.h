// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/MemoryFiles.h"
#include "soak/DueAlerts.h"
#include "soak/ProgramWorld.h"

#include <random>

/// A service that answers, answers late, answers no XML or does not answer.
class ChangingService final : public Http
{
public:
    enum class State { kNormal, kSlow, kNoXml, kUnreachable };

    [[nodiscard]] bool Reach(const QString& /*url*/) override { return state != State::kUnreachable; }
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& limits) override;
    void Notify(const QString& url, const HttpLimits& limits) override
    {
        static_cast<void>(Fetch(url, limits));
    }
    void FetchInBackground(const QString& /*url*/, const HttpLimits& /*limits*/, QObject* /*context*/,
                           std::function<void(Reply)> /*done*/) override
    {
    }

    State state = State::kNormal;
    /// Runs while a request is under way, as events do.
    std::function<void(const QString& url)> whileWaiting;
};

/// Real files, of which saved ones lie in memory, so that a year of saves does not write to the disk.
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
    SystemFileStore m_disk;
};

/// The program and the rules of its alerts, with one clock and one random user.
class SoakWorld
{
public:
    /// A control of the settings dialog, and the attribute that has the value when it is chosen.
    struct Option
    {
        const char* control;
        const char* attribute;
        const char* value = "true";
    };

    explicit SoakWorld(unsigned seed);

    /// Lets seconds pass until the clock has been moved on by so many days.
    void PassDays(int days);

    /// The first difference; empty for none.
    [[nodiscard]] const QString& Difference() const { return m_difference; }

    int given = 0;
    qint64 ticks = 0;
    int actions = 0;
    int clockChanges = 0;
    int faults = 0;
    int hangs = 0;

private:
    void Update();
    void PassSecond();
    void PassAlarm(DueAlerts::Tick& tick);
    void FirePopupTimer();
    void OnRequest(const QString& url);
    void ObservePopup();
    void ObserveSound();
    void Compare();
    void Expect(bool holds, const QString& rule);
    void Differ(const QString& what);

    // Actions.
    void Act();
    void ScheduleNextAction();
    void OpenAlerts();
    void ActInAlerts();
    void ActOnPage();
    void ActOnce();
    void ClickOption(const Option& option);
    void ClickBar();
    void TypePath();
    void CloseAlerts();
    void ReturnToMain();
    void OpenPlaces();
    void ActInPlaces();
    void MinimiseOrOpen();
    void ChangeClock();
    void ChangeOutside();

    /// Does the action. The only line of the file that may change is that of the element.
    void Do(const QString& element, const std::function<void()>& action);
    [[nodiscard]] QStringList FileLines() const;
    /// An attribute of the page's element in the file.
    [[nodiscard]] QString Stored(const char* attribute) const;
    [[nodiscard]] QString Element() const;
    [[nodiscard]] bool CanClick(const QString& window, const char* name) const;
    [[nodiscard]] bool IsAlertsOpen() const { return m_world.IsUp(FrmAlerts::kName); }
    [[nodiscard]] QDate Today() const { return m_world.platform.clock.now.date(); }
    [[nodiscard]] int Roll(int sides) { return static_cast<int>(m_random() % static_cast<unsigned>(sides)); }
    [[nodiscard]] bool Chance(int percent) { return Roll(100) < percent; }

    std::mt19937 m_random;
    ChangingService m_service;
    MemoryOverDisk m_files;
    ProgramWorld m_world;
    QTemporaryDir m_copy;
    std::vector<DueAlerts::Tick*> m_ticking;
    QStringList m_given;
    QString m_difference;
    /// The page of the settings dialog: 0 for the general one, 1 to 6 for a prayer.
    int m_page = 0;
    int m_untilAction = 1;
    int m_untilOk = -1;

public:
    DueAlerts model;
};
