// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Prayers.h"
#include "fakes/FakeCalculation.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "fakes/StartWindows.h"
#include "forms/Forms.h"

#include <QGroupBox>
#include <QLabel>

#include <gtest/gtest.h>

/// The main window on fakes. The first Touch loads it from the settings.xml of the test.
class FirstTouchFixture : public testing::Test
{
protected:
    FirstTouchFixture()
    {
        WriteSettings();
        RegisterStartWindows(forms, calculation);
    }

    FrmMain& Window() { return forms.Touch<FrmMain>(); }
    template <typename Control>
    Control& Find(const char* name)
    {
        auto* const found = Window().findChild<Control*>(QLatin1String(name));
        if (found == nullptr) {
            qFatal("no %s", name);
        }
        return *found;
    }
    QString Text(const char* label) { return Find<QLabel>(label).text(); }
    QString DateCaption() { return Find<QGroupBox>("PrayerFrame").title(); }
    /// The six times from Fajr to Isha as one text.
    QString Times()
    {
        QStringList times;
        for (std::int16_t tab = 3; tab <= 8; ++tab) {
            times << Text(PrayerOfTab(tab)->time.data());
        }
        return times.join(u'|');
    }
    QString SettingsBlock()
    {
        return QStringList{Text("LblLocation"), Text("LblTimeZ"),     Text("LblCaclMeth"),
                           Text("LblAsrMeth"),  Text("LblDLSavings"), Text("LblAdvWarning")}
            .join(u'|');
    }
    void TickAt(int hour, int minute, int second = 0)
    {
        platform.clock.SetTime(hour, minute, second);
        platform.timers.Ticker()->Fire();
    }
    static QString Changed(const char* before, const char* after)
    {
        QString text = SettingsText();
        EXPECT_TRUE(text.contains(QLatin1String(before))) << before;
        return text.replace(QLatin1String(before), QLatin1String(after));
    }
    /// Only the fatal box was shown, and the program ends.
    void ExpectFatal(int number)
    {
        EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Fatal(number)});
        EXPECT_EQ(platform.process.ended, 1);
    }
    /// Current is empty.
    static void WriteWithoutAPlace() { WriteSettings(Changed("Current=\"Chicago\"", "Current=\"\"")); }
    [[nodiscard]] bool IsRunning() const { return platform.timers.Ticker()->IsEnabled(); }

    FakePlatform platform;
    FakeCalculation calculation;
    Forms forms{platform.interfaces};
};
