// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LockableFiles.h"
#include "fakes/LoopbackServer.h"
#include "fakes/RebasedHttp.h"
#include "fakes/SettingsFile.h"
#include "forms/LinkLabel.h"
#include "service/StartUpProgram.h"
#include "store/SimpleXML.h"

#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

const QString kBase = QStringLiteral(DUSKBEACON_SERVICE_URL) + QStringLiteral("/cgi-bin/dbeacon/");
const FakeMessageBoxes::Box kFatalBox{
    QStringLiteral("An error has occured, The application will be terminated."), QStringLiteral("Error - 5"),
    QStringLiteral("OK")};

QString FirstStartSettings()
{
    return SettingsText().replace(QStringLiteral("FirstRun=\"false\" pid=\"P-77\""),
                                  QStringLiteral("FirstRun=\"true\" pid=\"\""));
}

class StartUpTest : public testing::Test
{
protected:
    void Settle(const QString& firstRun, const QString& pid)
    {
        WriteSettings(SettingsText()
                          .replace(QStringLiteral("FirstRun=\"false\""),
                                   QStringLiteral("FirstRun=\"%1\"").arg(firstRun))
                          .replace(QStringLiteral("pid=\"P-77\""), QStringLiteral("pid=\"%1\"").arg(pid)));
    }
    /// The network is there, and the service gives an identifier.
    void AnswerIdentifier()
    {
        platform.http.reachable = true;
        platform.http.replies[QStringLiteral("requestProdID.pl")] = "<root prod_string='P-1'/>";
    }
    FrmMain& Start()
    {
        auto& window = program.Start();
        window.Show();
        return window;
    }
    [[nodiscard]] QString App(const QString& attribute) const
    {
        SimpleXML settings(platform.interfaces);
        settings.Load(kSettingsFile);
        return settings.GetAttribute(attribute, QStringLiteral("//root//app"));
    }
    [[nodiscard]] QStringList Scripts() const
    {
        QStringList scripts;
        for (const QString& request : platform.http.requests) {
            scripts << request.mid(kBase.size()).section(u'?', 0, 0);
        }
        return scripts;
    }

    /// The list of places after a first start: the active form, over a disabled main window.
    void ExpectListOpen(const FrmMain& window) const
    {
        EXPECT_NE(program.forms.Loaded(QStringLiteral("FrmLocation")), nullptr);
        EXPECT_EQ(window.Variables().ActiveForm, QStringLiteral("FrmLocation"));
        EXPECT_FALSE(window.isEnabled());
    }

    FakePlatform platform;
    Program program{platform.interfaces};
};

