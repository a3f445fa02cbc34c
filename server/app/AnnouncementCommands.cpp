// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AnnouncementCommands.h"

#include "app/ArgumentChecks.h"
#include "app/Arguments.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <iterator>

namespace beacond {

namespace {

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

} // namespace

void AddAnnouncementCommands(CLI::App& program, Arguments& arguments)
{
    AddAdCommands(program, arguments);
    AddReleaseCommands(program, arguments);
}

} // namespace beacond
