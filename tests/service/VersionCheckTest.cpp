// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/VersionCheck.h"

#include "fakes/LockableFiles.h"
#include "service/ServiceWorld.h"
#include "store/SimpleXML.h"

#include <gtest/gtest.h>

namespace {

class VersionCheckTest : public testing::Test, protected ServiceWorld
{
protected:
    void Answer(const QByteArray& attributes)
    {
        platform.http.replies[QStringLiteral("version.pl")] = "<root " + attributes + "/>";
    }
    void Check(bool check = true) { VersionCheck(*window).CheckNewVersion(check); }
    void SetRemind(const QString& remind)
    {
        WriteSettings(SettingsText().replace(QStringLiteral("remind=\"\""),
                                             QStringLiteral("remind=\"%1\"").arg(remind)));
    }
    [[nodiscard]] QString Remind() const
    {
        SimpleXML settings(platform.interfaces);
        settings.Load(kSettingsFile);
        return settings.GetAttribute(QStringLiteral("remind"), QStringLiteral("//root//app//version"));
    }
    void SetDay(int dayOfYear) { platform.clock.Set(QDate(2026, 1, 1).addDays(dayOfYear - 1), QTime(9, 0)); }
    [[nodiscard]] std::size_t Offers() const { return platform.boxes.boxes.size(); }
};

TEST_F(VersionCheckTest, checkFalse_doesNothing)
{
    Check(false);
    EXPECT_TRUE(platform.http.probes.isEmpty());
    EXPECT_TRUE(platform.http.requests.isEmpty());
}

TEST_F(VersionCheckTest, noNetwork_sendsNoRequest)
{
    platform.http.reachable = false;
    Check();
    EXPECT_EQ(platform.http.probes.size(), 1);
    EXPECT_TRUE(platform.http.requests.isEmpty());
}

TEST_F(VersionCheckTest, offer_hasItsExactText)
{
    Answer("version_name='2' version_sequence='0'");
    Check();
    ASSERT_EQ(Offers(), 1U);
    EXPECT_EQ(
        platform.boxes.boxes.front(),
        (FakeMessageBoxes::Box{QStringLiteral("Would you like to Download\r\nthe new version of DuskBeacon?"),
                               QStringLiteral("Dusk Beacon"), QStringLiteral("Yes No")}));
}

TEST_F(VersionCheckTest, reply_decides)
{
    const std::pair<const char*, std::size_t> rows[] = {
        {"<root version_name='1' version_sequence='5'/>", 0},
        {"<root version_name='1.0' version_sequence=' 5 '/>", 0},
        {"<root version_name='1' version_sequence='6'/>", 1},
        {"<root version_name='2' version_sequence='5'/>", 1},
        {"<root version_name='0' version_sequence='5'/>", 1},
        {"<root version_name='1' version_sequence='5.1'/>", 1},
        {"<root version_sequence='6'/>", 0},
        {"<root version_name='' version_sequence='6'/>", 0},
        {"<root version_name='2'/>", 0},
        {"<root version_name='two' version_sequence='5'/>", 0},
        {"<root version_name='2' version_sequence='b'/>", 0},
        {"<html><root version_name='2' version_sequence='5'/></html>", 0},
        {"oops", 0},
        {"", 0},
    };
    Check();
    EXPECT_EQ(Offers(), 0U) << "no reply";
    for (const auto& [reply, offers] : rows) {
        WriteSettings();
        platform.boxes.boxes.clear();
        platform.http.replies[QStringLiteral("version.pl")] = reply;
        Check();
        EXPECT_EQ(Offers(), offers) << reply;
        EXPECT_EQ(platform.process.ended, 0) << reply;
    }
}

TEST_F(VersionCheckTest, yes_opensTheDownloadAndEndsTheProgram)
{
    const QByteArray before = ReadSettings();
    const std::pair<const char*, QString> rows[] = {
        {"download_url='http://x.example/d?a=1&amp;b= c'", QStringLiteral("http://x.example/d?a=1&b= c")},
        {"", QString()},
    };
    for (const auto& [attribute, opened] : rows) {
        Answer(QByteArray("version_name='2' version_sequence='0' ") + attribute);
        platform.boxes.answers = {true};
        platform.process.ended = 0;
        Check();
        EXPECT_EQ(platform.browser.opened.takeLast(), opened);
        EXPECT_EQ(platform.process.ended, 1) << attribute;
    }
    EXPECT_EQ(ReadSettings(), before) << "remind stays as it was";
}

TEST_F(VersionCheckTest, no_silencesFourteenDays)
{
    Answer("version_name='2' version_sequence='0'");
    SetDay(100);
    Check();
    EXPECT_EQ(Remind(), QStringLiteral("114"));
    EXPECT_EQ(platform.process.ended, 0);
    EXPECT_TRUE(platform.browser.opened.isEmpty());
    for (int day = 100; day <= 113; ++day) {
        SetDay(day);
        Check();
        EXPECT_EQ(Offers(), 1U) << day;
    }
    SetDay(114);
    Check();
    EXPECT_EQ(Offers(), 2U);
    EXPECT_EQ(Remind(), QStringLiteral("128"));
}

TEST_F(VersionCheckTest, noLateInTheYear_silencesForGood)
{
    Answer("version_name='2' version_sequence='0'");
    SetDay(360);
    Check();
    EXPECT_EQ(Remind(), QStringLiteral("374"));
    for (const int day : {1, 14, 100, 361, 365}) {
        SetDay(day);
        Check();
        EXPECT_EQ(Offers(), 1U) << day;
    }
}

TEST_F(VersionCheckTest, no_keepsEverythingElseOfTheSettings)
{
    Answer("version_name='2' version_sequence='0'");
    SimpleXML before(platform.interfaces);
    before.Load(kSettingsFile);
    Check();
    SimpleXML after(platform.interfaces);
    ASSERT_TRUE(after.Load(kSettingsFile));
    after.AddAttributeByName(QStringLiteral("remind"), QString(), QStringLiteral("//root//app//version"));
    EXPECT_EQ(after.XML(), before.XML());
}

// A copy from a case-insensitive file system may contain a second file.
TEST_F(VersionCheckTest, fileOfTheOtherSpelling_isNeitherReadNorCopied)
{
    QFile other(QStringLiteral("settings.XML"));
    if (other.exists()) {
        GTEST_SKIP() << "one file has both spellings here";
    }
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    const QByteArray stray = SettingsText()
                                 .replace(QStringLiteral("remind=\"\""), QStringLiteral("remind=\"366\""))
                                 .replace(QStringLiteral("P-77"), QStringLiteral("P-stray"))
                                 .toUtf8();
    other.write(stray);
    other.close();
    Answer("version_name='2' version_sequence='0'");
    SetDay(100);
    Check();
    EXPECT_EQ(Offers(), 1U) << "the file itself has no reminder";
    EXPECT_EQ(Remind(), QStringLiteral("114"));
    EXPECT_TRUE(ReadSettings().contains("P-77"));
    ASSERT_TRUE(other.open(QIODevice::ReadOnly));
    EXPECT_EQ(other.readAll(), stray);
}

TEST_F(VersionCheckTest, noSettings_offersToo_noWritesNothing)
{
    Answer("version_name='2' version_sequence='0' download_url='http://x.example/'");
    QFile::remove(kSettingsFile);
    Check();
    EXPECT_EQ(Offers(), 1U);
    EXPECT_FALSE(QFile::exists(kSettingsFile));
    EXPECT_EQ(platform.process.ended, 0);
    platform.boxes.answers = {true};
    Check();
    EXPECT_EQ(Offers(), 2U);
    EXPECT_EQ(platform.browser.opened, QStringList(QStringLiteral("http://x.example/")));
    EXPECT_EQ(platform.process.ended, 1);
}

TEST_F(VersionCheckTest, remind_decides)
{
    const struct
    {
        const char* remind;
        int day;
        std::size_t offers;
    } rows[] = {
        {"", 1, 1},        {"114", 113, 0}, {"114", 114, 1}, {"114.7", 114, 1},
        {"114.7", 113, 0}, {"350", 10, 0},  {"-5", 1, 1},    {"soon", 200, 0},
    };
    Answer("version_name='2' version_sequence='0'");
    for (const auto& row : rows) {
        SetRemind(QLatin1String(row.remind));
        SetDay(row.day);
        platform.boxes.boxes.clear();
        Check();
        EXPECT_EQ(Offers(), row.offers) << row.remind << " on day " << row.day;
    }
}

TEST_F(VersionCheckTest, leapYear_hasADay366)
{
    Answer("version_name='2' version_sequence='0'");
    platform.clock.Set(QDate(2028, 12, 31), QTime(9, 0));
    SetRemind(QStringLiteral("366"));
    Check();
    EXPECT_EQ(Offers(), 1U);
    EXPECT_EQ(Remind(), QStringLiteral("380"));
}

TEST_F(VersionCheckTest, noElementToRemember_offersAgainNextTime)
{
    WriteSettings(SettingsText().remove(QStringLiteral("<version remind=\"\"/>")));
    Answer("version_name='2' version_sequence='0'");
    Check();
    Check();
    EXPECT_EQ(Offers(), 2U);
    EXPECT_EQ(Remind(), QString());
}

TEST_F(VersionCheckTest, noThatCantBeSaved_isLostSilently)
{
    LockableFiles files;
    files.isLocked = true;
    const Platform interfaces = platform.With(files, platform.http);
    Forms locked(interfaces);
    locked.Register(FakeMain::kName, [&locked] { return std::make_unique<FakeMain>(locked); });
    Answer("version_name='2' version_sequence='0'");
    VersionCheck(locked.Touch<FakeMain>()).CheckNewVersion(true);
    EXPECT_EQ(Offers(), 1U);
    EXPECT_EQ(Remind(), QString());
    EXPECT_EQ(platform.process.ended, 0);
}

TEST_F(VersionCheckTest, windowClosedDuringTheRequest_nothingIsOffered)
{
    Answer("version_name='2' version_sequence='0'");
    platform.http.whileWaiting = [this] { window->Unload(); };
    window->Handle([this] { Check(); });
    EXPECT_EQ(Offers(), 0U);
}

TEST_F(VersionCheckTest, windowClosedDuringTheQuestion_answerIsIgnored)
{
    const QByteArray before = ReadSettings();
    Answer("version_name='2' version_sequence='0' download_url='http://x.example/d'");
    platform.boxes.whileOpen = [this] { window->Unload(); };
    for (const bool isAgreed : {false, true}) {
        platform.boxes.answers = {isAgreed};
        window->Handle([this] { Check(); });
    }
    EXPECT_EQ(ReadSettings(), before);
    EXPECT_TRUE(platform.browser.opened.isEmpty());
    EXPECT_EQ(platform.process.ended, 0);
}

} // namespace
