// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CalculationLibrary.h"
#include "fakes/SettingsFile.h"
#include "platform/SoundServer.h"
#include "platform/TestSounds.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

constexpr int kWaitMilliseconds = 30'000;
constexpr double kTone = 440.0;
// The splash stays for two seconds; the rest is for a slow machine.
constexpr int kLeadSeconds = 8;
// From the screen to the test, with more tests at once than cores. An alert that misses its second is lost,
// and a popup that misses its second stays for minutes.
constexpr double kLateSeconds = 10.0;
const QString kPopup = QStringLiteral("^Dusk Beacon Alert$");
const QString kOther = QStringLiteral("^Letter$");
const QString kMain = QStringLiteral("^Dusk Beacon v1\\.0\\.5$");

QString FakeTimeLibrary()
{
    for (const QFileInfo& folder : QDir(QStringLiteral("/usr/lib")).entryInfoList(QDir::Dirs)) {
        const QString library = folder.filePath() + QStringLiteral("/faketime/libfaketimeMT.so.1");
        if (QFile::exists(library)) {
            return library;
        }
    }
    return {};
}

/// The program in a window of a real display, its clock set to a few seconds before a prayer, with a sound
/// server that records.
class AlertJourney : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_FALSE(FakeTimeLibrary().isEmpty()) << "libfaketime is not installed";
        StartDisplay();
        ASSERT_TRUE(sound.Start());
        const QString bin = QStringLiteral(DUSKBEACON_BIN_FOLDER);
        for (const auto& file : {QStringLiteral("DuskBeacon"), QStringLiteral("DuskBeacon.DBN")}) {
            ASSERT_TRUE(QFile::copy(bin + u'/' + file, folder.filePath(file)));
        }
        ASSERT_TRUE(WriteTone(folder.filePath(QStringLiteral("call.wav")), kTone, 120.0));
    }
    ~AlertJourney() override
    {
        if (HasFailure()) {
            static_cast<void>(Picture("failed_alert"));
        }
        for (QProcess* const process : {&program, &otherProgram, &windowManager, &display}) {
            process->kill();
            process->waitForFinished();
        }
    }

    void StartDisplay()
    {
        const QStringList arguments{QStringLiteral("-screen"),     QStringLiteral("0"),
                                    QStringLiteral("1024x768x24"), QStringLiteral("-noreset"),
                                    QStringLiteral("-nolisten"),   QStringLiteral("tcp"),
                                    QStringLiteral("-displayfd"),  QStringLiteral("1")};
        display.setStandardErrorFile(QProcess::nullDevice());
        display.start(QStringLiteral("Xvfb"), arguments);
        QByteArray answer;
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                answer += display.readAllStandardOutput();
                return answer.contains('\n');
            },
            kWaitMilliseconds));
        environment.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(answer.trimmed()));
        environment.insert(QStringLiteral("HOME"), folder.path());
        environment.remove(QStringLiteral("XDG_STATE_HOME"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
        // No request leaves the computer: the proxy refuses each at once.
        environment.insert(QStringLiteral("http_proxy"), QStringLiteral("http://127.0.0.1:9"));
        windowManager.setProcessEnvironment(environment);
        windowManager.setStandardErrorFile(QProcess::nullDevice());
        windowManager.start(QStringLiteral("openbox"), {});
        ASSERT_TRUE(windowManager.waitForStarted());
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                return Output(QStringLiteral("xprop"),
                              {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")})
                    .contains(u'#');
            },
            kWaitMilliseconds));
    }

    /// Minutes since midnight of Maghrib on the day of the journey, for the place of the settings.
    static int Maghrib()
    {
        CalculationLibrary library(QStringLiteral(DUSKBEACON_BIN_FOLDER));
        library.SetHorParams(4185, -8765, -360, 20, 3, 2026);
        library.SetHorTemkin({});
        library.SetHorAngle(-1500, 500, 500, -1500);
        return library.Horarium(9);
    }

    /// Starts the program so that the minute, counted from midnight, comes in a few seconds.
    void StartAhead(int minute, const QString& maghrib, const QString& advance)
    {
        QString text = SettingsText();
        text.replace(QRegularExpression(QStringLiteral("<maghrib [^>]*/>")),
                     QStringLiteral("<maghrib ") + maghrib + QStringLiteral("/>"));
        text.replace(QStringLiteral("useAdvWarn=\"false\" advWarn=\"10\""), advance);
        QFile file(folder.filePath(QStringLiteral("settings.xml")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        file.close();

        const QDateTime moment =
            QDateTime(QDate(2026, 3, 20), QTime(0, 0), Qt::UTC).addSecs(minute * 60 - kLeadSeconds);
        QProcessEnvironment own = environment;
        own.insert(QStringLiteral("LD_PRELOAD"), FakeTimeLibrary());
        own.insert(QStringLiteral("FAKETIME"), moment.toString(QStringLiteral("'@'yyyy-MM-dd hh:mm:ss")));
        own.insert(QStringLiteral("FAKETIME_DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
        program.setProcessEnvironment(own);
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.setWorkingDirectory(folder.path());
        sinceStart.start();
        program.start(folder.filePath(QStringLiteral("DuskBeacon")), {});
        ASSERT_TRUE(program.waitForStarted());
        ASSERT_TRUE(QTest::qWaitFor([&] { return !Window(kMain).isEmpty(); }, kWaitMilliseconds));
    }

    [[nodiscard]] QString Output(const QString& tool, const QStringList& arguments) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(tool, arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    [[nodiscard]] QString Xdotool(const QStringList& arguments) const
    {
        return Output(QStringLiteral("xdotool"), arguments);
    }
    /// The number of the window of that name on the screen; empty if there is no such window.
    [[nodiscard]] QString Window(const QString& name) const
    {
        return Xdotool(
            {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), name});
    }
    /// Seconds from the start of the program to the popup on the screen.
    [[nodiscard]] double WaitForPopup() const
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !Window(kPopup).isEmpty(); }, kWaitMilliseconds));
        return static_cast<double>(sinceStart.elapsed()) / 1000.0;
    }
    [[nodiscard]] bool WaitForPopupToGo() const
    {
        return QTest::qWaitFor([&] { return Window(kPopup).isEmpty(); }, kWaitMilliseconds);
    }
    void Click(const QString& window, int x, int y) const
    {
        static_cast<void>(Xdotool({QStringLiteral("mousemove"), QStringLiteral("--sync"),
                                   QStringLiteral("--window"), window, QString::number(x), QString::number(y),
                                   QStringLiteral("click"), QStringLiteral("1")}));
    }
    /// A picture of the whole screen, kept for people under a name.
    [[nodiscard]] QImage Picture(const char* name) const
    {
        const QString path = QStringLiteral(DUSKBEACON_PICTURE_FOLDER "/") + QString::fromLatin1(name) +
                             QStringLiteral(".png");
        QDir().mkpath(QStringLiteral(DUSKBEACON_PICTURE_FOLDER));
        static_cast<void>(
            Output(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), path}));
        return QImage(path);
    }
    /// Whether the stop link has the colour of an enabled link.
    [[nodiscard]] bool StopLinkIsBlue() const
    {
        const QString path = folder.filePath(QStringLiteral("main.png"));
        static_cast<void>(Output(QStringLiteral("import"), {QStringLiteral("-window"), Window(kMain), path}));
        const QImage picture = QImage(path).copy(32, 256, 65, 17);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor colour = picture.pixelColor(x, y);
                if (colour.blue() > 120 && colour.red() < 60) {
                    return true;
                }
            }
        }
        return false;
    }
    [[nodiscard]] QString ActiveWindow() const { return Xdotool({QStringLiteral("getactivewindow")}); }
    /// The topmost window, by the window manager's own list.
    [[nodiscard]] bool IsTopmost(const QString& window) const
    {
        const QString list = Output(QStringLiteral("xprop"),
                                    {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
        bool isNumber = false;
        return list.section(QStringLiteral("0x"), -1).trimmed().toULongLong(&isNumber, 16) ==
               window.toULongLong();
    }

    /// A window of another program, with the keyboard focus.
    void StartOtherProgram()
    {
        otherProgram.setProcessEnvironment(environment);
        otherProgram.setStandardOutputFile(QProcess::nullDevice());
        otherProgram.start(QStringLiteral("xev"),
                           {QStringLiteral("-name"), QStringLiteral("Letter"), QStringLiteral("-geometry"),
                            QStringLiteral("200x100+10+640")});
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return !Window(kOther).isEmpty() && ActiveWindow() == Window(kOther); },
                            kWaitMilliseconds));
    }
    /// The hints for the window manager; some window managers show the boxes all the same.
    [[nodiscard]] bool OffersBoxesToMinimiseOrMaximise(const QString& window) const
    {
        constexpr uint kMinimiseAndMaximise = 0x20 | 0x40;
        const QString hints = Output(QStringLiteral("xprop"),
                                     {QStringLiteral("-id"), window, QStringLiteral("_MOTIF_WM_HINTS")});
        const QString decorations = hints.section(QLatin1Char(','), 2, 2).trimmed();
        return (decorations.toUInt(nullptr, 0) & kMinimiseAndMaximise) != 0;
    }

    QTemporaryDir folder;
    SoundServer sound;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QProcess display;
    QProcess windowManager;
    QProcess program;
    QProcess otherProgram;
    QElapsedTimer sinceStart;
};

