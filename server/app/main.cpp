// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ArgumentChecks.h"
#include "app/Check.h"
#include "app/Log.h"
#include "app/PersonalCommands.h"
#include "app/Service.h"
#include "app/Settings.h"
#include "messages/Address.h"
#include "messages/Channels.h"
#include "places/Importer.h"
#include "protocol/Announcements.h"
#include "secrets/Keys.h"
#include "store/SqliteStore.h"

#include <CLI/CLI.hpp>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace beacond;

// Exit status for bad usage, a bad configuration or a part that can't be opened.
constexpr int kUnusable = 2;

// Relative to the program, so that an installation can be moved, and two builds are identical.
std::filesystem::path FolderOfTables()
{
    std::error_code ignored;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    return program.parent_path().parent_path() / "share/dusk-beacon/places";
}

struct Arguments
{
    std::string config;
    std::string tables = FolderOfTables();
    std::string out;
    std::vector<std::filesystem::path> dumps;
    std::string address;
    bool isActivated = false;
    bool isConnecting = false;
    bool isList = false;
    Strip strip;
    std::int64_t stripId = 0;
    Release release;
};

Settings SettingsOf(const Arguments& arguments)
{
    return arguments.config.empty() ? Settings() : ReadSettings(arguments.config);
}

SqliteStore OpenStore(const Arguments& arguments)
{
    return SqliteStore(SqlitePathInItsFolder(SettingsOf(arguments).store.url));
}

SqliteStore OpenStoreToRead(const Arguments& arguments)
{
    return SqliteStore::ToRead(SqlitePath(SettingsOf(arguments).store.url));
}

void RunServe(const Arguments& arguments)
{
    const Settings settings = SettingsOf(arguments);
    StartLog(settings.log.level);
    Serve(settings, arguments.config);
}

void RunImport(const Arguments& arguments)
{
    const std::filesystem::path out =
        arguments.out.empty() ? SettingsOf(arguments).places.file : std::filesystem::path(arguments.out);
    if (!out.parent_path().empty()) {
        std::filesystem::create_directories(out.parent_path());
    }
    ImportSources sources = ImportSources::InFolder(arguments.tables);
    sources.dumps = arguments.dumps;
    const ImportReport report = ImportPlaces(sources, out);
    std::cout << out.string() << ": " << report.places << " places, " << report.names << " names, "
              << report.codes << " postal codes, " << report.scopes << " countries and states\n";
    for (const ImportedTable& table : report.tables) {
        std::cout << "read: " << table.name << ", " << table.kind << ", " << table.rows << " rows\n";
    }
    for (const auto& [country, codes] : report.replacedCodes) {
        std::cout << "replaced: " << codes.packed << " postal codes of " << country << " by "
                  << codes.imported << '\n';
    }
    for (const auto& [reason, skipped] : report.skipped) {
        std::cout << "left out: " << skipped.rows << " rows, " << reason
                  << (skipped.first.empty() ? "" : "; first " + skipped.first) << '\n';
    }
}

// Throws CLI::RuntimeError with the exit status if there were errors.
void RunCheck(const Arguments& arguments)
{
    Findings findings;
    try {
        findings = CheckParts(SettingsOf(arguments), arguments.isActivated, arguments.isConnecting);
    } catch (const SettingsError& error) {
        findings.errors = error.Lines();
    }
    for (const std::string& warning : findings.warnings) {
        std::cout << "warning: " << warning << '\n';
    }
    for (const std::string& error : findings.errors) {
        std::cout << "error: " << error << '\n';
    }
    if (!findings.errors.empty()) {
        throw CLI::RuntimeError(kUnusable);
    }
    std::cout << "The configuration can be used.\n";
}

void RunAdAdd(Arguments& arguments)
{
    arguments.strip.html.assign(std::istreambuf_iterator<char>(std::cin), {});
    RequireStrip(arguments.strip);
    std::cout << OpenStore(arguments).AddStrip(arguments.strip) << '\n';
}

void RunAdList(const Arguments& arguments)
{
    for (const Strip& strip : OpenStoreToRead(arguments).Strips()) {
        std::cout << strip.id << "\tdist=" << strip.dist << "\tcountry=" << strip.country
                  << "\tfrom=" << strip.from << "\tuntil=" << strip.until << "\tbytes=" << strip.html.size()
                  << '\n';
    }
}

void RunAdRemove(const Arguments& arguments)
{
    if (!OpenStore(arguments).RemoveStrip(arguments.stripId)) {
        throw StoreError("there is no strip " + std::to_string(arguments.stripId));
    }
}

void RunReleaseAdd(const Arguments& arguments)
{
    OpenStore(arguments).AddRelease(arguments.release);
}

