// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LockableFiles.h"
#include "fakes/LoopbackServer.h"
#include "fakes/RebasedHttp.h"
#include "fakes/SettingsFile.h"
#include "forms/LinkLabel.h"
#include "service/StartUpProgram.h"
#include "service/WebAd.h"
#include "store/SimpleXML.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

const QString kBase = QStringLiteral(DUSKBEACON_SERVICE_URL) + QStringLiteral("/cgi-bin/dbeacon/");
const QByteArray kIdentifier = "<root prod_string='P-1'/>";
const FakeMessageBoxes::Box kFatalBox{
    QStringLiteral("An error has occured, The application will be terminated."), QStringLiteral("Error - 5"),
    QStringLiteral("OK")};

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
    EXPECT_EQ(window.findChild<WebAd*>(QStringLiteral("WebAd"))->toPlainText(), QStringLiteral("ad"));
    EXPECT_EQ(window.Variables().AdTimer, 120.0F);
    EXPECT_EQ(window.Variables().ActiveForm, QStringLiteral("FrmMain"));
    EXPECT_EQ(program.forms.Loaded(DlgStart::kName), nullptr);
    EXPECT_EQ(program.forms.Loaded(QStringLiteral("FrmLocation")), nullptr);
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(StartUpTest, firstStart_savesTheIdentifierAndUsesIt)
{
    Settle(QStringLiteral("true"), QString());
    platform.http.reachable = true;
    platform.http.replies[QStringLiteral("requestProdID.pl")] = kIdentifier;
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
    platform.http.reachable = true;
    platform.http.replies[QStringLiteral("requestProdID.pl")] = kIdentifier;
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
    Settle(QStringLiteral("true"), QString());
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
    platform.http.reachable = true;
    platform.http.replies[QStringLiteral("requestProdID.pl")] = kIdentifier;
    const FrmMain& window = Start();
    EXPECT_EQ(Scripts().front(), QStringLiteral("requestProdID.pl"));
    EXPECT_EQ(App(QStringLiteral("pid")), QStringLiteral("P-1"));
    EXPECT_EQ(App(QStringLiteral("FirstRun")), QStringLiteral("false"));
    ExpectListOpen(window);
}

TEST_F(StartUpTest, alertDuringTheRequestsOfTheStart_opensTheListToo)
{
    Settle(QStringLiteral("true"), QString());
    platform.http.reachable = true;
    platform.http.replies[QStringLiteral("requestProdID.pl")] = kIdentifier;
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
    platform.http.replies[QStringLiteral("requestProdID.pl")] = kIdentifier;
    // There is no element to write the identifier to.
    WriteSettings(QStringLiteral("<root><nothing/></root>"));
    platform.http.reachable = true;
    EXPECT_NO_THROW(Start());
    EXPECT_EQ(platform.boxes.boxes, std::vector{kFatalBox});
    EXPECT_EQ(platform.process.ended, 1);
}

