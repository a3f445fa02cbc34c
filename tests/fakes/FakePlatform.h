// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Http.h"
#include "platform/MediaPlayer.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "platform/SystemFileStore.h"
#include "support/ModRegion.h"
#include "support/RuntimeError.h"

#include <QDir>
#include <QIcon>
#include <QStringList>
#include <QTemporaryDir>

#include <deque>
#include <map>
#include <vector>

/// A clock that shows the time that a test sets.
class FakeClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override { return now; }
    void Set(const QDate& date, const QTime& time) { now = QDateTime(date, time, Qt::UTC); }
    void SetTime(int hour, int minute, int second = 0) { now.setTime(QTime(hour, minute, second)); }

    QDateTime now{QDate(2026, 3, 20), QTime(9, 30, 15), Qt::UTC};
};

/// A timer that fires when a test says so.
class FakeTimer final : public Timer
{
public:
    FakeTimer(std::vector<FakeTimer*>& all, bool isTicker)
        : m_all(all)
        , isSecondTicker(isTicker)
    {
        m_all.push_back(this);
    }
    ~FakeTimer() override { std::erase(m_all, this); }
    FakeTimer(const FakeTimer&) = delete;
    FakeTimer& operator=(const FakeTimer&) = delete;

    void SetInterval(int milliseconds) override { intervalMilliseconds = milliseconds; }
    void SetEnabled(bool value) override { enabled = value; }
    [[nodiscard]] bool IsEnabled() const override { return enabled; }
    /// Calls the handler, as the event loop would, if the timer is enabled.
    void Fire() const
    {
        if (enabled) {
            CallHandler();
        }
    }

private:
    std::vector<FakeTimer*>& m_all;

public:
    bool isSecondTicker = false;
    int intervalMilliseconds = 0;
    bool enabled = false;
};

class FakeTimers final : public Timers
{
public:
    [[nodiscard]] std::unique_ptr<Timer> CreateTimer() override
    {
        return std::make_unique<FakeTimer>(all, false);
    }
    [[nodiscard]] std::unique_ptr<Timer> CreateSecondTicker() override
    {
        return std::make_unique<FakeTimer>(all, true);
    }
    /// The scheduler's ticker; the one that was made last if there are several.
    [[nodiscard]] FakeTimer* Ticker() const
    {
        for (auto timer = all.rbegin(); timer != all.rend(); ++timer) {
            if ((*timer)->isSecondTicker) {
                return *timer;
            }
        }
        return nullptr;
    }

    /// All timers alive, in the order of their making.
    std::vector<FakeTimer*> all;
};

/// Answers requests from a table and records them.
class FakeHttp final : public Http
{
public:
    [[nodiscard]] bool Reach(const QString& url) override
    {
        probes << url;
        if (whileProbing) {
            whileProbing();
        }
        if (probeAnswers.empty()) {
            return reachable;
        }
        const bool answer = probeAnswers.front();
        probeAnswers.pop_front();
        return answer;
    }
    [[nodiscard]] Reply Fetch(const QString& url, const HttpLimits& asked) override
    {
        requests << url;
        limits = asked;
        if (onRequest) {
            onRequest(url);
        }
        if (whileWaiting) {
            // Once: the requests of the handler itself do not call it again.
            const auto act = std::exchange(whileWaiting, nullptr);
            act();
        }
        for (const auto& [part, reply] : replies) {
            if (url.contains(part)) {
                return reply;
            }
        }
        return std::nullopt;
    }
    void Notify(const QString& url, const HttpLimits& asked) override
    {
        static_cast<void>(Fetch(url, asked));
    }
    void FetchInBackground(const QString& url, const HttpLimits& asked, QObject* /*context*/,
                           std::function<void(Reply)> done) override
    {
        backgroundRequests << url;
        backgroundLimits = asked;
        backgroundDone.push_back(std::move(done));
    }

    bool reachable = false;
    /// Results of the next probes; afterwards `reachable`.
    std::deque<bool> probeAnswers;
    /// Runs inside each probe.
    std::function<void()> whileProbing;
    /// Reply by a part of the URL; no reply to any other URL.
    std::map<QString, QByteArray> replies;
    QStringList probes;
    QStringList requests;
    QStringList backgroundRequests;
    /// Those of the last request of either kind.
    HttpLimits limits{};
    HttpLimits backgroundLimits{};
    std::vector<std::function<void(Reply)>> backgroundDone;
    /// Runs inside each Fetch and Notify, with their address.
    std::function<void(const QString&)> onRequest;
    /// Runs inside the next Fetch or Notify, as events do in the real one.
    std::function<void()> whileWaiting;
};

/// Records its calls, in order, in @ref log as well.
class FakePlayer final : public MediaPlayer
{
public:
    void SetUrl(const QString& path) override
    {
        url = path;
        log << QStringLiteral("url ") + path;
    }
    void Stop() override { log << QStringLiteral("stop"); }
    void ClearPlaylist() override { log << QStringLiteral("clear"); }
    [[nodiscard]] int Volume() const override { return volume; }
    void SetVolume(int value) override
    {
        volume = value;
        log << QStringLiteral("volume %1").arg(value);
    }
    void Report(int state) const { CallPlayStateHandler(state); }

    QString url;
    int volume = 50;
    QStringList log;
};

