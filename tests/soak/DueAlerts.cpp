// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/DueAlerts.h"

#include <cmath>
#include <utility>

namespace {

struct Named
{
    int prayer = -1;
    int number = 0;
    const char* name = "";
};

// By slot, from 1; slots that nobody announces have no prayer.
constexpr Named kNamed[] = {{}, {0, 1, "Fajr"},    {1, 2, "Shuruq"},      {},
                            {}, {2, 3, "Duhr"},    {3, 4, "Asr (Shafi)"}, {3, 4, "Asr (Hanafi)"},
                            {}, {4, 5, "Maghrib"}, {5, 6, "Isha"}};

const QString kMain = QStringLiteral("FrmMain");

std::int16_t HundredthsDown(const QString& degrees)
{
    return static_cast<std::int16_t>(std::floor(degrees.toDouble() * 100.0));
}

} // namespace

DueAlerts::DueAlerts(Calculation& calculation, std::map<QString, Place> places)
    : m_calculation(calculation)
    , m_places(std::move(places))
{
}

void DueAlerts::Start(const QDate& today)
{
    UpdateEverything(today);
    activeForm = kMain;
}

void DueAlerts::UpdateEverything(const QDate& today)
{
    m_taken = file;
    const Place& place = m_places.at(file.current);
    const int offset = place.zoneHours * 60 + (file.useDls ? 60 : 0);
    m_calculation.SetHorParams(HundredthsDown(place.latitude), HundredthsDown(place.longitude),
                               static_cast<std::int16_t>(offset), static_cast<std::int16_t>(today.day()),
                               static_cast<std::int16_t>(today.month()),
                               static_cast<std::int16_t>(today.year()));
    m_calculation.SetHorTemkin({});
    m_calculation.SetHorAngle(static_cast<std::int16_t>(file.angle1 * 100), 500, 500,
                              static_cast<std::int16_t>(file.angle2 * 100));
    for (int slot = 1; slot <= 10; ++slot) {
        slots_.at(static_cast<std::size_t>(slot - 1)) =
            m_calculation.Horarium(static_cast<std::int16_t>(slot));
    }
}

void DueAlerts::OpenAlerts()
{
    activeForm = QStringLiteral("FrmAlerts");
}

void DueAlerts::CloseAlerts(const QDate& today)
{
    isMainEnabled = true;
    UpdateEverything(today);
    activeForm = kMain;
}

void DueAlerts::OpenPlaces()
{
    isMainEnabled = false;
    activeForm = QStringLiteral("FrmLocation");
}

void DueAlerts::ChoosePlace(const QString& key, const QDate& today)
{
    file.current = key;
    UpdateEverything(today);
    ClosePlaces();
}

void DueAlerts::ClosePlaces()
{
    isMainEnabled = true;
    activeForm = kMain;
}

void DueAlerts::PassAlarm(Tick& tick, const QDate& today)
{
    if (std::exchange(tick.isPastAlarm, true) || tick.time.second() > 0) {
        return;
    }
    const int minute = tick.time.hour() * 60 + tick.time.minute();
    if (minute == 0) {
        UpdateEverything(today);
        return;
    }
    const int slot = SlotAt(minute);
    if (slot == 0) {
        return;
    }
    if (activeForm != kMain || !IsOn(slot, m_taken.asr)) {
        ++dropped;
        return;
    }
    const Named& named = kNamed[slot];
    const Prayer& prayer = PrayerOf(slot);
    const int at = slots_.at(static_cast<std::size_t>(slot - 1));
    if (prayer.popup) {
        ShowPopup(QStringLiteral("Prayer Time:\r\n%1: %2")
                      .arg(QLatin1String(named.name), Clock(at, m_taken.hourMode != u"12")),
                  600);
    }
    // The file confirms the mobile device from the start and for good.
    const Place& place = m_places.at(m_taken.current);
    due << QStringLiteral("/cgi-bin/dbeacon/prayerCall.pl?prod_string=P-77&aid=%1&pno=%2&alert_type=%3&ma=%4"
                          "&dist_string=dbeacon&time=%5&aid=%1")
               .arg(place.atlasId, QString::number(named.number),
                    prayer.play ? QStringLiteral("Normal") : QStringLiteral("Quite"),
                    prayer.mobil ? QStringLiteral("1") : QStringLiteral("0"), Clock(at, true));
    tick.hasSound = prayer.play;
    tick.sound = prayer.audioFile;
    ++alarms;
}

void DueAlerts::PassAnswer(const Tick& tick)
{
    if (tick.hasSound) {
        due << QStringLiteral("url ") + tick.sound;
    }
}

void DueAlerts::PassWarning(Tick& tick)
{
    const int minute = tick.time.hour() * 60 + tick.time.minute();
    if (std::exchange(tick.isPastWarning, true) || tick.time.second() > 0 || minute == 0 ||
        !m_taken.useAdvWarn) {
        return;
    }
    const int slot = SlotAt(minute + m_taken.advWarn);
    if (slot == 0) {
        return;
    }
    // Unlike an alarm it asks the file which Asr counts.
    if (activeForm != kMain || !IsOn(slot, file.asr)) {
        ++dropped;
        return;
    }
    ShowPopup(QStringLiteral("Advanced Alert\r\n%1 %2")
                  .arg(QLatin1String(kNamed[slot].name),
                       Clock(slots_.at(static_cast<std::size_t>(slot - 1)), m_taken.hourMode == u"24")),
              (m_taken.advWarn - 1) * 60 + 1);
    ++warnings;
}

void DueAlerts::PassPopupSecond()
{
    if (isPopupUp && ++m_popupSeconds >= m_popupLimit) {
        EndPopup();
    }
}

void DueAlerts::ShowPopup(const QString& text, int seconds)
{
    due << QStringLiteral("popup ") + text;
    isPopupUp = true;
    isMainEnabled = false;
    activeForm = QStringLiteral("FrmPopup");
    m_popupSeconds = 0;
    m_popupLimit = seconds;
}

void DueAlerts::EndPopup()
{
    isPopupUp = false;
    isMainEnabled = true;
    activeForm = kMain;
}

int DueAlerts::SlotAt(int minute) const
{
    for (int slot = 1; slot <= 10 && minute < 1440; ++slot) {
        if (slots_.at(static_cast<std::size_t>(slot - 1)) == minute) {
            return slot;
        }
    }
    return 0;
}

bool DueAlerts::IsOn(int slot, const QString& asr) const
{
    const bool isOtherAsr = (slot == 6 && asr != u"shafi") || (slot == 7 && asr != u"hanafi");
    return kNamed[slot].prayer >= 0 && !isOtherAsr && PrayerOf(slot).enabled;
}

const DueAlerts::Prayer& DueAlerts::PrayerOf(int slot) const
{
    return file.prayers.at(static_cast<std::size_t>(kNamed[slot].prayer));
}

QString DueAlerts::Clock(int minute, bool is24Hour) const
{
    const int hour = minute / 60;
    const QString minutes = QStringLiteral("%1").arg(minute % 60, 2, 10, QLatin1Char('0'));
    if (is24Hour) {
        return QStringLiteral("%1:%2").arg(hour).arg(minutes);
    }
    // Noon reads AM.
    const int shown = hour == 0 ? 12 : hour > 12 ? hour - 12 : hour;
    return QStringLiteral("%1:%2 %3")
        .arg(shown)
        .arg(minutes, hour > 12 ? QStringLiteral("PM") : QStringLiteral("AM"));
}
