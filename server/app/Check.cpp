// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Check.h"

#include "app/CheckMessages.h"
#include "app/Metrics.h"
#include "app/RoadSettings.h"
#include "app/Service.h"
#include "app/Settings.h"
#include "http/ListeningSocket.h"
#include "messages/Hook.h"
#include "places/Places.h"
#include "places/PlacesError.h"
#include "secrets/KeyFolder.h"
#include "store/StoreCheck.h"

#include <boost/asio/ip/tcp.hpp>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <optional>
#include <utility>

namespace beacond {

namespace {

namespace fs = std::filesystem;

// Whether the path exists. A path that can't be searched is reported as an error, and counts as missing.
bool Exists(const fs::path& path, Findings& findings)
{
    std::error_code failure;
    const bool exists = fs::exists(path, failure);
    if (failure) {
        findings.errors.push_back(path.string() + ": " + failure.message());
    }
    return exists;
}

// The reason why the folder, or a file in it, can't be created; empty if it can.
std::optional<std::string> ReasonAgainstWriting(const fs::path& folder)
{
    fs::path present = fs::absolute(folder.empty() ? "." : folder);
    std::error_code failure;
    while (!fs::exists(present, failure)) {
        if (failure) {
            return failure.message();
        }
        present = present.parent_path();
    }
    // access() does not detect a read-only or full file system: create a file.
    std::string name = (present / "check-XXXXXX").string();
    const int file = ::mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
        return std::strerror(errno);
    }
    ::close(file);
    ::unlink(name.c_str());
    return std::nullopt;
}

void CheckFolder(const char* key, const fs::path& folder, Findings& findings)
{
    if (const auto reason = ReasonAgainstWriting(folder)) {
        findings.errors.push_back(std::string(key) + ": " + folder.string() + ": " + *reason);
    }
}

// Whether a dusk-beacond listens there: its page contains that text.
bool AnswersAsOurService(const ListenAddress& address, const std::string& path, const std::string& text)
{
    boost::asio::ip::tcp::iostream stream;
    stream.expires_after(std::chrono::seconds(2));
    stream.connect(address);
    stream << "GET " << path << " HTTP/1.0\r\n\r\n" << std::flush;
    constexpr std::streamsize kMostBytes = 65'536;
    std::string reply(kMostBytes, '\0');
    stream.read(reply.data(), kMostBytes);
    return reply.find(text) != std::string::npos;
}

void CheckPorts(const Settings& settings, bool isActivated, Findings& findings)
{
    const struct
    {
        const char* key;
        const ListenAddress& address;
        const char* path;
        const char* text;
    } ports[] = {
        {"http.listen", settings.http.listen, "/cgi-bin/dbeacon/version.pl", "<root version_name="},
        {"metrics.listen", settings.metrics.listen, "/metrics", kOpenConnectionsMetric},
    };
    for (const auto& port : ports) {
        const bool isManagers = isActivated && &port.address == &settings.http.listen;
        if (isManagers) {
            continue; // a connection would start the service
        }
        try {
            ListeningSocket::RequireFree(port.address);
        } catch (const std::exception& error) {
            if (!AnswersAsOurService(port.address, port.path, port.text)) {
                findings.errors.push_back(std::string(port.key) + ": " + error.what());
            }
        }
    }
    const ListenAddress& main = settings.http.listen;
    const ListenAddress& metrics = settings.metrics.listen;
    const bool isAnywhere = main.address().is_unspecified() || metrics.address().is_unspecified();
    if (main.port() == metrics.port() && main.port() != 0 &&
        (isAnywhere || main.address() == metrics.address())) {
        findings.errors.emplace_back("metrics.listen: the port of http.listen");
    }
}

// Other accounts could replace the keys.
void CheckWritersOf(const fs::path& folder, Findings& findings)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(folder, ignored);
    const fs::perms others = fs::perms::group_write | fs::perms::others_write;
    if (fs::is_directory(status) && (status.permissions() & others) != fs::perms::none) {
        findings.warnings.push_back("keys.folder: " + folder.string() +
                                    ": others than its owner can write to it");
    }
}

// Whether rotate-keys was killed after it has changed the store. The next start renames the new key.
bool IsReplacedBy(const fs::path& file, const std::string& hash, Findings& findings)
{
    const fs::path next = file.string() + ".new";
    return Exists(next, findings) && Key::FromExistingFile(next).CheckHash() == hash;
}