class FakeTray final : public TrayIcon
{
public:
    void Add(const QIcon& icon, const QString& tip, QMenu& menu) override
    {
        Fail();
        ++added;
        shown = available;
        lastIcon = icon;
        lastTip = tip;
        lastMenu = &menu;
    }
    void Remove() override
    {
        ++removed;
        shown = false;
    }
    [[nodiscard]] bool IsShown() const override
    {
        Fail();
        return shown;
    }

    /// Add and IsShown throw.
    bool fails = false;
    bool available = true;
    bool shown = false;
    int added = 0;
    int removed = 0;
    QIcon lastIcon;
    QString lastTip;
    QMenu* lastMenu = nullptr;

private:
    void Fail() const
    {
        if (fails) {
            throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("no tray"));
        }
    }
};

/// Message boxes that answer at once and record their contents.
class FakeMessageBoxes final : public MessageBoxes
{
public:
    struct Box
    {
        QString text;
        QString title;
        QString buttons;
        bool operator==(const Box&) const = default;
    };
    [[nodiscard]] static Box Message(const QString& text, const QString& title = kDefaultTitle)
    {
        return {text, title, QStringLiteral("OK")};
    }
    [[nodiscard]] static Box Question(const QString& text)
    {
        return {text, kDefaultTitle, QStringLiteral("Yes No")};
    }
    [[nodiscard]] static Box Fatal(int number)
    {
        return Message(QStringLiteral("An error has occured, The application will be terminated."),
                       QStringLiteral("Error - %1").arg(number));
    }

    void Show(const QString& text, const QString& title) override
    {
        boxes.push_back({text, title, QStringLiteral("OK")});
        Act();
    }
    [[nodiscard]] bool Ask(const QString& text, const QString& title, DefaultAnswer defaultAnswer) override
    {
        lastDefault = defaultAnswer;
        boxes.push_back({text, title, QStringLiteral("Yes No")});
        Act();
        if (answers.empty()) {
            return false;
        }
        const bool answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::vector<Box> boxes;
    /// Of the last question.
    DefaultAnswer lastDefault = DefaultAnswer::Yes;
    /// Answers to the next questions; afterwards No.
    std::deque<bool> answers;
    /// Runs while a box is up, as events do under a real one.
    std::function<void()> whileOpen;

private:
    void Act() const
    {
        if (whileOpen) {
            whileOpen();
        }
    }
};

inline void PrintTo(const FakeMessageBoxes::Box& box, std::ostream* stream)
{
    *stream << "\"" << box.text.toStdString() << "\" titled \"" << box.title.toStdString() << "\" with "
            << box.buttons.toStdString();
}

class FakeBrowser final : public Browser
{
public:
    void Open(const QString& url) override
    {
        opened << url;
        if (whileOpening) {
            whileOpening();
        }
    }

    QStringList opened;
    /// Runs before Open returns.
    std::function<void()> whileOpening;
};

/// The regional settings of a locale that a test names.
class FakeRegion final : public RegionalSettings
{
public:
    [[nodiscard]] std::uint32_t GetUserDefaultLCID() const override { return 0x400; }
    int GetLocaleInfo(std::uint32_t lcid, std::uint32_t lctype, QChar* buffer, int length) const override
    {
        if (lcid != GetUserDefaultLCID() || lctype != LOCALE_SDECIMAL) {
            return 0;
        }
        const QString sign = locale.decimalPoint();
        if (length > 0) {
            std::copy(sign.begin(), sign.end(), buffer);
            buffer[sign.size()] = QChar();
        }
        return static_cast<int>(sign.size()) + 1;
    }
    [[nodiscard]] QLocale UserLocale() const override { return locale; }

    QLocale locale{QLocale::English, QLocale::UnitedStates};
};

class FakeProcess final : public Process
{
public:
    void End() override { ++ended; }
    void Sleep(int milliseconds) override
    {
        sleptMilliseconds += milliseconds;
        if (whileAsleep) {
            whileAsleep();
        }
    }
    [[nodiscard]] QString ApplicationFolder() const override { return folder; }
    [[nodiscard]] QString UserDataFolder() const override { return dataFolder; }

    int ended = 0;
    int sleptMilliseconds = 0;
    std::function<void()> whileAsleep;
    QString folder;
    QString dataFolder;
};

/// Fakes of all interfaces except the files.
template <typename Files>
struct FakePlatformOn
{
    FakePlatformOn() = default;
    FakePlatformOn(const FakePlatformOn&) = delete;
    FakePlatformOn& operator=(const FakePlatformOn&) = delete;

    FakeClock clock;
    FakeTimers timers;
    Files files;
    FakeHttp http;
    FakePlayer player;
    FakeTray tray;
    FakeMessageBoxes boxes;
    FakeBrowser browser;
    FakeRegion region;
    FakeProcess process;
    Platform interfaces{clock, timers, files, http, player, tray, boxes, browser, region, process};

    /// The same fakes with other files and another HTTP.
    [[nodiscard]] Platform With(FileStore& otherFiles, Http& otherHttp)
    {
        return {clock, timers, otherFiles, otherHttp, player, tray, boxes, browser, region, process};
    }
};

/// With real files, in a temporary folder that is the working directory while this object lives.
class FakePlatform final : public FakePlatformOn<SystemFileStore>
{
public:
    FakePlatform()
        : m_before(QDir::currentPath())
    {
        QDir::setCurrent(folder.path());
        process.folder = folder.path();
        process.dataFolder = folder.path();
    }
    ~FakePlatform() { QDir::setCurrent(m_before); }

    QTemporaryDir folder;

private:
    QString m_before;
};
