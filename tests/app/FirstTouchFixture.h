// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/FakeCalculation.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "fakes/StartWindows.h"
#include "forms/Forms.h"

#include <QGroupBox>
#include <QLabel>

#include <gtest/gtest.h>

/// The main window on fakes, loaded by the first touch from settings.xml as the test has left it by then.
class FirstTouchFixture : public testing::Test
{
protected:
    FirstTouchFixture()
    {
        WriteSettings();
        RegisterStartWindows(forms, calculation);
    }

    FrmMain& Window() { return forms.Touch<FrmMain>(); }
    QString Text(const char* label)
    {
        const auto* const found = Window().findChild<QLabel*>(QLatin1String(label));
        return found == nullptr ? QStringLiteral("(no label)") : found->text();
    }
    QString DateCaption()
    {
        const auto* const frame = Window().findChild<QGroupBox*>(QStringLiteral("PrayerFrame"));
        return frame == nullptr ? QStringLiteral("(no frame)") : frame->title();
    }
    QStringList Times()
    {
        QStringList times;
        for (const char* label :
             {"LblFarjTime", "LblShuruqTime", "LblDuhrTime", "LblAsrTime", "LblMaghribTime", "LblIshaTime"}) {
            times << Text(label);
        }
        return times;
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
    [[nodiscard]] static FakeMessageBoxes::Box FatalBox(int number)
    {
        return {QStringLiteral("An error has occured, The application will be terminated."),
                QStringLiteral("Error - %1").arg(number), QStringLiteral("OK")};
    }
    [[nodiscard]] bool IsRunning() const { return platform.timers.Ticker()->IsEnabled(); }

    FakePlatform platform;
    FakeCalculation calculation;
    Forms forms{platform.doors};
};
