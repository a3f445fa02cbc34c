// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/FirstTouchFixture.h"
#include "fakes/LockableFiles.h"
#include "fakes/PaintCount.h"
#include "fakes/PlainUser.h"
#include "support/RuntimeError.h"

#include <sys/stat.h>

namespace {

class StartUpTest : public FirstTouchFixture
{
protected:
    StartUpTest()
    {
        platform.boxes.whileOpen = [this] {
            isSplashUnderTheBox = forms.Loaded(DlgStart::kName) != nullptr;
            endedUnderTheBox = platform.process.ended;
        };
    }
    QLabel* SplashLabel(const char* name)
    {
        Form* const splash = forms.Loaded(QStringLiteral("DlgStart"));
        return splash == nullptr ? nullptr : splash->findChild<QLabel*>(QLatin1String(name));
    }
    void ExpectFatalEnd()
    {
        EXPECT_EQ(platform.boxes.boxes, std::vector<FakeMessageBoxes::Box>{FatalBox(5)});
        EXPECT_TRUE(isSplashUnderTheBox);
        EXPECT_EQ(endedUnderTheBox, 0);
        EXPECT_EQ(platform.process.ended, 1);
        EXPECT_EQ(forms.Loaded(DlgStart::kName), nullptr) << "the splash goes behind the box";
        EXPECT_TRUE(platform.http.probes.isEmpty()) << "the file comes before the network";
        EXPECT_FALSE(IsRunning());
        EXPECT_EQ(platform.tray.added, 0);
        EXPECT_TRUE(calculation.calls.isEmpty());
    }

    bool isSplashUnderTheBox = false;
    int endedUnderTheBox = 0;
};

// Looks at the splash while the process sleeps.
class WatchfulProcess final : public Process
{
public:
    void End() override {}
    void Sleep(int milliseconds) override { whileAsleep(milliseconds); }
    [[nodiscard]] QString ApplicationFolder() const override { return {}; }
    [[nodiscard]] QString UserDataFolder() const override { return {}; }

    std::function<void(int)> whileAsleep;
};

TEST_F(StartUpTest, load_runsItsStepsAndShowsTheDay)
{
    EXPECT_EQ(Window().windowTitle(), QStringLiteral("Dusk Beacon v1.0.5"));
    EXPECT_EQ(Window().size(), QSize(602, 423));
    EXPECT_FALSE(Window().Variables().DebugMode);
    EXPECT_EQ(Window().Variables().AdTimer, 600.0F);
    EXPECT_EQ(platform.process.sleptMilliseconds, 2000);
    EXPECT_EQ(Window().Variables().ActiveForm, QStringLiteral("FrmMain"));
    EXPECT_EQ(Window().Variables().Settings.PID, QStringLiteral("P-77"));
    EXPECT_TRUE(IsRunning());
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_EQ(forms.Loaded(QStringLiteral("DlgStart")), nullptr);
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Chicago, Illinois"));
}

TEST_F(StartUpTest, load_readsAndChangesNoFile)
{
    const QByteArray before = ReadSettings();
    Window();
    EXPECT_EQ(ReadSettings(), before);
    EXPECT_EQ(QDir().entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("settings")),
              QStringList{QStringLiteral("settings.xml")});
}

TEST_F(StartUpTest, splash_isPaintedBeforeThePause_andNothingElseIsDone)
{
    WatchfulProcess process;
    const Platform doors{platform.clock, platform.timers, platform.files,   platform.http,   platform.player,
                         platform.tray,  platform.boxes,  platform.browser, platform.region, process};
    Forms windows(doors);
    RegisterStartWindows(windows, calculation);
    bool slept = false;
    const SlowDesktop desktop;
    const PaintCount splashes(DlgStart::kName);
    process.whileAsleep = [&](int milliseconds) {
        slept = true;
        EXPECT_EQ(milliseconds, 2000);
        EXPECT_GE(splashes.paints, 1) << "nothing paints it during the pause";
        const Form* const splash = windows.Loaded(QStringLiteral("DlgStart"));
        ASSERT_NE(splash, nullptr);
        EXPECT_TRUE(splash->isVisible());
        EXPECT_FALSE(splash->isModal());
        EXPECT_EQ(splash->findChild<QLabel*>(QStringLiteral("Label1"))->text(), QStringLiteral("Build 5"));
        EXPECT_EQ(splash->findChild<QLabel*>(QStringLiteral("Label2"))->text(),
                  QStringLiteral("Loading...."));
        EXPECT_FALSE(windows.Loaded(QStringLiteral("FrmMain"))->isVisible());
        EXPECT_TRUE(calculation.calls.isEmpty());
    };
    windows.Touch<FrmMain>();
    EXPECT_TRUE(slept);
}

