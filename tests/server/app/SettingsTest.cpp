// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Settings.h"

#include "server/ErrorOf.h"
#include "server/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

std::string ErrorIn(const std::string& text)
{
    return ErrorOf<SettingsError>([&] { return ParseSettings(text, "service.toml"); });
}

} // namespace

TEST(Settings, lineBreakInAQuotedText_becomesASpace)
{
    for (const char* const text : {"a = i\n", "\"a\\nb\" = 1\n", "[messages]\nchannels = [\"a\\nb\"]\n"}) {
        EXPECT_THAT(ErrorIn(text), StartsWith("service.toml:")) << text;
        EXPECT_EQ(ErrorIn(text).find('\n'), std::string::npos) << text;
    }
}

TEST(Settings, empty_hasTheDefaults)
{
    const Settings settings = ParseSettings("", "service.toml");

    EXPECT_EQ(settings.http.listen, ParseListenAddress("127.0.0.1:8750"));
    EXPECT_EQ(settings.http.baseUrl, "http://localhost:8750");
    EXPECT_EQ(settings.store.url, "sqlite:state/service.db");
    EXPECT_EQ(settings.metrics.listen, ParseListenAddress("127.0.0.1:8751"));
}

TEST(Settings, everyKey_isRead)
{
    const Settings settings = ParseSettings(R"(
[http]
listen = "[::1]:80"
base_url = "https://service.example.org/"
proxies = ["127.0.0.1", "10.0.0.0/8"]
threads = 3
connections = 20
connections_per_address = 5
[limits]
network_per_minute = 1
network_burst = 2
installation_per_minute = 3
installation_burst = 4
overload_milliseconds = 5
[store]
url = "sqlite:/var/lib/a.db"
[keys]
folder = "/etc/keys"
[places]
file = "/var/lib/places.bin"
[metrics]
listen = "127.0.0.1:9"
[service]
dists = ["mosque"]
[messages]
channels = ["spool"]
signup_address = "signup@example.org"
spool = "/var/spool/beacond"
signups_per_network = 200
signups_per_address = 4
signups_per_domain = 50
signups_per_day = 60
wrong_codes_alarm = 70
[log]
level = "error"
)",
                                            "service.toml");

    EXPECT_EQ(settings.http.listen, ParseListenAddress("[::1]:80"));
    EXPECT_EQ(settings.http.baseUrl, "https://service.example.org");
    EXPECT_THAT(settings.http.proxies, ElementsAre("127.0.0.1", "10.0.0.0/8"));
    EXPECT_EQ(settings.http.threads, 3);
    EXPECT_EQ(settings.http.connections, 20);
    EXPECT_EQ(settings.http.connectionsPerAddress, 5);
    EXPECT_EQ(settings.limits.networkPerMinute, 1);
    EXPECT_EQ(settings.limits.networkBurst, 2);
    EXPECT_EQ(settings.limits.installationPerMinute, 3);
    EXPECT_EQ(settings.limits.installationBurst, 4);
    EXPECT_EQ(settings.limits.overload, std::chrono::milliseconds(5));
    EXPECT_EQ(settings.store.url, "sqlite:/var/lib/a.db");
    EXPECT_EQ(settings.keys.folder, "/etc/keys");
    EXPECT_EQ(settings.places.file, "/var/lib/places.bin");
    EXPECT_EQ(settings.metrics.listen.port(), 9);
    EXPECT_THAT(settings.service.dists, ElementsAre("mosque"));
    EXPECT_THAT(settings.messages.channels, ElementsAre("spool"));
    EXPECT_EQ(settings.messages.signupAddress, "signup@example.org");
    EXPECT_EQ(settings.messages.spool, "/var/spool/beacond");
    EXPECT_EQ(settings.messages.signups.ofANetwork, 200);
    EXPECT_EQ(settings.messages.signups.limits.ofAnAddress, 4);
    EXPECT_EQ(settings.messages.signups.limits.ofADomain, 50);
    EXPECT_EQ(settings.messages.signups.limits.inAll, 60);
    EXPECT_EQ(settings.messages.wrongCodesAlarm, 70);
    EXPECT_EQ(settings.log.level, "error");
}

