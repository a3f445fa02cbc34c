// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PrayerDisplay.h"

#include "app/MainControls.h"
#include "engine/PTimer.h"
#include "engine/Prayers.h"
#include "instruments/VBCompas.h"
#include "instruments/VBSunAndMoon.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "store/Configuration.h"
#include "support/Conversions.h"

#include <QDate>

#include <array>
#include <cstdlib>

namespace {

QString MonthName(int month)
{
    static const std::array<QString, 12> kNames = {
        QStringLiteral("January"), QStringLiteral("February"), QStringLiteral("March"),
        QStringLiteral("April"),   QStringLiteral("May"),      QStringLiteral("June"),
        QStringLiteral("July"),    QStringLiteral("August"),   QStringLiteral("September"),
        QStringLiteral("October"), QStringLiteral("November"), QStringLiteral("December"),
    };
    return kNames.at(static_cast<std::size_t>(month - 1));
}

// For example "UTC+5:30".
QString UtcOffset(int minutes)
{
    const int size = std::abs(minutes);
    return QStringLiteral("UTC%1%2:%3")
        .arg(QLatin1Char(minutes < 0 ? '-' : '+'))
        .arg(size / 60)
        .arg(size % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

PrayerDisplay::PrayerDisplay(const Platform& platform, const Configuration& configuration,
                             const PTimer& prayerTimer, MainControls& controls)
    : m_platform(platform)
    , m_configuration(configuration)
    , m_prayerTimer(prayerTimer)
    , m_controls(controls)
    , VBCompas1(new VBCompas(platform.region, controls.Frame3))
    , VBSunAndMoon1(new VBSunAndMoon(platform.files, QStringLiteral(":/pictures"), controls.Frame6))
{
    VBCompas1->setObjectName(QStringLiteral("VBCompas1"));
    VBCompas1->move(7, 18);
    VBSunAndMoon1->setObjectName(QStringLiteral("VBSunAndMoon1"));
    VBSunAndMoon1->move(8, 16);
}

void PrayerDisplay::PopLocation() const
{
    const Configuration& c = m_configuration;
    m_controls.LblLocation->setText(c.CityName + QStringLiteral(", ") + c.StateName);
    m_controls.LblTimeZ->setText(QStringLiteral("Time Zone: ") + QString::number(c.ZoneHours));
    // The label shows whole hours only; a screen reader reads the tooltip as the label's description.
    m_controls.LblTimeZ->setToolTip(c.MinutesBeyondZone ? UtcOffset(c.ZoneHours * 60 + *c.MinutesBeyondZone)
                                                        : QString());
    m_controls.LblCaclMeth->setText(QStringLiteral("Calculation Method: ") + c.CalcMethod);
    m_controls.LblAsrMeth->setText(QStringLiteral("Asr Method: ") + c.AsrMethod);
    m_controls.LblDLSavings->setText(c.UseDayLight ? QStringLiteral("Day Light Savings is: On")
                                                   : QStringLiteral("Day Light Savings is: Off"));
    m_controls.LblAdvWarning->setText(c.UseAdvAlert ? QStringLiteral("Advanced Warning: On, ") +
                                                          QString::number(c.AdvAlertMinutes) +
                                                          QStringLiteral(" Minutes")
                                                    : QStringLiteral("Advanced Warning: Off"));
}

void PrayerDisplay::PopPrayerFrame() const
{
    const QDate today = m_platform.clock.Now().date();
    m_controls.PrayerFrame->setTitle(
        QStringLiteral("Date: %1 %2, %3")
            .arg(QString::number(today.day()), MonthName(today.month()), QString::number(today.year())));
    m_controls.LblHajri->setText(m_prayerTimer.GetHDate());

    const bool is24Hour = m_configuration.HourMode == u"24";
    for (const PrayerColumn& column : m_controls.PrayerColumns) {
        // Intended: every Asr method except "shafi" shows the slot of "hanafi", even an unknown one.
        const std::int16_t slot =
            column.prayer->CountsUnder(m_configuration.AsrMethod) ? column.prayer->slot : kAsrHanafiSlot;
        column.time->setText(FormatPrayerTime(m_prayerTimer.GetPrayerTime(slot), is24Hour));
        // A screen reader may reach the time without its link.
        column.time->setAccessibleName(column.link->text() + u' ' + column.time->text());
    }
}

void PrayerDisplay::UpdateCountDown() const
{
    const QTime time = m_platform.clock.Now().time();
    const int now = time.hour() * 60 + time.minute();
    if (now > m_prayerTimer.GetPrayerTime(kIshaSlot)) {
        m_controls.LblCountDown->setText(QStringLiteral("Done"));
        return;
    }
    // Intended: the loop runs from the last prayer to the first and the last match wins, which need not be
    // the earliest time. In Isha's own minute there is no match: the label counts down from 0 and shows a
    // negative time.
    int next = 0;
    for (auto prayer = kPrayers.rbegin(); prayer != kPrayers.rend(); ++prayer) {
        const std::int16_t minutes = m_prayerTimer.GetPrayerTime(prayer->slot);
        if (prayer->CountsUnder(m_configuration.AsrMethod) && now < minutes) {
            next = minutes;
        }
    }
    // Intended: the countdown compares with "12", the labels with "24".
    m_controls.LblCountDown->setText(
        FormatPrayerTime(AddInteger16(next, -now), m_configuration.HourMode != u"12"));
}

void PrayerDisplay::ShowQibla() const
{
    VBCompas1->SetNewAngle(m_prayerTimer.QDir());
}

void PrayerDisplay::RefreshSkyPicture() const
{
    VBSunAndMoon1->Setup(m_prayerTimer.GetPrayerTime(kSunriseSlot), m_prayerTimer.GetPrayerTime(kSunsetSlot));
    const QTime time = m_platform.clock.Now().time();
    VBSunAndMoon1->Update(m_prayerTimer.GetSunElev(), m_prayerTimer.GetMoonElev(),
                          static_cast<std::int16_t>(time.hour() * 60 + time.minute()));
}