TEST_F(StartUpTest, usualStart_sendsItsRequestsInOrder)
{
    WriteSettings();
    platform.http.reachable = true;
    platform.http.replies[QStringLiteral("getAd.pl")] = "<root ad_url='PGI+YWQ8L2I+' wait_time='2'/>";
    const FrmMain& window = Start();
    EXPECT_EQ(platform.http.requests,
              (QStringList{kBase + QStringLiteral("startup.pl?prod_string=P-77&city=Chicago&country=Illinois"
                                                  "&dist_string=dbeacon&aid=US-1"),
                           kBase + QStringLiteral("getAd.pl?dist_string=dbeacon&prod_string=P-77&aid=US-1"
                                                  "&curr_v=1&curr_s=5"),
                           kBase + QStringLiteral("version.pl?dist_string=dbeacon&prod_string=P-77"
                                                  "&curr_v=1&curr_s=5")}));
    EXPECT_EQ(platform.http.probes.size(), 3) << "at the start, for the ad and for the version";
    EXPECT_EQ(program.Strip(), QStringLiteral("ad"));
    EXPECT_EQ(window.Variables().AdTimer, 120.0F);
    EXPECT_EQ(window.Variables().ActiveForm, QStringLiteral("FrmMain"));
    EXPECT_EQ(program.forms.Loaded(DlgStart::kName), nullptr);
    EXPECT_EQ(program.forms.Loaded(QStringLiteral("FrmLocation")), nullptr);
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(StartUpTest, firstStart_savesTheIdentifierAndUsesIt)
{
    WriteSettings(FirstStartSettings());
    AnswerIdentifier();
    platform.http.replies[QStringLiteral("getAd.pl")] = "<root/>";
    const FrmMain& window = Start();
    EXPECT_EQ(platform.http.requests.front(), kBase + QStringLiteral("requestProdID.pl?dist=dbeacon"));
    EXPECT_EQ(Scripts(), (QStringList{QStringLiteral("requestProdID.pl"), QStringLiteral("startup.pl"),
                                      QStringLiteral("getAd.pl"), QStringLiteral("version.pl")}));
    EXPECT_TRUE(platform.http.requests[1].contains(QStringLiteral("prod_string=P-1&")));
    EXPECT_EQ(App(QStringLiteral("pid")), QStringLiteral("P-1"));
    EXPECT_EQ(App(QStringLiteral("FirstRun")), QStringLiteral("false"));
    EXPECT_EQ(window.Variables().Settings.PID, QStringLiteral("P-1"));
    ExpectListOpen(window);
}

TEST_F(StartUpTest, firstStart_withAServiceInTheSettings_asksItAndItsProbe)
{
    const QString service = QStringLiteral("https://times.example.org/beacon");
    const QString probe = QStringLiteral("http://probe.example.org/");
    WriteSettings(SettingsText().replace(
        QStringLiteral("FirstRun=\"false\" pid=\"P-77\""),
        QStringLiteral("FirstRun=\"true\" pid=\"\" service=\"%1/\" probe=\"%2\"").arg(service, probe)));
    AnswerIdentifier();
    platform.http.replies[QStringLiteral("getAd.pl")] = "<root/>";
    Start();
    EXPECT_EQ(platform.http.probes, (QStringList{probe, probe, probe}));
    EXPECT_EQ(platform.http.requests.size(), 4);
    EXPECT_EQ(platform.http.requests.front(),
              service + QStringLiteral("/cgi-bin/dbeacon/requestProdID.pl?dist=dbeacon"));
    for (const QString& request : platform.http.requests) {
        EXPECT_TRUE(request.startsWith(service + u'/')) << request.toStdString();
    }
    EXPECT_EQ(App(QStringLiteral("service")), service + u'/') << "the save of the identifier keeps it";
}

TEST_F(StartUpTest, firstStartWithoutNetwork_sendsTheRequestAndChangesNothing)
{
    WriteSettings(FirstStartSettings());
    const QByteArray before = ReadSettings();
    const FrmMain& window = Start();
    EXPECT_EQ(Scripts(), QStringList(QStringLiteral("requestProdID.pl")))
        << "sent whatever the probe reports, and no other request";
    EXPECT_EQ(ReadSettings(), before);
    EXPECT_FALSE(window.Variables().Connected);
    EXPECT_TRUE(window.IsLoaded());
    EXPECT_TRUE(platform.boxes.boxes.empty());
    ExpectListOpen(window);
}

TEST_F(StartUpTest, noIdentifierButANetwork_asksForOne)
{
    Settle(QStringLiteral("false"), QString());
    AnswerIdentifier();
    const FrmMain& window = Start();
    EXPECT_EQ(Scripts().front(), QStringLiteral("requestProdID.pl"));
    EXPECT_EQ(App(QStringLiteral("pid")), QStringLiteral("P-1"));
    EXPECT_EQ(App(QStringLiteral("FirstRun")), QStringLiteral("false"));
    ExpectListOpen(window);
}

TEST_F(StartUpTest, alertDuringTheRequestsOfTheStart_opensTheListToo)
{
    WriteSettings(FirstStartSettings());
    AnswerIdentifier();
    bool isUp = false;
    platform.http.whileWaiting = [&] {
        // The request after the one for the identifier.
        platform.http.whileWaiting = [&] {
            isUp = Scripts().back() == u"startup.pl";
            program.forms.Main().Enable(false);
            program.forms.Variables().ActiveForm = QStringLiteral("FrmPopup");
        };
    };
    const FrmMain& window = Start();
    EXPECT_TRUE(isUp);
    ExpectListOpen(window);
}

TEST_F(StartUpTest, noIdentifierAndNoNetwork_sendsNoRequest)
{
    Settle(QStringLiteral("false"), QString());
    const FrmMain& window = Start();
    EXPECT_TRUE(platform.http.requests.isEmpty());
    EXPECT_EQ(program.forms.Loaded(QStringLiteral("FrmLocation")), nullptr);
    EXPECT_EQ(window.Variables().ActiveForm, QStringLiteral("FrmMain"));
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(StartUpTest, adRequestThatFails_leavesNoVersionCheck)
{
    WriteSettings();
    platform.http.reachable = true;
    const FrmMain& window = Start();
    EXPECT_EQ(Scripts(), (QStringList{QStringLiteral("startup.pl"), QStringLiteral("getAd.pl")}))
        << "the refresh overwrites Connected, which the check is given";
    EXPECT_FALSE(window.Variables().Connected);
}

TEST_F(StartUpTest, firstRunInOtherCase_isNoFirstRun)
{
    Settle(QStringLiteral("True"), QStringLiteral("P-77"));
    platform.http.reachable = true;
    Start();
    EXPECT_EQ(Scripts().front(), QStringLiteral("startup.pl"));
}

TEST_F(StartUpTest, replyWithoutIdentifier_isSavedAsItIs)
{
    Settle(QStringLiteral("true"), QStringLiteral("old"));
    platform.http.replies[QStringLiteral("requestProdID.pl")] = "<root/>";
    Start();
    EXPECT_EQ(App(QStringLiteral("pid")), QString());
    EXPECT_EQ(App(QStringLiteral("FirstRun")), QStringLiteral("false"));
}

TEST_F(StartUpTest, identifierWithoutAPlaceInTheFile_isFatal)
{
    AnswerIdentifier();
    // There is no element to write the identifier to.
    WriteSettings(QStringLiteral("<root><nothing/></root>"));
    EXPECT_NO_THROW(Start());
    EXPECT_EQ(platform.boxes.boxes, std::vector{kFatalBox});
    EXPECT_EQ(platform.process.ended, 1);
}

TEST_F(StartUpTest, identifierThatCantBeSaved_isFatal_fileAsItWas)
{
    WriteSettings(FirstStartSettings());
    const QByteArray before = ReadSettings();
    AnswerIdentifier();
    LockableFiles files;
    files.isLocked = true;
    const Platform interfaces = platform.With(files, platform.http);
    Program locked(interfaces);
    EXPECT_NO_THROW(locked.Start());
    EXPECT_EQ(Scripts(), QStringList(QStringLiteral("requestProdID.pl")));
    EXPECT_EQ(platform.boxes.boxes, std::vector{kFatalBox});
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_EQ(ReadSettings(), before);
}

LoopbackServer::Handler Status(const QByteArray& status, const QByteArray& body)
{
    return [=](LoopbackServer::Connection& connection) { connection.Reply(body, status); };
}

/// Starts the whole program with a real server that answers every request wrongly.
/// @param shown the text of the strip afterwards
void ExpectSafeStart(const LoopbackServer::Handler& handler, const QString& shown)
{
    const LoopbackServer server(handler);
    FakePlatform platform;
    RebasedHttp http(QStringLiteral(DUSKBEACON_SERVICE_URL), server.Url(), {1024 * 1024, 1, 400});
    const Platform interfaces = platform.With(platform.files, http);
    WriteSettings(FirstStartSettings());
    SimpleXML before(platform.interfaces);
    ASSERT_TRUE(before.Load(kSettingsFile));
    Program program(interfaces);
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(5);
    QElapsedTimer time;
    time.start();
    const FrmMain& window = program.Start();
    EXPECT_LT(time.elapsed(), 4 * 400 + 2000) << "each request has its limit";
    EXPECT_TRUE(window.IsLoaded());
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
    if (time.elapsed() > 200) {
        EXPECT_GT(ticks, 0) << "events were served";
    }
    EXPECT_TRUE(platform.timers.Ticker()->IsEnabled());
    EXPECT_GE(server.Requests().size(), 3U);
    // Only the identifier may have changed.
    SimpleXML after(platform.interfaces);
    ASSERT_TRUE(after.Load(kSettingsFile));
    for (SimpleXML* const settings : {&before, &after}) {
        settings->AddAttributeByName(QStringLiteral("pid"), QString(), QStringLiteral("//root//app"));
        settings->AddAttributeByName(QStringLiteral("FirstRun"), QString(), QStringLiteral("//root//app"));
    }
    EXPECT_EQ(after.XML(), before.XML());
    EXPECT_EQ(program.Strip(), shown);
}

TEST(StartUpAtWorst, windowComesUpAndSettingsAreSafe)
{
    const std::pair<const char*, LoopbackServer::Handler> rows[] = {
        {"hangs", LoopbackServer::Hang()},
        {"drips", LoopbackServer::Drip(20)},
        {"floods", LoopbackServer::Flood()},
        {"closes", LoopbackServer::Raw("")},
        {"rubbish", LoopbackServer::Raw("\x01\x02\x03")},
        {"redirect loop", LoopbackServer::RedirectTo("/x")},
        {"empty", Status("200 OK", "")},
        {"error with XML", Status("500 Oops", "<root/>")},
        {"cut document", Status("200 OK", "<root ad_url='eA==' wait_time='1'")},
        {"empty values", Status("200 OK", "<root version_name='x' version_sequence='' wait_time=''/>")},
    };
    for (const auto& [name, handler] : rows) {
        SCOPED_TRACE(name);
        ExpectSafeStart(handler, QStringLiteral("Dusk Beacon"));
    }
    SCOPED_TRACE("another root ends the refresh before a page is written");
    ExpectSafeStart(Status("200 OK", "<html><body>Log in</body></html>"), QString());
}

} // namespace