TEST(Settings, invalidValues_areRefusedWithLineAndKey)
{
    const std::string kUrl = "an http or https address is expected, such as \"https://service.example.org\"";
    const struct
    {
        const char* text;
        std::string error;
    } rows[] = {
        {"[http]\nlisten = 8750", "service.toml:2: http.listen: a text in quotes is expected"},
        {"[http]\nlisten = \"localhost:8750\"", "service.toml:2: http.listen: \"localhost:8750\" is not an "
                                                "address and port, such as 127.0.0.1:8750 or "
                                                "[::1]:8750"},
        {"[http]\nbase_url = \"ftp://a\"", "service.toml:2: http.base_url: " + kUrl},
        {"[http]\nbase_url = \"https://\"", "service.toml:2: http.base_url: " + kUrl},
        {"[http]\nbase_url = \"http://a b\"", "service.toml:2: http.base_url: " + kUrl},
        {"[store]\nurl = \"sqlite::memory:\"",
         "service.toml:2: store.url: \"sqlite:\" and a path are expected"},
        {"\"http.listen\" = \"127.0.0.1:1\"",
         "service.toml:1: http.listen: unknown key: a name in quotes is no table and key"},
        {"[http]\nproxies = [1]", "service.toml:2: http.proxies: a list of texts is expected"},
        {"[http]\nthreads = -1", "service.toml:2: http.threads: a whole number from 0 to 256 is expected"},
        {"[http]\nthreads = 1.5", "service.toml:2: http.threads: a whole number from 0 to 256 is expected"},
        {"[limits]\nnetwork_burst = 0",
         "service.toml:2: limits.network_burst: a whole number from 1 to 1000000 is expected"},
        {"[store]\nurl = \"mysql://a\"", "service.toml:2: store.url: \"sqlite:\" and a path are expected"},
        {"[places]\nfile = \"\"", "service.toml:2: places.file: a path is expected"},
        {"[messages]\n\nchannels = [\"fax\"]",
         "service.toml:3: messages.channels: \"fax\" is not a channel; \"spool\" is one, and each name in "
         "[[messages.channel]]"},
        {"[messages]\nchannels = [\"spool\", \"spool\"]",
         "service.toml:2: messages.channels: \"spool\" is a second channel for the kind \"mail\""},
        {"[[messages.channel]]\nname = \"a\"\ntype = \"fax\"",
         "service.toml:3: messages.channel[0].type: \"smtp\", \"ntfy\", \"http\" or \"spool\" is expected"},
        {"[[messages.channel]]\nname = \"spool\"\ntype = \"spool\"\nfolder = \"a\"",
         "service.toml:2: messages.channel[0].name: there is another channel of that name"},
        {"[[messages.channel]]\nname = \"a\"\ntype = \"spool\"\nfolder = \"a\"\nper_secnd = 1",
         "service.toml:5: messages.channel[0].per_secnd: unknown key"},
        {"[[messages.channel]]\nname = \"a\"\ntype = \"spool\"\nfolder = \"a\"\nper_second = 0",
         "service.toml:5: messages.channel[0].per_second: a number from 0.001 to 10000 is expected"},
        {"messages.language = \"xx\"",
         "service.toml:1: messages.language: one of these is expected: en, ar, fr, id, tr, ur"},
        {"[messages]\nchannels = [\"a\"]\nspend_per_day = 0\n[[messages.channel]]\nname = \"a\"\n"
         "type = \"spool\"\nfolder = \"a\"\nprice = 1",
         "service.toml:3: messages.spend_per_day: a limit is expected, since the channel \"a\" has a price"},
        {"messages.channel = 1", "service.toml:1: messages.channel: a list of tables is expected: "
                                 "[[messages.channel]]"},
        {"[messages]\nsms_prefixes = [\"44\"]",
         "service.toml:2: messages.sms_prefixes: the beginnings of numbers are expected, such as \"+44\""},
        {"[messages]\nsms_prefixes = [\"+\"]",
         "service.toml:2: messages.sms_prefixes: the beginnings of numbers are expected, such as \"+44\""},
        {"[messages]\nmail_server = \"\"\nmaildir = \"a\"",
         "service.toml:2: messages.mail_server: the name of your server in its header Authentication-Results "
         "is "
         "expected"},
        {"[[messages.hook]]\nname = \"a\"\nheader = \"b\"\nsecret_file = \"c\"\nsender = \"d\"\ntext = "
         "\"e\"\nid = \"f\"\nproof = \"none\"",
         "service.toml:8: messages.hook[0].proof: \"hmac-sha256\" or \"secret\" is expected"},
        {"[messages]\nsignups_per_day = 0",
         "service.toml:2: messages.signups_per_day: a whole number from 1 to 100000 is expected"},
        {"[log]\nlevel = \"loud\"",
         "service.toml:2: log.level: \"info\", \"warning\" or \"error\" is expected"},
        {"[http]\nlisten = \"127.0.0.1:1\"\nlisen = 1", "service.toml:3: http.lisen: unknown key"},
        {"\n[htpp]\nlisten = 1", "service.toml:2: htpp: unknown key"},
        {"http = 1", "service.toml:1: http: unknown key"},
        {"[http.listen]\na = 1", "service.toml:1: http.listen: a text in quotes is expected"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ErrorIn(row.text), row.error) << row.text;
    }
    EXPECT_THAT(ErrorIn("[http]\nlisten ="), StartsWith("service.toml:2: "));
}

TEST(Settings, unreadableFile_isRefusedWithItsPath)
{
    for (const char* const path : {"/nonexistent/service.toml", "/tmp"}) {
        EXPECT_EQ(ErrorOf<SettingsError>([&] { return ReadSettings(path); }),
                  std::string(path) + ": can't be read");
    }
}

TEST(Settings, example_namesEveryKeyWithItsDefault)
{
    const std::string example = Read(DUSKBEACON_SETTINGS_EXAMPLE);
    const Settings::Values shown = ParseSettings(example, "service.toml.example").values;
    const Settings::Values defaults = ParseSettings("", "service.toml").values;

    EXPECT_EQ(shown, defaults);
    for (const auto& [key, value] : defaults) {
        const std::size_t dot = key.find('.');
        const std::size_t table = example.find("\n[" + key.substr(0, dot) + "]\n");
        ASSERT_NE(table, std::string::npos) << key;
        const std::string content = example.substr(table, example.find("\n[", table + 1) - table);
        EXPECT_NE(content.find("\n" + key.substr(dot + 1) + " = "), std::string::npos) << key;
    }
}
