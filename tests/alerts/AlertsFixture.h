// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "alerts/AlertDispatch.h"
#include "alerts/FrmPopup.h"
#include "engine/PTimer.h"
#include "engine/Prayers.h"
#include "fakes/FakeCalculation.h"
#include "fakes/FakeMain.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QUrlQuery>

#include <gtest/gtest.h>

/// A main window that records the calls of alerts.
class NotingMain final : public FakeMain
{
    Q_OBJECT

public:
    using FakeMain::FakeMain;

    void TakeFocus() override { ++focusTaken; }
    void EnableStopLink() override { note(QStringLiteral("link")); }
    void RefreshAd() override { note(QStringLiteral("ad")); }

    int focusTaken = 0;
    std::function<void(const QString&)> note;
};

/// The alert handlers under a scheduler whose slots and clock a test sets.
class AlertsFixture : public testing::Test
{
protected:
    AlertsFixture()
    {
        forms.Register(QStringLiteral("FrmMain"), [this] { return std::make_unique<NotingMain>(forms); });
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
        main = static_cast<NotingMain*>(&forms.Touch(QStringLiteral("FrmMain")));
        main->note = [this](const QString& what) { Note(what); };
        platform.http.onRequest = [this](const QString& url) { NoteRequest(url); };
        main->Variables().Settings.AsrMethod = QStringLiteral("shafi");
        main->Variables().Settings.HourMode = QStringLiteral("24");
        main->Variables().Settings.AdvAlertMinutes = 10;
        timer.events.Alarm = [this](std::int16_t id) { dispatch.Alarm(id); };
        timer.events.AdvAlarm = [this](std::int16_t id) { dispatch.AdvAlarm(id); };
        SetUpTimer(0);
        WriteSettings(settings);
    }

    void SetUpTimer(std::int16_t useAdvWarn)
    {
        timer.SetupPTimer(4185, -8765, -6, 0, -1500, -1500, useAdvWarn,
                          main->Variables().Settings.AdvAlertMinutes, -1);
        timer.StartTimer();
    }

    void TickAt(int hour, int minute, int second = 0)
    {
        platform.clock.SetTime(hour, minute, second);
        platform.timers.Ticker()->Fire();
    }

    /// Replaces all attributes of one prayer's element and writes the file.
    void SetPrayer(QStringView element, const QString& attributes)
    {
        settings.replace(QRegularExpression(QStringLiteral("<%1 [^>]*/>").arg(element)),
                         QStringLiteral("<%1 %2/>").arg(element, attributes));
        WriteSettings(settings);
    }
    void SetAlertsAttribute(QStringView name, QStringView value)
    {
        settings.replace(QRegularExpression(QStringLiteral("%1=\"[^\"]*\"").arg(name)),
                         QStringLiteral("%1=\"%2\"").arg(name, value));
        WriteSettings(settings);
    }
    void SetAllPrayers(const QString& attributes)
    {
        for (const Prayer& prayer : kPrayers) {
            SetPrayer(QString(prayer.element), attributes);
        }
    }
    /// In the file and in memory.
    void SetAsrMethod(const QString& method)
    {
        main->Variables().Settings.AsrMethod = method;
        SetAlertsAttribute(u"asrMethode", method);
    }

    [[nodiscard]] FrmPopup* Popup() const { return static_cast<FrmPopup*>(forms.Loaded(FrmPopup::kName)); }
    [[nodiscard]] bool PopupIsUp() const { return Popup() != nullptr && Popup()->isVisible(); }
    [[nodiscard]] QString TextOf(const char* label) const
    {
        return Popup()->findChild<QLabel*>(QString::fromLatin1(label))->text();
    }
    /// The popup's timer: the last one made that is not the scheduler's.
    [[nodiscard]] FakeTimer* PopupTimer() const
    {
        for (auto each = platform.timers.all.rbegin(); each != platform.timers.all.rend(); ++each) {
            if (!(*each)->isSecondTicker && (*each)->enabled) {
                return *each;
            }
        }
        return nullptr;
    }
    /// Fires the popup's timer, once for each second that passes; false when it stops before.
    [[nodiscard]] bool PassSeconds(int seconds) const
    {
        for (int i = 0; i < seconds; ++i) {
            FakeTimer* const each = PopupTimer();
            if (each == nullptr) {
                return false;
            }
            each->Fire();
        }
        return true;
    }
    /// Shows the popup for so many seconds, outside any alert.
    void ShowPopup(std::int16_t seconds = 600)
    {
        forms.Touch<FrmPopup>().ShowPopup(QStringLiteral("Prayer Time:\r\nMaghrib: 18:42"), seconds);
    }
    [[nodiscard]] QPushButton& Ok() const
    {
        return *Popup()->findChild<QPushButton*>(QStringLiteral("Command1"));
    }
    void ExpectMainIsFree() const
    {
        EXPECT_TRUE(main->isEnabled());
        EXPECT_EQ(main->Variables().ActiveForm, u"FrmMain");
    }
    /// Events since the last call, in order, joined.
    [[nodiscard]] QString TakeLog() { return std::exchange(log, {}).join(u'|'); }

    FakePlatform platform;
    FakeCalculation calculation;
    Forms forms{platform.interfaces};
    PTimer timer{platform.interfaces, calculation};
    QStringList log;
    NotingMain* main = nullptr;
    QString settings = SettingsText();
    AlertDispatch dispatch{forms, timer};

private:
    void Note(const QString& what) { log << std::exchange(platform.player.log, {}) << what; }
    void NoteRequest(const QString& url)
    {
        const QUrlQuery query{QUrl(url)};
        const auto value = [&query](const char* name) { return query.queryItemValue(QLatin1String(name)); };
        log << (PopupIsUp() ? QStringLiteral("popup ") + TextOf("Label1") : QStringLiteral("no popup"))
            << QStringLiteral("request %1 %2 %3 %4")
                   .arg(value("pno"), value("alert_type"), value("ma"), value("time"));
        platform.player.log.clear();
    }
};