const QString kWithSound =
    QStringLiteral(R"(enabled="true" popup="true" mobil="false" play="true" audioFile="call.wav")");
const QString kNoAdvance = QStringLiteral(R"(useAdvWarn="false" advWarn="10")");

TEST_F(AlertJourney, prayerComes_popupOnTopSoundAndStopLink)
{
    StartAhead(Maghrib(), kWithSound, kNoAdvance);
    EXPECT_FALSE(StopLinkIsBlue());
    StartOtherProgram();
    const double seconds = WaitForPopup();
    RecordProperty("secondsAfterTheMinute", std::to_string(seconds - kLeadSeconds));
    EXPECT_GT(seconds, kLeadSeconds - 0.2);
    EXPECT_LT(seconds, kLeadSeconds + kLateSeconds);

    const QString popup = Window(kPopup);
    EXPECT_TRUE(QTest::qWaitFor([&] { return IsTopmost(popup); }, kWaitMilliseconds));
    EXPECT_EQ(ActiveWindow(), Window(kOther)) << "the keyboard stays where it was";
    EXPECT_FALSE(OffersBoxesToMinimiseOrMaximise(popup));
    EXPECT_TRUE(OffersBoxesToMinimiseOrMaximise(Window(kMain))) << "or the look at the hints is wrong";
    EXPECT_TRUE(sound.WaitForTone(kTone));
    static_cast<void>(Picture("popup_over_main_window"));

    // The main window is disabled: a click on the stop link would end the sound.
    Click(Window(kMain), 60, 264);

    static_cast<void>(Xdotool({QStringLiteral("windowraise"), Window(kMain)}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return IsTopmost(popup); }, kWaitMilliseconds)) << "it stays on top";
    Click(popup, 104, 80);
    EXPECT_TRUE(WaitForPopupToGo());
    EXPECT_TRUE(QTest::qWaitFor([&] { return StopLinkIsBlue(); }, kWaitMilliseconds)) << "the sound goes on";
    EXPECT_TRUE(sound.WaitForTone(kTone));

    Click(Window(kMain), 60, 264);
    EXPECT_TRUE(sound.WaitForSilence());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !StopLinkIsBlue(); }, kWaitMilliseconds));
}

