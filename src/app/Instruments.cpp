// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Instruments.h"

#include "app/MainControls.h"
#include "engine/PTimer.h"
#include "instruments/VBCompas.h"
#include "instruments/VBSunAndMoon.h"
#include "platform/Clock.h"
#include "platform/Platform.h"

Instruments::Instruments(const Platform& platform, const PTimer& prayerTimer, const MainControls& controls)
    : m_platform(platform)
    , m_prayerTimer(prayerTimer)
    , VBCompas1(new VBCompas(platform.region, controls.Frame3))
    , VBSunAndMoon1(new VBSunAndMoon(platform.files, QStringLiteral(":/pictures"), controls.Frame6))
{
    VBCompas1->setObjectName(QStringLiteral("VBCompas1"));
    VBCompas1->setGeometry(7, 18, 102, 117);
    VBSunAndMoon1->setObjectName(QStringLiteral("VBSunAndMoon1"));
    VBSunAndMoon1->setGeometry(8, 16, 273, 129);
}

void Instruments::ShowQibla() const
{
    VBCompas1->SetNewAngle(m_prayerTimer.QDir());
}

void Instruments::RefreshSkyPicture() const
{
    VBSunAndMoon1->Setup(m_prayerTimer.GetPrayerTime(2), m_prayerTimer.GetPrayerTime(9));
    const QTime time = m_platform.clock.Now().time();
    VBSunAndMoon1->Update(m_prayerTimer.GetSunElev(), m_prayerTimer.GetMoonElev(),
                          static_cast<std::int16_t>(time.hour() * 60 + time.minute()));
}