void CheckKeys(const fs::path& folder, const StoreCheck& store, Findings& findings)
{
    bool isAnyMissing = false;
    for (const char* const name : Keys::kFileNames) {
        const fs::path file = folder / name;
        const auto hash = store.hashes.find(name);
        const bool isKnown = hash != store.hashes.end();
        if (!Exists(file, findings)) {
            isAnyMissing = true;
            if (isKnown) {
                findings.errors.push_back(file.string() + ": missing; the store was written with it");
            }
            continue;
        }
        try {
            const Key key = Key::FromExistingFile(file);
            if (isKnown && key.CheckHash() != hash->second && !IsReplacedBy(file, hash->second, findings)) {
                findings.errors.push_back(file.string() + ": not the key that the store was written with");
            }
        } catch (const KeyError& error) {
            findings.errors.emplace_back(error.what());
        }
    }
    if (isAnyMissing) {
        CheckFolder("keys.folder", folder, findings);
    }
    if (HasNewKeys(folder)) {
        findings.warnings.push_back("keys.folder: " + folder.string() +
                                    ": rotate-keys was interrupted; the next start completes or undoes it");
    }
}

void CheckStoreAndKeys(const Settings& settings, Findings& findings)
{
    const fs::path file = SqlitePath(settings.store.url);
    StoreCheck store;
    if (Exists(file, findings)) {
        store = CheckStore(file.string());
        findings.errors.insert(findings.errors.end(), store.problems.begin(), store.problems.end());
    }
    CheckFolder("store.url", file.parent_path(), findings);
    CheckKeys(settings.keys.folder, store, findings);
    CheckWritersOf(settings.keys.folder, findings);
}

void CheckAddresses(const Settings& settings, Findings& findings)
{
    const bool isHttps = settings.http.baseUrl.starts_with("https://");
    if (!isHttps) {
        findings.warnings.push_back(
            "http.base_url: \"" + settings.http.baseUrl +
            "\" is not an https address; clients should reach the service over https");
    }
    if (isHttps && settings.http.proxies.empty()) {
        findings.warnings.emplace_back("http.proxies: empty: all clients behind a proxy share one limit");
    }
}

// A road that can't be read is found at the first message only.
void CheckRoads(const Settings::Messages& messages, Findings& findings)
{
    const RoadOptions& roads = messages.roads;
    const std::pair<const char*, fs::path> folders[] = {
        {"messages.maildir", roads.maildir.empty() ? fs::path() : roads.maildir / "new"},
        {"messages.gammu_inbox", roads.gammuInbox},
        {"messages.smstools_incoming", roads.smstoolsIncoming}};
    for (const auto& [key, folder] : folders) {
        if (!folder.empty() && Exists(folder, findings)) {
            CheckFolder(key, folder, findings);
        } else if (!folder.empty()) {
            findings.errors.push_back(std::string(key) + ": " + folder.string() + ": missing");
        }
    }
    try {
        (void)ReadInvites(messages.inviteFile);
        for (const HookOptions& hook : messages.hooks) {
            (void)Hook(hook);
        }
    } catch (const std::runtime_error& error) {
        findings.errors.emplace_back(error.what());
    }
    const bool hasPhones =
        !roads.gammuInbox.empty() || !roads.smstoolsIncoming.empty() || !messages.hooks.empty();
    if (hasPhones && messages.signups.phonePrefixes.empty()) {
        findings.warnings.emplace_back("messages.sms_prefixes: empty: no text message is answered");
    }
}

} // namespace

Findings CheckParts(const Settings& settings, bool isActivated, bool isConnecting)
{
    Findings findings;
    CheckAddresses(settings, findings);
    CheckPorts(settings, isActivated, findings);
    try {
        (void)Places::Open(settings.places.file);
    } catch (const PlacesError& error) {
        findings.errors.emplace_back(error.what());
    }
    CheckStoreAndKeys(settings, findings);
    CheckRoads(settings.messages, findings);
    for (const ChannelOptions& channel : settings.messages.channelOptions) {
        if (channel.type == "spool") {
            const bool isDefault = channel.name == "spool";
            CheckFolder(isDefault ? "messages.spool" : channel.name.c_str(), channel.folder, findings);
        }
    }
    CheckMessages(settings, isConnecting, findings);
    return findings;
}

} // namespace beacond
