// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/FirstTouchFixture.h"
#include "fakes/LockableFiles.h"
#include "fakes/PaintCount.h"
#include "fakes/PlainUser.h"
#include "support/RuntimeError.h"

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
    void ExpectFatalEnd()
    {
        ExpectFatal(5);
        EXPECT_TRUE(isSplashUnderTheBox);
        EXPECT_EQ(endedUnderTheBox, 0);
        EXPECT_EQ(forms.Loaded(DlgStart::kName), nullptr) << "the splash goes behind the box";
        EXPECT_TRUE(platform.http.probes.isEmpty()) << "the file comes before the network";
        EXPECT_FALSE(IsRunning());
        EXPECT_EQ(platform.tray.added, 0);
        EXPECT_TRUE(calculation.calls.isEmpty());
    }

    bool isSplashUnderTheBox = false;
    int endedUnderTheBox = 0;
};

TEST_F(StartUpTest, load_runsItsStepsAndShowsTheDay_changesNoFile)
{
    const QByteArray before = ReadSettings();
    EXPECT_EQ(Window().windowTitle(), u"Dusk Beacon v1.0.5");
    EXPECT_EQ(Window().size(), QSize(602, 423));
    EXPECT_FALSE(Window().Variables().DebugMode);
    EXPECT_EQ(Window().Variables().AdTimer, 600.0F);
    EXPECT_EQ(Window().Variables().ActiveForm, u"FrmMain");
    EXPECT_EQ(Window().Variables().Settings.PID, u"P-77");
    EXPECT_TRUE(IsRunning());
    EXPECT_EQ(platform.tray.added, 1);
    EXPECT_EQ(forms.Loaded(DlgStart::kName), nullptr);
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
    EXPECT_EQ(Text("LblLocation"), u"Chicago, Illinois");
    EXPECT_EQ(ReadSettings(), before);
    EXPECT_EQ(QDir().entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("settings")).join(u' '),
              u"settings.xml");
}

TEST_F(StartUpTest, splash_isPaintedBeforeThePause_andNothingElseIsDone)
{
    const SlowDesktop desktop;
    const PaintCount splashes(DlgStart::kName);
    platform.process.whileAsleep = [&] {
        EXPECT_GE(splashes.paints, 1) << "nothing paints it during the pause";
        const Form* const splash = forms.Loaded(DlgStart::kName);
        ASSERT_NE(splash, nullptr);
        EXPECT_TRUE(splash->isVisible());
        EXPECT_FALSE(splash->isModal());
        EXPECT_EQ(splash->findChild<QLabel*>(QStringLiteral("Label1"))->text(), u"Build 5");
        EXPECT_EQ(splash->findChild<QLabel*>(QStringLiteral("Label2"))->text(), u"Loading....");
        EXPECT_FALSE(forms.Loaded(FrmMain::kName)->isVisible());
        EXPECT_TRUE(calculation.calls.isEmpty());
    };
    Window();
    EXPECT_EQ(platform.process.sleptMilliseconds, 2000);
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

class BrokenSettings : public StartUpTest, public testing::WithParamInterface<const char*>
{
};

TEST_P(BrokenSettings, load_saysError5_andEnds_fileAsItWas)
{
    const std::map<std::string, QByteArray> contents{{"empty", ""},
                                                     {"truncated", SettingsText().toUtf8().left(700)},
                                                     {"notXml", "[settings]\npid=P-77\n"},
                                                     {"binary", QByteArray(4096, '\0')},
                                                     {"unreadable", SettingsText().toUtf8()}};
    const std::string name = GetParam();
    QFile file(kSettingsFile);
    file.remove();
    if (const auto content = contents.find(name); content != contents.end()) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content->second);
        file.close();
    } else if (name == "folder") {
        ASSERT_TRUE(QDir().mkdir(kSettingsFile));
    }
    {
        std::optional<UnreadableFile> unreadable;
        if (name == "unreadable") {
            unreadable.emplace(kSettingsFile);
        }
        Window();
    }
    ExpectFatalEnd();
    EXPECT_EQ(ReadSettings(), contents.contains(name) ? contents.at(name) : QByteArray());
    EXPECT_EQ(QFileInfo(kSettingsFile).isDir(), name == "folder");
    EXPECT_EQ(QDir().isEmpty(), name == "missing");
}