TEST_F(StartUpTest, splash_dotsGrowFromOneToEleven_andFallBackToOne)
{
    auto& splash = forms.Touch<DlgStart>();
    FakeTimer* const timer = platform.timers.all.back();
    ASSERT_TRUE(timer->IsEnabled());
    EXPECT_EQ(timer->intervalMilliseconds, 1000);
    const auto* const label = splash.findChild<QLabel*>(QStringLiteral("Label2"));
    EXPECT_EQ(label->text(), QStringLiteral("Loading...."));
    for (int tick = 1; tick <= 30; ++tick) {
        timer->Fire();
        EXPECT_EQ(label->text(), QStringLiteral("Loading") + QString((tick - 1) % 11 + 1, u'.')) << tick;
    }
}

struct BrokenRow
{
    const char* name;
    QByteArray content;
};

class BrokenSettings : public StartUpTest, public testing::WithParamInterface<BrokenRow>
{
};

TEST_P(BrokenSettings, load_saysError5_andEnds_fileAsItWas)
{
    QFile file(kSettingsFile);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(GetParam().content);
    file.close();
    Window();
    ExpectFatalEnd();
    EXPECT_EQ(ReadSettings(), GetParam().content);
}

INSTANTIATE_TEST_SUITE_P(StartUp, BrokenSettings,
                         testing::Values(BrokenRow{"empty", ""},
                                         BrokenRow{"truncated", SettingsText().toUtf8().left(700)},
                                         BrokenRow{"notXml", "[settings]\npid=P-77\n"},
                                         BrokenRow{"binary", QByteArray(4096, '\0')}),
                         [](const testing::TestParamInfo<BrokenRow>& row) {
                             return std::string(row.param.name);
                         });

TEST_F(StartUpTest, settingsMissing_saysError5_andEnds_nothingIsMade)
{
    QFile::remove(kSettingsFile);
    Window();
    ExpectFatalEnd();
    EXPECT_TRUE(QDir().isEmpty());
}

TEST_F(StartUpTest, settingsThatAreAFolder_saysError5_andEnds)
{
    QFile::remove(kSettingsFile);
    ASSERT_TRUE(QDir().mkdir(kSettingsFile));
    Window();
    ExpectFatalEnd();
    EXPECT_TRUE(QFileInfo(kSettingsFile).isDir());
}

TEST_F(StartUpTest, settingsThatCannotBeRead_saysError5_andEnds)
{
    ASSERT_EQ(::chmod("settings.xml", 0), 0);
    // Root can read everything.
    const PlainUser user(platform.folder.path());
    ASSERT_TRUE(user.IsPlain());
    ASSERT_FALSE(QFile(QStringLiteral("settings.xml")).open(QIODevice::ReadOnly));
    Window();
    ExpectFatalEnd();
}

TEST_F(StartUpTest, settingsThatAPlainUserCanRead_areEnough)
{
    ASSERT_EQ(::chmod("settings.xml", 0444), 0);
    const PlainUser user(platform.folder.path());
    ASSERT_TRUE(user.IsPlain());
    Window();
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_TRUE(IsRunning());
}

TEST_F(StartUpTest, runtimeErrorWhileLoading_saysError5_withoutDetail)
{
    // A tray that fails stands for any step that throws.
    class BrokenTray final : public TrayIcon
    {
    public:
        void Add(const QIcon& /*icon*/, const QString& /*tip*/, QMenu& /*menu*/) override
        {
            throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("no tray"));
        }
        void Remove() override {}
        [[nodiscard]] bool IsShown() const override { return false; }
    };
    BrokenTray tray;
    const Platform doors{
        platform.clock, platform.timers, platform.files,   platform.http,   platform.player,
        tray,           platform.boxes,  platform.browser, platform.region, platform.process};
    Forms windows(doors);
    RegisterStartWindows(windows, calculation);
    windows.Touch<FrmMain>();
    EXPECT_EQ(platform.boxes.boxes, std::vector<FakeMessageBoxes::Box>{FatalBox(5)});
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_EQ(windows.Loaded(QStringLiteral("DlgStart")), nullptr);
}

