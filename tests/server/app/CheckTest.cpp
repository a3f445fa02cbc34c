// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ListeningSocket.h"
#include "server/app/ServiceFixture.h"
#include "store/Sqlite.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <map>

using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

const std::string kUsable = "The configuration can be used.\n";
const std::string kNoHttps =
    "warning: http.base_url: \"http://localhost:8750\" is not an https address; clients should reach "
    "the service over https\n";

} // namespace

/// The subcommand "check" of the real program.
class CheckTest : public ServiceFixture
{
protected:
    /// Starts the service once, which creates the keys and the store.
    void ServeOnce()
    {
        ASSERT_NE(Serve(), 0);
        ASSERT_EQ(Terminate().status, 0);
    }
    /// A configuration with these ports of the loopback.
    void WritePorts(const char* name, unsigned short main, unsigned short metrics)
    {
        Write(folder / name, "[http]\nlisten = \"127.0.0.1:" + std::to_string(main) +
                                 "\"\n[metrics]\nlisten = \"127.0.0.1:" + std::to_string(metrics) +
                                 "\"\n[places]\nfile = \"places.bin\"\n");
    }
    void ExpectUsable(const ProcessEnd& end)
    {
        EXPECT_EQ(end.output, kNoHttps + kUsable);
        EXPECT_EQ(end.status, 0);
    }
    /// All files below the folder with their contents, except the files that the runs of the program write.
    std::map<std::string, std::string> Files()
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(folder / "")) {
            const std::string name = entry.path().filename();
            if (entry.is_regular_file() && name != "input" && name != "output" && name != "errors") {
                files[entry.path()] = Read(entry.path());
            }
        }
        return files;
    }
};

TEST_F(CheckTest, configurationBeforeTheFirstStart_canBeUsedAndChangesNothing)
{
    Configure("[messages]\nchannels = [\"spool\"]\n");
    const auto before = Files();
    ExpectUsable(Run({"check"}));
    EXPECT_EQ(Files(), before);
    EXPECT_FALSE(fs::exists(folder / "state"));

    Configure("[store]\nurl = \"sqlite:service.db\"\n");
    EXPECT_EQ(Run({"check"}).status, 0) << "a store in the working directory";
}

TEST_F(CheckTest, spoolThatOthersCanUse_isAWarning)
{
    Configure("[messages]\nchannels = [\"spool\"]\nspool = \"out\"\n");
    fs::create_directory(folder / "out");
    fs::permissions(folder / "out", fs::perms::all);
    const ProcessEnd end = Run({"check"});
    EXPECT_EQ(end.status, 0) << end.output;
    EXPECT_THAT(end.output,
                HasSubstr("warning: messages.channel: spool: out: others than its owner can use it"));
    fs::permissions(folder / "out", fs::perms::owner_all);
    EXPECT_THAT(Run({"check"}).output, testing::Not(HasSubstr("others than")));
}

TEST_F(CheckTest, configurationInUse_canBeUsedAndChangesNothing)
{
    ServeOnce();
    const auto before = Files();
    ExpectUsable(Run({"check"}));
    EXPECT_EQ(Files(), before);
}

