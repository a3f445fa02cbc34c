// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlertsFixture.h"
#include "engine/CalculationLibrary.h"
#include "fakes/Environment.h"

#include <QCoreApplication>

namespace {

struct Year
{
    const char* place;
    std::int16_t latitude;
    std::int16_t longitude;
    std::int16_t zone;
    std::int16_t daylightSaving;
    const char* asrMethode;
    /// Minutes by which the warning precedes the prayer; -1: no warning; below -1: it follows the prayer.
    int advance;
    bool popups;
    /// Seconds after which the user presses "OK"; 0: never.
    int patience;
    /// The elements of the enabled prayers.
    QString enabled;
};

void PrintTo(const Year& year, std::ostream* stream)
{
    *stream << year.place;
}

const QString kAll = QStringLiteral("fajr shuruq duhr asr maghrib isha");

const Year kYears[] = {
    {"Chicago", 4185, -8765, -6, 0, "shafi", -1, true, 0, kAll},
    {"Makkah", 2142, 3983, 3, 0, "hanafi", 10, true, 5, kAll},
    {"London", 5151, -13, 0, -1, "shafi", 1, false, 0, kAll},
    // The popup of Isha's warning blocks Maghrib's alarm.
    {"Jakarta", -621, 10685, 7, 0, "shafi", 80, true, 900, QStringLiteral("maghrib isha")},
    {"Oslo", 5991, 1075, 1, 0, "hanafi", 5, true, 3, kAll},
    {"Sydney", -3387, 15121, 10, 0, "shafi", 0, false, 30, kAll},
    // The alarm's popup blocks a warning five minutes later.
    {"Karachi", 2486, 6701, 5, 0, "hanafi", -5, true, 0, QStringLiteral("asr isha")},
    {"Nairobi", -129, 3682, 3, 0, "none", 20, false, 20, kAll},
};

/// Computes the due alerts from the rules alone, without window, file or event.
class Expectation
{
public:
    explicit Expectation(const Year& year)
        : m_year(year)
    {
    }

    /// @param day seconds since the beginning at midnight
    void AddDay(const PTimer& timer, qint64 day)
    {
        // No alert is raised in the minute of midnight.
        for (int minute = 1; minute < 1440; ++minute) {
            const qint64 now = day + minute * 60;
            if (const int slot = FirstSlotAt(timer, minute); IsOn(slot) && IsFree(now)) {
                due << QStringLiteral("%1 alarm %2").arg(now).arg(slot);
                if (m_year.popups) {
                    Occupy(now, 600);
                }
            }
            if (m_year.advance == kNone) {
                continue;
            }
            if (const int slot = FirstSlotAt(timer, minute + m_year.advance); IsOn(slot) && IsFree(now)) {
                due << QStringLiteral("%1 warning %2").arg(now).arg(slot);
                Occupy(now, std::max(1, (m_year.advance - 1) * 60 + 1));
            }
        }
    }

    static constexpr int kNone = -1;
    QStringList due;

private:
    [[nodiscard]] static int FirstSlotAt(const PTimer& timer, int minute)
    {
        for (std::int16_t slot = 1; slot <= 10; ++slot) {
            if (timer.GetPrayerTime(slot) == minute) {
                return slot;
            }
        }
        return 0;
    }
    [[nodiscard]] bool IsOn(int slot) const
    {
        // By slot; empty for a slot that raises no alert.
        static const QStringList elements =
            QStringLiteral(",fajr,shuruq,,,duhr,asr,asr,,maghrib,isha").split(u',');
        const QString& element = elements.at(slot);
        const bool isAsrOfTheMethod =
            QLatin1String(m_year.asrMethode) == QLatin1String(slot == 6 ? "shafi" : "hanafi");
        return !element.isEmpty() && m_year.enabled.contains(element) &&
               ((slot != 6 && slot != 7) || isAsrOfTheMethod);
    }
    // The scheduler ticks before the popup in the same second, so the popup's last second still blocks.
    [[nodiscard]] bool IsFree(qint64 now) const { return now > m_occupiedUntil; }
    void Occupy(qint64 now, int seconds)
    {
        const int stay = m_year.patience > 0 ? std::min(m_year.patience, seconds) : seconds;
        m_occupiedUntil = now + stay;
    }