TEST_F(StartUpTest, runtimeErrorWhileLoading_inDebugMode_tellsTheDetailFirst)
{
    WriteSettings(Changed("FirstRun=\"false\"", "FirstRun=\"true\""));
    platform.http.replies[QStringLiteral("requestProdID.pl")] = "<root prod_string='P-1'/>";
    LockableFiles files;
    files.isLocked = true;
    const Platform doors = platform.With(files, platform.http);
    Forms windows(doors);
    RegisterStartWindows(windows, calculation);
    platform.http.whileWaiting = [&windows] {
        windows.Variables().DebugMode = true;
        windows.Variables().ActiveForm = QStringLiteral("FrmPopup");
    };
    windows.Touch<FrmMain>();
    EXPECT_EQ(platform.boxes.boxes, (std::vector<FakeMessageBoxes::Box>{
                                        {QStringLiteral("settings.xml can't be written 5 on FrmPopup"),
                                         QStringLiteral("Dusk Beacon"), QStringLiteral("OK")},
                                        FatalBox(5)}));
    EXPECT_EQ(platform.process.ended, 1);
}

TEST_F(StartUpTest, designTexts_standUntilAConfigurationIsRead)
{
    WriteSettings(Changed("Current=\"Chicago\"", "Current=\"\""));
    Window();
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
    EXPECT_FALSE(IsRunning());
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_EQ(Text("LblTimeZ"), QStringLiteral("Time Zone:"));
    EXPECT_EQ(Text("LblAsrMeth"), QStringLiteral("Asr Method:"));
    EXPECT_EQ(Text("LblCaclMeth"), QStringLiteral("Calculation Method:"));
    EXPECT_EQ(Text("LblDLSavings"), QStringLiteral("Day Light Savings is:"));
    EXPECT_EQ(Text("LblAdvWarning"), QStringLiteral("Advanced Warning:"));
    const auto* const frame = Window().findChild<QGroupBox*>(QStringLiteral("PrayerFrame"));
    EXPECT_EQ(frame->findChild<QLabel*>(QStringLiteral("Label1"))->text(), QStringLiteral("Hajri Date: "));
    EXPECT_EQ(Text("Label3"), QStringLiteral("Time till next prayer:"));
    EXPECT_EQ(Text("LblVolume"), QStringLiteral("Volume Control:"));
    EXPECT_EQ(DateCaption(), QStringLiteral("Date:"));
    EXPECT_EQ(Times(), QStringList(6, QString()));
}

class SettingsFolderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir(platform.folder.path()).mkpath(QStringLiteral("own")));
        ASSERT_TRUE(QDir(platform.folder.path()).mkpath(QStringLiteral("data")));
        ASSERT_TRUE(QDir(platform.folder.path()).mkpath(QStringLiteral("elsewhere")));
        platform.process.folder = Folder("own");
        platform.process.dataFolder = Folder("data");
        QDir::setCurrent(Folder("elsewhere"));
    }
    [[nodiscard]] QString Folder(const char* name) const
    {
        return platform.folder.filePath(QLatin1String(name));
    }
    static void WriteInto(const QString& folder)
    {
        const QString before = QDir::currentPath();
        QDir::setCurrent(folder);
        WriteSettings();
        QDir::setCurrent(before);
    }

    FakePlatform platform;
};

TEST_F(SettingsFolderTest, fileBesideTheProgram_isTakenThere)
{
    WriteInto(Folder("own"));
    WriteInto(Folder("data"));
    EnterSettingsFolder(platform.doors);
    EXPECT_EQ(QDir::currentPath(), Folder("own"));
}

TEST_F(SettingsFolderTest, noFileBesideTheProgram_isTakenFromTheUsersData)
{
    EnterSettingsFolder(platform.doors);
    EXPECT_EQ(QDir::currentPath(), Folder("data"));
}

TEST_F(SettingsFolderTest, noFolderAtAll_neverTakesAFileThatLiesAroundWhereItWasStarted)
{
    platform.process.dataFolder = Folder("missing");
    WriteInto(Folder("elsewhere"));
    EnterSettingsFolder(platform.doors);
    EXPECT_FALSE(QFile::exists(kSettingsFile));
    EXPECT_FALSE(QFileInfo::exists(Folder("missing"))) << "nothing is made";
}

} // namespace