TEST_F(CheckTest, unusablePart_isOneLineAndStatusTwo)
{
    ServeOnce();
    const struct
    {
        const char* name;
        std::function<void()> spoil;
        std::string line;
    } rows[] = {
        {"no configuration", [&] { fs::remove(folder / "service.toml"); }, "service.toml: can't be read"},
        {"places", [&] { Write(folder / "places.bin", Read(folder / "places.bin") + " "); },
         "places file places.bin: cut off or lengthened"},
        {"no places", [&] { fs::remove(folder / "places.bin"); },
         "places file places.bin: No such file or directory"},
        {"no store", [&] { Write(folder / "state/service.db", "a text"); },
         "state/service.db: file is not a database"},
        {"newer store",
         [&] {
             beacond::Database((folder / "state/service.db").string()).Execute("PRAGMA user_version = 99");
         },
         "state/service.db: written by a newer version of the service"},
        {"damaged store",
         [&] {
             std::string store = Read(folder / "state/service.db");
             store.replace(store.size() / 2, store.size() / 4, store.size() / 4, 'x');
             Write(folder / "state/service.db", store);
         },
         "state/service.db: damaged: "},
        {"store folder", [&] { Configure("[store]\nurl = \"sqlite:/proc/none/a.db\"\n"); },
         "store.url: /proc/none: "},
        {"missing key", [&] { fs::remove(folder / "state/keys/address.key"); },
         "state/keys/address.key: missing; the store was written with it"},
        {"another key",
         [&] {
             fs::copy_file(folder / "state/keys/index.key", folder / "state/keys/address.key",
                           fs::copy_options::overwrite_existing);
         },
         "state/keys/address.key: not the key that the store was written with"},
        {"open key",
         [&] {
             fs::permissions(folder / "state/keys/index.key", fs::perms::owner_all | fs::perms::group_read);
         },
         "state/keys/index.key: readable by others than its owner; run chmod 600 on it"},
        {"folder that can't be searched",
         [&] {
             fs::create_symlink("loop", folder / "loop");
             Configure("[messages]\nchannels = [\"spool\"]\nspool = \"loop/spool\"\n");
         },
         "messages.spool: loop/spool: Too many levels of symbolic links"},
        {"spool", [&] { Configure("[messages]\nchannels = [\"spool\"]\nspool = \"/proc/none\"\n"); },
         "messages.spool: /proc/none: "},
    };
    fs::copy(folder / "state", folder / "kept", fs::copy_options::recursive);
    const std::string places = Read(folder / "places.bin");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove_all(folder / "state");
        fs::copy(folder / "kept", folder / "state", fs::copy_options::recursive);
        Write(folder / "places.bin", places);
        Configure("");
        row.spoil();
        const ProcessEnd end = Run({"check"});
        EXPECT_EQ(end.status, 2);
        EXPECT_THAT(end.output, HasSubstr("error: " + row.line));
        EXPECT_EQ(std::count(end.output.begin(), end.output.end(), '\n'),
                  end.output.starts_with(kNoHttps) ? 2 : 1)
            << end.output;
        EXPECT_EQ(end.errors, "");
    }
}

TEST_F(CheckTest, mistakesOfAConfiguration_areOneLineEach)
{
    Configure("[log]\nlevel = \"loud\"\n[messages]\nspol = \"a\"\n[service]\ndists = \"mosque\"\n");
    const ProcessEnd end = Run({"check"});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.output, "error: service.toml:8: log.level: \"info\", \"warning\" or \"error\" is expected\n"
                          "error: service.toml:10: messages.spol: unknown key\n"
                          "error: service.toml:12: service.dists: a list of texts is expected\n");
}

TEST_F(CheckTest, port_mayBeFreeOrTheServicesOwn)
{
    const unsigned short main = Serve();
    const unsigned short metrics = service->AwaitMetricsPort();
    const beacond::ListeningSocket other =
        beacond::ListeningSocket::Open(beacond::ParseListenAddress("127.0.0.1:0"));
    const unsigned short taken = other.Endpoint().port();
    const struct
    {
        unsigned short main;
        unsigned short metrics;
        std::string key; ///< the key of the refused port
        unsigned short port;
    } rows[] = {
        {main, metrics, "", 0},
        {taken, 0, "http.listen", taken},
        {0, taken, "metrics.listen", taken},
        {metrics, 0, "http.listen", metrics},
        {0, main, "metrics.listen", main},
    };
    for (const auto& row : rows) {
        WritePorts("other.toml", row.main, row.metrics);
        const std::string refusal = "error: " + row.key +
                                    ": can't listen at 127.0.0.1:" + std::to_string(row.port) +
                                    ": Address already in use\n";
        EXPECT_EQ(RunService(Path(), {"check", "--config", "other.toml"}).output,
                  kNoHttps + (row.key.empty() ? kUsable : refusal));
    }
}

TEST_F(CheckTest, pipeForAConfiguration_isRefusedAtOnce)
{
    ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0600), 0);
    EXPECT_EQ(RunService(Path(), {"check", "--config", "pipe"}).output, "error: pipe: can't be read\n");
}

TEST_F(CheckTest, portOfTheServiceManager_isNotChecked)
{
    const beacond::ListeningSocket manager =
        beacond::ListeningSocket::Open(beacond::ParseListenAddress("127.0.0.1:0"));
    WritePorts("service.toml", manager.Endpoint().port(), 0);
    ExpectUsable(Run({"check", "--activated"}));
}

TEST_F(CheckTest, onePortOfTwoListeners_isAnError)
{
    const unsigned short free =
        beacond::ListeningSocket::Open(beacond::ParseListenAddress("127.0.0.1:0")).Endpoint().port();
    WritePorts("service.toml", free, free);
    std::string settings = Read(folder / "service.toml");
    settings.replace(settings.rfind("127.0.0.1"), 9, "0.0.0.0");
    Write(folder / "service.toml", settings);
    const ProcessEnd end = Run({"check"});
    EXPECT_EQ(end.output, kNoHttps + "error: metrics.listen: the port of http.listen\n");
    EXPECT_EQ(end.status, 2);
}