TEST_F(StartUpTest, identifierThatCantBeSaved_isFatal_fileAsItWas)
{
    Settle(QStringLiteral("true"), QString());
    const QByteArray before = ReadSettings();
    platform.http.reachable = true;
    platform.http.replies[QStringLiteral("requestProdID.pl")] = kIdentifier;
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

struct WorstRow
{
    const char* name;
    LoopbackServer::Handler handler;
};

void PrintTo(const WorstRow& row, std::ostream* stream)
{
    *stream << row.name;
}

// The whole start with a real server that misbehaves at every request.
class StartUpAtWorst : public testing::TestWithParam<WorstRow>
{
};

TEST_P(StartUpAtWorst, windowComesUpAndSettingsAreSafe)
{
    const LoopbackServer server(GetParam().handler);
    FakePlatform platform;
    RebasedHttp http(QStringLiteral(DUSKBEACON_SERVICE_URL), server.Url(), {1024 * 1024, 1, 400});
    const Platform interfaces = platform.With(platform.files, http);
    WriteSettings(SettingsText()
                      .replace(QStringLiteral("FirstRun=\"false\""), QStringLiteral("FirstRun=\"true\""))
                      .replace(QStringLiteral("P-77"), QString()));
    SimpleXML before(platform.interfaces);
    ASSERT_TRUE(before.Load(kSettingsFile));
    Program program(interfaces);
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(5);
    QElapsedTimer time;
    time.start();
    FrmMain& window = program.Start();
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
    // A document with another root ends the refresh before a page is written.
    const bool isOtherRoot = QByteArray(GetParam().name) == "well_formed_page";
    EXPECT_EQ(window.findChild<WebAd*>(QStringLiteral("WebAd"))->toPlainText(),
              isOtherRoot ? QString() : QStringLiteral("Dusk Beacon"));
}

QByteArray Utf16(const QString& text)
{
    return QByteArray("\xFF\xFE") + QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

QByteArray LaughingEntities()
{
    QByteArray document = "<!DOCTYPE root [<!ENTITY a 'ha'>";
    for (char name = 'b'; name < 'z'; ++name) {
        const QByteArray before = QByteArray("&") + static_cast<char>(name - 1) + ';';
        document += QByteArray("<!ENTITY ") + name + " '" + before.repeated(10) + "'>";
    }
    return document + "]><root ad_url='&y;' version_name='&y;'/>";
}

LoopbackServer::Handler Status(const QByteArray& status, const QByteArray& body)
{
    return [=](LoopbackServer::Connection& connection) { connection.Reply(body, status); };
}

INSTANTIATE_TEST_SUITE_P(
    Table, StartUpAtWorst,
    testing::Values(WorstRow{"hangs", LoopbackServer::Hang()}, WorstRow{"drips", LoopbackServer::Drip(20)},
                    WorstRow{"floods", LoopbackServer::Flood()},
                    WorstRow{"error_with_xml", Status("500 Oops", "<root/>")},
                    WorstRow{"page_of_a_hotel", Status("200 OK", "<html><body>Log in<br></body></html>")},
                    WorstRow{"well_formed_page", Status("200 OK", "<html><body>Log in</body></html>")},
                    WorstRow{"empty", Status("200 OK", "")},
                    WorstRow{"truncated",
                             LoopbackServer::Raw("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n<root")},
                    WorstRow{"cut_document", Status("200 OK", "<root ad_url='eA==' wait_time='1'")},
                    WorstRow{"closes", LoopbackServer::Raw("")},
                    WorstRow{"rubbish", LoopbackServer::Raw("\x01\x02\x03")},
                    WorstRow{"redirect_loop", LoopbackServer::RedirectTo("/x")},
                    WorstRow{"redirect_to_a_file", LoopbackServer::RedirectTo("file:///etc/passwd")},
                    WorstRow{"entities", Status("200 OK", LaughingEntities())},
                    WorstRow{"bomb",
                             [](LoopbackServer::Connection& connection) {
                                 connection.Reply(qCompress(QByteArray(32 * 1024 * 1024, ' '), 9).mid(4),
                                                  "200 OK", "Content-Encoding: deflate\r\n");
                             }},
                    WorstRow{"deep", Status("200 OK", QByteArray("<root>").repeated(100'000))},
                    WorstRow{"other_names", Status("200 OK", "<root AD_URL='eA==' Version_Name='2'/>")},
                    WorstRow{"utf16_without_content", Status("200 OK", Utf16(QStringLiteral("<root/>")))},
                    WorstRow{"wrong_base64_and_numbers",
                             Status("200 OK", "<root version_name='x' version_sequence='' wait_time=''/>")}),
    [](const auto& row) { return std::string(row.param.name); });

// A reply is read in the encoding that it declares.
TEST(StartUpEncodings, ad_isReadFromWindows1252AndUtf16)
{
    const QString document = QStringLiteral(
        "<?xml version=\"1.0\" encoding=\"%1\"?><root prod_string=\"P-\u00e4\" ad_url=\"PGI+YWQ8L2I+\"/>");
    const std::pair<const char*, QByteArray> bodies[] = {
        {"windows-1252", document.arg(QStringLiteral("windows-1252")).toLatin1()},
        {"utf-16", Utf16(document.arg(QStringLiteral("UTF-16")))},
        {"utf-8", document.arg(QStringLiteral("UTF-8")).toUtf8()}};
    for (const auto& [name, body] : bodies) {
        const LoopbackServer server(LoopbackServer::Answer(body));
        FakePlatform platform;
        RebasedHttp http(QStringLiteral(DUSKBEACON_SERVICE_URL), server.Url(), {1024 * 1024, 2, 4000});
        const Platform interfaces = platform.With(platform.files, http);
        WriteSettings(SettingsText().replace(QStringLiteral("P-77"), QString()));
        Program program(interfaces);
        const FrmMain& window = program.Start();
        EXPECT_EQ(window.Variables().Settings.PID, QStringLiteral("P-\u00e4")) << name;
        EXPECT_EQ(window.findChild<WebAd*>(QStringLiteral("WebAd"))->toPlainText(), QStringLiteral("ad"))
            << name;
    }
}

// The program is told to end while the start waits for the service.
TEST(StartUpInterrupted, programEnds_whileTheServiceHangs)
{
    const LoopbackServer server(LoopbackServer::Hang());
    FakePlatform platform;
    WriteSettings();
    const QByteArray before = ReadSettings();
    QElapsedTimer time;
    time.start();
    QTimer::singleShot(0, QCoreApplication::instance(), [&] {
        RebasedHttp http(QStringLiteral(DUSKBEACON_SERVICE_URL), server.Url(), HttpLimits{});
        const Platform interfaces = platform.With(platform.files, http);
        Program program(interfaces);
        QTimer::singleShot(700, QCoreApplication::instance(), [] { QCoreApplication::exit(0); });
        program.Start();
    });
    QCoreApplication::exec();
    EXPECT_LT(time.elapsed(), 10'000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; }));
    EXPECT_EQ(ReadSettings(), before);
}

} // namespace