    const Year& m_year;
    qint64 m_occupiedUntil = -1;
};

class YearOfAlerts : public AlertsFixture, public testing::WithParamInterface<Year>
{
protected:
    YearOfAlerts()
    {
        const Year& year = GetParam();
        for (const QString& element : kAll.split(u' ')) {
            SetPrayer(element,
                      QStringLiteral(R"(enabled="%1" popup="%2" mobil="false" play="true" audioFile="")")
                          .arg(Word(year.enabled.contains(element)), Word(year.popups)));
        }
        SetAsrMethod(QString::fromLatin1(year.asrMethode));
        main->Variables().Settings.AdvAlertMinutes = static_cast<std::int16_t>(year.advance);
        realTimer.events.Alarm = [this](std::int16_t id) { OnAlarm(id); };
        realTimer.events.AdvAlarm = [this](std::int16_t id) { OnAdvAlarm(id); };
    }

    [[nodiscard]] static QString Word(bool value)
    {
        return value ? QStringLiteral("true") : QStringLiteral("false");
    }

    void OnAlarm(std::int16_t slot)
    {
        log.clear();
        realDispatch.Alarm(slot);
        if (!log.isEmpty()) {
            happened << QStringLiteral("%1 alarm %2").arg(now).arg(slot);
            EXPECT_EQ(PopupIsUp(), GetParam().popups);
            EXPECT_EQ(log.filter(QStringLiteral("request")).size(), 1);
        }
    }
    void OnAdvAlarm(std::int16_t slot)
    {
        // Clear the label of an open popup: a text then shows that a warning replaced it.
        auto* const label = PopupIsUp() ? Popup()->findChild<QLabel*>(QStringLiteral("Label1")) : nullptr;
        if (label != nullptr) {
            label->clear();
        }
        realDispatch.AdvAlarm(slot);
        if (PopupIsUp() && !TextOf("Label1").isEmpty()) {
            happened << QStringLiteral("%1 warning %2").arg(now).arg(slot);
        }
    }

    // One minute of the clock: the scheduler ticks at its first second, the popup at each.
    void PassMinute(FakeTimer* ticker)
    {
        const bool wasUp = PopupIsUp();
        ticker->Fire();
        if (wasUp) {
            PopupSecond();
        }
        for (int second = 1; second < 60 && PopupIsUp(); ++second) {
            PopupSecond();
        }
    }
    void PopupSecond()
    {
        ++m_secondsUp;
        PopupTimer()->Fire();
        const int patience = GetParam().patience;
        if (PopupIsUp() && patience > 0 && m_secondsUp >= patience) {
            forms.Unload(FrmPopup::kName);
        }
        if (!PopupIsUp()) {
            m_secondsUp = 0;
        }
    }

    CalculationLibrary library{QStringLiteral(DUSKBEACON_BIN_FOLDER)};
    PTimer realTimer{platform.interfaces, library};
    AlertDispatch realDispatch{forms, realTimer};
    QStringList happened;
    qint64 now = 0;

private:
    int m_secondsUp = 0;
};

TEST_P(YearOfAlerts, eachAlertThatIsDue_comesOnceAtItsMinute)
{
    const Year& year = GetParam();
    const QDate first(2027, 1, 1);
    platform.clock.Set(first.addDays(-1), QTime(23, 59, 30));
    const std::int16_t useAdvance = year.advance == Expectation::kNone ? std::int16_t{0} : std::int16_t{-1};
    realTimer.SetupPTimer(year.latitude, year.longitude, year.zone, year.daylightSaving, -1800, -1700,
                          useAdvance, static_cast<std::int16_t>(year.advance), -1);
    realTimer.StartTimer();
    FakeTimer* const ticker = platform.timers.Ticker();
    Expectation expectation(year);
    const int days = FromEnvironment("DUSKBEACON_YEAR_DAYS", 365);
    for (int day = 0; day < days; ++day) {
        for (int minute = 0; minute < 1440; ++minute) {
            now = (day * 1440LL + minute) * 60;
            platform.clock.now = QDateTime(first.addDays(day), QTime(minute / 60, minute % 60), Qt::UTC);
            PassMinute(ticker);
            if (minute == 0) {
                expectation.AddDay(realTimer, now);
            }
        }
        QCoreApplication::processEvents();
    }
    ASSERT_EQ(happened.size(), expectation.due.size());
    for (qsizetype i = 0; i < happened.size(); ++i) {
        ASSERT_EQ(happened.at(i), expectation.due.at(i)) << i;
    }
    EXPECT_GE(happened.size(), days);
    EXPECT_TRUE(platform.boxes.boxes.empty());
    RecordProperty("alerts", std::to_string(happened.size()));
}

INSTANTIATE_TEST_SUITE_P(Places, YearOfAlerts, testing::ValuesIn(kYears),
                         [](const auto& row) { return std::string(row.param.place); });

} // namespace