void RunReleaseList(const Arguments& arguments)
{
    for (const Release& release : OpenStoreToRead(arguments).Releases()) {
        std::cout << release.name << '\t' << release.sequence << '\t' << release.url << '\n';
    }
}

void RunReleaseRemove(const Arguments& arguments)
{
    const auto& [name, sequence, url] = arguments.release;
    if (!OpenStore(arguments).RemoveRelease(name, sequence)) {
        throw StoreError("there is no release " + name + '.' + sequence);
    }
}

void RunBlock(const Arguments& arguments)
{
    const Settings settings = SettingsOf(arguments);
    if (arguments.isList == !arguments.address.empty()) {
        throw UsageError("either an address or --list is expected");
    }
    if (arguments.isList) {
        ListBlockedAddresses(settings, std::cout);
    } else {
        BlockAddress(settings, RequireAddress(arguments.address), std::cout);
    }
}

// "waiting", "leased", "retry in 5 s"; "unknown" before these if the provider may have the text.
std::string StateOf(const WaitingText& text)
{
    const std::string state = text.isLeased     ? "leased"
                              : text.dueIn == 0 ? "waiting"
                                                : "retry in " + std::to_string(text.dueIn) + " s";
    return (text.mayBeSent ? "unknown, " : "") + state;
}

void RunOutbox(const Arguments& arguments)
{
    constexpr std::size_t kMost = 1000;
    const SqliteStore store = OpenStoreToRead(arguments);
    for (const WaitingText& waiting : store.WaitingTexts(kMost)) {
        const OutboxRow& text = waiting.text;
        std::cout << text.id << "\tdevice=" << text.device << "\tprayer=" << text.prayer
                  << "\ttime=" << text.time << "\tplace=" << text.place << "\tkind=" << waiting.kind
                  << "\tage=" << waiting.age << "\tattempts=" << waiting.attempts
                  << "\tstate=" << StateOf(waiting) << '\n';
    }
    const OutboxState state = store.StateOfOutbox();
    std::cerr << state.waiting << " waiting, " << state.leased << " leased, the oldest " << state.oldestAge
              << " s old; " << state.spentToday << " spent today\n";
}

void RunMessageTest(const Arguments& arguments)
{
    const Settings settings = SettingsOf(arguments);
    const Channels channels(settings.messages.channelOptions);
    const Address address = RequireAddress(arguments.address);
    const std::string kind(NameOf(address.kind));
    Channel* const channel = channels.ForKind(kind);
    if (channel == nullptr) {
        throw ChannelError("no channel is configured for addresses of the kind \"" + kind + '"');
    }
    const SendResult result = channel->Send(
        {address.text, "Dusk Beacon: test", "This is a test of the channel \"" + channel->Name() + "\".",
         "test-" + std::to_string(RandomBelow(1U << 31U)), settings.messages.language});
    constexpr const char* kWords[] = {"accepted", "failed; the service would try again",
                                      "refused; the service would not try again",
                                      "unknown; the provider may have it"};
    const std::string line = "channel " + channel->Name() + ": " + kWords[static_cast<int>(result.handover)] +
                             (result.reason.empty() ? "" : ": " + result.reason);
    if (result.handover != Handover::Accepted) {
        throw ChannelError(line);
    }
    std::cout << line << '\n';
}

void RunStarts(const Arguments& arguments)
{
    for (const StartCount& starts : OpenStoreToRead(arguments).Starts()) {
        std::cout << DayText(std::chrono::sys_days(std::chrono::days(starts.day))) << '\t' << starts.country
                  << '\t' << starts.dist << '\t' << starts.count << '\n';
    }
}

void AddAdCommands(CLI::App& program, Arguments& arguments)
{
    CLI::App* const ad = program.add_subcommand("ad", "the strips that the program shows");
    ad->require_subcommand(1);
    CLI::App* const add = ad->add_subcommand("add", "adds a strip, whose HTML is read from standard input");
    add->add_option("--dist", arguments.strip.dist, "distribution that shows it (default: all)");
    add->add_option("--country", arguments.strip.country, "two letters (default: all)")->check(CheckCountry);
    add->add_option("--from", arguments.strip.from, "first day, which begins at midnight UTC")
        ->check(CheckDay);
    add->add_option("--until", arguments.strip.until, "last day, which ends at midnight UTC")
        ->check(CheckDay);
    add->callback([&arguments] { RunAdAdd(arguments); });
    ad->add_subcommand("list", "lists the strips")->callback([&arguments] { RunAdList(arguments); });
    CLI::App* const remove = ad->add_subcommand("remove", "removes a strip");
    remove->add_option("id", arguments.stripId, "its number in the list")->required();
    remove->callback([&arguments] { RunAdRemove(arguments); });
}

