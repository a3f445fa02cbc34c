// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AnnouncementCommands.h"
#include "app/Arguments.h"
#include "app/Check.h"
#include "app/Log.h"
#include "app/MessageCommands.h"
#include "app/Service.h"
#include "app/Settings.h"
#include "places/Importer.h"
#include "protocol/Announcements.h"
#include "store/SqliteStore.h"

#include <CLI/CLI.hpp>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <iostream>
#include <string>

namespace {

using namespace beacond;

// Exit status for bad usage, a bad configuration or a part that can't be opened.
constexpr int kUnusable = 2;

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

void RunStarts(const Arguments& arguments)
{
    for (const StartCount& starts : OpenStoreToRead(arguments).Starts()) {
        std::cout << DayText(std::chrono::sys_days(std::chrono::days(starts.day))) << '\t' << starts.country
                  << '\t' << starts.dist << '\t' << starts.count << '\n';
    }
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
    AddAnnouncementCommands(program, arguments);
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