TEST_F(CheckTest, keyFolderWritableByOthers_isAWarning)
{
    ServeOnce();
    fs::permissions(folder / "state/keys", fs::perms::others_write, fs::perm_options::add);
    const ProcessEnd end = Run({"check"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.output,
                HasSubstr("warning: keys.folder: state/keys: others than its owner can write to it\n"));
}

TEST_F(CheckTest, httpsWithoutAProxy_isAWarning)
{
    Configure("", "base_url = \"https://example.org\"\n");
    const ProcessEnd end = Run({"check"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.output, StartsWith("warning: http.proxies: empty: "));
}

TEST_F(CheckTest, unusableRoads_areErrors)
{
    fs::create_directory(folder / "phones");
    Write(folder / "secret", "short");
    const std::string hook =
        "[[messages.hook]]\nname = \"a\"\nheader = \"b\"\nsender = \"c\"\ntext = \"d\"\nid = \"e\"\n";
    Configure("[messages]\nmaildir = \"mail\"\nmail_server = \"mx.example.net\"\ngammu_inbox = \"phones\"\n" +
              hook + "secret_file = \"secret\"\n");
    const ProcessEnd end = Run({"check"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.errors + end.output, HasSubstr("messages.maildir: mail/new: missing\n"));
    EXPECT_THAT(end.errors + end.output,
                HasSubstr("secret: a secret of at least 16 characters is expected\n"));
    EXPECT_THAT(end.errors + end.output,
                HasSubstr("messages.sms_prefixes: empty: no text message is answered\n"));
    EXPECT_THAT(end.errors + end.output, testing::Not(HasSubstr("phones")));

    Configure("[messages]\ninvite_file = \"none\"\n");
    EXPECT_THAT(Run({"check"}).errors + Run({"check"}).output,
                HasSubstr("none: an invite word on each line is expected\n"));
}

/// A channel that sends through a server.
class CheckChannelTest : public CheckTest
{
protected:
    void ConfigureChannel(unsigned short port)
    {
        Configure(
            "[messages]\nchannels = [\"mail\"]\n[[messages.channel]]\nname = \"mail\"\ntype = \"smtp\"\n"
            "server = \"127.0.0.1:" +
            std::to_string(port) +
            "\"\nfrom = \"texts@mosque.example\"\nuser = \"service\"\npassword_file = \"password\"\n");
    }
    void WritePassword(fs::perms permissions)
    {
        Write(folder / "password", "secret\n");
        fs::permissions(folder / "password", permissions);
    }
};

TEST_F(CheckChannelTest, secret_isThereForItsOwnerOnly)
{
    ConfigureChannel(1);
    EXPECT_THAT(Run({"check"}).output, HasSubstr("error: messages.channel: mail: "));
    WritePassword(fs::perms::owner_read | fs::perms::others_read);
    EXPECT_THAT(Run({"check"}).output,
                HasSubstr("password: others than its owner can use it; run chmod 600 on it"));
    WritePassword(fs::perms::owner_read);
    ExpectUsable(Run({"check"}));
}

TEST_F(CheckChannelTest, server_isConnectedOnlyOnRequest)
{
    WritePassword(fs::perms::owner_read);
    ConfigureChannel(1);
    ExpectUsable(Run({"check"}));
    const ProcessEnd unreachable = Run({"check", "--connect"});
    EXPECT_EQ(unreachable.status, 0);
    EXPECT_THAT(unreachable.output,
                HasSubstr("warning: messages.channel: mail: can't connect to 127.0.0.1 port 1: "));

    const beacond::ListeningSocket server =
        beacond::ListeningSocket::Open(beacond::ParseListenAddress("127.0.0.1:0"));
    ConfigureChannel(server.Endpoint().port());
    ExpectUsable(Run({"check", "--connect"}));
}

TEST_F(CheckTest, interruptedRotationOfKeys_isAWarning)
{
    ServeOnce();
    for (const char* const name : {"address.key", "index.key"}) {
        fs::copy_file(folder / "state/keys" / name, folder / "state/keys" / (std::string(name) + ".new"));
    }
    const std::string warning = "warning: keys.folder: state/keys: rotate-keys was interrupted; the next "
                                "start completes or undoes it\n";
    EXPECT_EQ(Run({"check"}).output, kNoHttps + warning + kUsable);
    Write(folder / "state/keys/address.key", std::string(32, 'k'));
    EXPECT_EQ(Run({"check"}).output, kNoHttps + warning + kUsable) << "the store has the new key";
    ServeOnce();
    ExpectUsable(Run({"check"}));
}