void AddReleaseCommands(CLI::App& program, Arguments& arguments)
{
    CLI::App* const release =
        program.add_subcommand("release", "the releases that are offered to older ones");
    release->require_subcommand(1);
    CLI::App* const add = release->add_subcommand("add", "adds a release");
    CLI::App* const remove = release->add_subcommand("remove", "removes a release");
    for (CLI::App* const command : {add, remove}) {
        command->add_option("name", arguments.release.name, "the version")
            ->required()
            ->check(CheckVersionNumber);
        command->add_option("sequence", arguments.release.sequence, "its sequence number")
            ->required()
            ->check(CheckVersionNumber);
    }
    add->add_option("url", arguments.release.url, "the page that offers it")
        ->required()
        ->check(CheckPageAddress);
    add->callback([&arguments] { RunReleaseAdd(arguments); });
    remove->callback([&arguments] { RunReleaseRemove(arguments); });
    release->add_subcommand("list", "lists the releases")->callback([&arguments] {
        RunReleaseList(arguments);
    });
}

void AddMessageCommands(CLI::App& program, Arguments& arguments)
{
    program.add_subcommand("outbox", "lists the texts that wait, with their states")->callback([&arguments] {
        RunOutbox(arguments);
    });
    using Command = void (*)(const Settings&, const Address&, std::ostream&);
    const auto add = [&](const char* name, const char* description, Command run) {
        CLI::App* const command = program.add_subcommand(name, description);
        command->add_option("address", arguments.address, "mail address, phone number or ntfy topic")
            ->required();
        command->callback(
            [&arguments, run] { run(SettingsOf(arguments), RequireAddress(arguments.address), std::cout); });
    };
    add("forget", "deletes all that is kept of an address, texts included", &ForgetAddress);
    add("export", "prints all that is kept of an address, as JSON", &ExportAddress);
    add("unblock", "lets a blocked address sign up again", &UnblockAddress);
    CLI::App* const block =
        program.add_subcommand("block", "deletes all that is kept of an address, and refuses its sign-ups");
    block->add_option("address", arguments.address, "mail address, phone number or ntfy topic");
    block->add_flag("--list", arguments.isList, "lists the hashes of the blocked addresses");
    block->callback([&arguments] { RunBlock(arguments); });
    program.add_subcommand("rotate-keys", "seals the addresses with new keys, while the service is stopped")
        ->callback([&arguments] { ReplaceKeysOfStore(SettingsOf(arguments), std::cout); });
    CLI::App* const message = program.add_subcommand("message", "messages by the configured channels");
    message->require_subcommand(1);
    CLI::App* const test = message->add_subcommand("test", "sends a test message and says what happened");
    test->add_option("address", arguments.address, "mail address, phone number or ntfy topic")->required();
    test->callback([&arguments] { RunMessageTest(arguments); });
}

int RunProgram(int argc, char** argv)
{
    CLI::App program("Answers the requests of Dusk Beacon.", "dusk-beacond");
    Arguments arguments;
    program.require_subcommand(1);
    program.fallthrough();
    program.add_option("--config", arguments.config, "configuration file (default: the default of each key)")
        ->check([](const std::string& text) { return text.empty() ? "a path is expected" : std::string(); });
    program.add_subcommand("serve", "answers until SIGTERM")->callback([&] { RunServe(arguments); });
    CLI::App* const check =
        program.add_subcommand("check", "says what is wrong with the configuration and its parts");
    check->add_flag("--activated", arguments.isActivated, "the service manager listens at http.listen");
    check->add_flag("--connect", arguments.isConnecting, "also connects to the servers of the channels");
    check->callback([&] { RunCheck(arguments); });
    CLI::App* const places = program.add_subcommand("import", "makes the places file");
    places->add_option("--out", arguments.out, "the file (default: places.file of the configuration)");
    places->add_option("--tables", arguments.tables, "folder of the tables")->capture_default_str();
    places->add_option("source", arguments.dumps,
                       "your own files of GeoNames: places, regions, alternate names, postal codes");
    places->callback([&] { RunImport(arguments); });
    program.add_subcommand("starts", "lists the starts of the program by day, country and distribution")
        ->callback([&] { RunStarts(arguments); });
    AddMessageCommands(program, arguments);
    AddAdCommands(program, arguments);
    AddReleaseCommands(program, arguments);
    try {
        program.parse(argc, argv);
        return 0;
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : kUnusable;
    }
}

// A core dump would contain the keys. RLIMIT_CORE does not apply to a core_pattern pipe, hence the dumpable
// flag.
void KeepKeysOutOfCoreFiles()
{
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_DUMPABLE, 0);
}

} // namespace

int main(int argc, char** argv)
{
    // Files hold personal data: make them readable by the service's account only.
    ::umask(077);
    KeepKeysOutOfCoreFiles();
    try {
        return RunProgram(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "dusk-beacond: " << error.what() << '\n';
        return kUnusable;
    }
}