INSTANTIATE_TEST_SUITE_P(StartUp, BrokenSettings,
                         testing::Values("empty", "truncated", "notXml", "binary", "missing", "folder",
                                         "unreadable"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(StartUpTest, settingsThatAPlainUserCanRead_areEnough)
{
    ASSERT_TRUE(QFile::setPermissions(kSettingsFile, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    const PlainUser user(platform.folder.path());
    ASSERT_TRUE(user.IsPlain());
    Window();
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_TRUE(IsRunning());
}

TEST_F(StartUpTest, runtimeErrorWhileLoading_saysError5_withoutDetail)
{
    // The icon is the last step that can throw.
    platform.tray.fails = true;
    Window();
    ExpectFatal(5);
    EXPECT_EQ(forms.Loaded(DlgStart::kName), nullptr);
}

TEST_F(StartUpTest, runtimeErrorWhileLoading_inDebugMode_tellsTheDetailFirst)
{
    WriteSettings(Changed("FirstRun=\"false\"", "FirstRun=\"true\""));
    platform.http.replies[QStringLiteral("requestProdID.pl")] = "<root prod_string='P-1'/>";
    LockableFiles files;
    files.isLocked = true;
    const Platform interfaces = platform.With(files, platform.http);
    Forms windows(interfaces);
    RegisterStartWindows(windows, calculation);
    platform.http.whileWaiting = [&windows] {
        windows.Variables().DebugMode = true;
        windows.Variables().ActiveForm = QStringLiteral("FrmPopup");
    };
    windows.Touch<FrmMain>();
    EXPECT_EQ(
        platform.boxes.boxes,
        (std::vector{FakeMessageBoxes::Message(QStringLiteral("settings.xml can't be written 5 on FrmPopup")),
                     FakeMessageBoxes::Fatal(5)}));
    EXPECT_EQ(platform.process.ended, 1);
}

TEST_F(StartUpTest, designTexts_standUntilAConfigurationIsRead)
{
    WriteWithoutAPlace();
    Window();
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
    EXPECT_FALSE(IsRunning());
    EXPECT_EQ(platform.tray.added, 1);
    const std::pair<const char*, const char16_t*> labels[] = {
        {"LblTimeZ", u"Time Zone:"},
        {"LblAsrMeth", u"Asr Method:"},
        {"LblCaclMeth", u"Calculation Method:"},
        {"LblDLSavings", u"Day Light Savings is:"},
        {"LblAdvWarning", u"Advanced Warning:"},
        {"Label2", u"Progression of the sun and moon in the sky"},
        {"Label3", u"Time till next prayer:"},
        {"LblVolume", u"Volume Control:"},
        {"LblAlertsLink", u"Alerts"},
        {"LblLocLink", u"Locations"},
        {"LblStopLink", u"Stop Playing"},
        {"LblGetMoreLink", u"More Sound Files"},
        {"LblHelp", u"Help"}};
    for (const auto& [name, text] : labels) {
        EXPECT_EQ(Text(name), text);
    }
    const std::pair<const char*, const char16_t*> frames[] = {{"Frame2", u"Location and Setting Information"},
                                                              {"FrmOptions", u"Options"},
                                                              {"Frame3", u"Qibla Direction"},
                                                              {"Frame6", u"Sun && Moon position"}};
    for (const auto& [name, caption] : frames) {
        EXPECT_EQ(Find<QGroupBox>(name).title(), caption);
    }
    EXPECT_EQ(Find<QGroupBox>("PrayerFrame").findChild<QLabel*>(QStringLiteral("Label1"))->text(),
              u"Hajri Date: ");
    EXPECT_EQ(DateCaption(), u"Date:");
    EXPECT_EQ(Times(), u"|||||");
}

class SettingsFolderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char* const name : {"own", "data", "elsewhere"}) {
            ASSERT_TRUE(QDir(platform.folder.path()).mkpath(QLatin1String(name)));
        }
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

TEST_F(SettingsFolderTest, fileBesideTheProgram_isTakenThere_elseFromTheUsersData)
{
    WriteInto(Folder("data"));
    EnterSettingsFolder(platform.interfaces);
    EXPECT_EQ(QDir::currentPath(), Folder("data"));
    WriteInto(Folder("own"));
    EnterSettingsFolder(platform.interfaces);
    EXPECT_EQ(QDir::currentPath(), Folder("own"));
}

TEST_F(SettingsFolderTest, noFolder_fileInTheWorkingDirectory_isNotUsed)
{
    platform.process.dataFolder = Folder("missing");
    WriteInto(Folder("elsewhere"));
    EnterSettingsFolder(platform.interfaces);
    EXPECT_FALSE(QFile::exists(kSettingsFile));
    EXPECT_FALSE(QFileInfo::exists(Folder("missing"))) << "nothing is made";
}

} // namespace
