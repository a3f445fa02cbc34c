// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PrayerDisplay.h"

#include "app/MainControls.h"
#include "engine/PTimer.h"
#include "engine/PrayerTime.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "store/Configuration.h"
#include "support/Conversions.h"

#include <QDate>
#include <QGroupBox>
#include <QLabel>

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

// Such as "UTC+5:30".
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
{
}

void PrayerDisplay::PopLocation() const
{
    const Configuration& c = m_configuration;
    m_controls.LblLocation->setText(c.CityName + QStringLiteral(", ") + c.StateName);
    m_controls.LblTimeZ->setText(QStringLiteral("Time Zone: ") + QString::number(c.ZoneHours));
    // The label has whole hours; a screen reader reads the tip as its description.
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
    const auto show = [&](QLabel* label, std::int16_t slot) {
        label->setText(FormatPrayerTime(m_prayerTimer.GetPrayerTime(slot), is24Hour));
    };
    show(m_controls.LblFarjTime, 1);
    show(m_controls.LblShuruqTime, 2);
    show(m_controls.LblDuhrTime, 5);
    show(m_controls.LblAsrTime, m_configuration.AsrMethod == u"shafi" ? 6 : 7);
    show(m_controls.LblMaghribTime, 9);
    show(m_controls.LblIshaTime, 10);
}

void PrayerDisplay::UpdateCountDown() const
{
    const QTime time = m_platform.clock.Now().time();
    const int now = time.hour() * 60 + time.minute();
    const auto isAhead = [&](std::int16_t slot) { return now < m_prayerTimer.GetPrayerTime(slot); };
    if (now > m_prayerTimer.GetPrayerTime(10)) {
        m_controls.LblCountDown->setText(QStringLiteral("Done"));
        return;
    }
    // From last to first, so that the earliest that is still ahead stands in the end. In Isha's own minute
    // none is, and the label counts down from nothing: a negative clock for that minute, as it has always
    // been.
    int next = 0;
    const auto consider = [&](std::int16_t slot, bool counts) {
        if (counts && isAhead(slot)) {
            next = m_prayerTimer.GetPrayerTime(slot);
        }
    };
    consider(10, true);
    consider(9, true);
    consider(7, m_configuration.AsrMethod == u"hanafi");
    consider(6, m_configuration.AsrMethod == u"shafi");
    consider(5, true);
    consider(2, true);
    consider(1, true);
    // The display asks for "24", the countdown for anything but "12".
    m_controls.LblCountDown->setText(
        FormatPrayerTime(AddInteger16(next, -now), m_configuration.HourMode != u"12"));
}