TEST_F(AlertJourney, soundEnds_stopLinkGreysByItself)
{
    ASSERT_TRUE(QFile::remove(folder.filePath(QStringLiteral("call.wav"))));
    ASSERT_TRUE(WriteTone(folder.filePath(QStringLiteral("call.wav")), kTone, 3.0));
    QString silentPopup = kWithSound;
    StartAhead(Maghrib(),
               silentPopup.replace(QStringLiteral("popup=\"true\""), QStringLiteral("popup=\"false\"")),
               kNoAdvance);
    EXPECT_TRUE(QTest::qWaitFor([&] { return StopLinkIsBlue(); }, kWaitMilliseconds));
    EXPECT_TRUE(sound.WaitForTone(kTone));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !StopLinkIsBlue(); }, kWaitMilliseconds));
    EXPECT_TRUE(Window(kPopup).isEmpty());
}

TEST_F(AlertJourney, warningOfOneMinute_comesAndGoesByItself)
{
    StartAhead(Maghrib() - 1, kWithSound, QStringLiteral(R"(useAdvWarn="true" advWarn="1")"));
    const double up = WaitForPopup();
    EXPECT_GT(up, kLeadSeconds - 0.2);
    EXPECT_LT(up, kLeadSeconds + kLateSeconds);
    EXPECT_TRUE(WaitForPopupToGo());
    const double gone = static_cast<double>(sinceStart.elapsed()) / 1000.0;
    EXPECT_LT(gone, up + 1.0 + kLateSeconds) << "after its one second";
}

TEST_F(AlertJourney, warningOfTenMinutes_mainWindowMinimised_goesByOk)
{
    StartAhead(Maghrib() - 10, kWithSound, QStringLiteral(R"(useAdvWarn="true" advWarn="10")"));
    const QString main = Window(kMain);
    static_cast<void>(Xdotool({QStringLiteral("windowminimize"), QStringLiteral("--sync"), main}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return Window(kMain).isEmpty(); }, kWaitMilliseconds));
    const double up = WaitForPopup();
    EXPECT_GT(up, kLeadSeconds - 0.2);
    EXPECT_LT(up, kLeadSeconds + kLateSeconds);
    EXPECT_TRUE(Window(kMain).isEmpty()) << "the main window stays hidden";
    static_cast<void>(Picture("popup_with_main_window_minimised"));
    Click(Window(kPopup), 104, 80);
    EXPECT_TRUE(WaitForPopupToGo());
    EXPECT_TRUE(Window(kMain).isEmpty());
    EXPECT_EQ(program.state(), QProcess::Running);
}

} // namespace
