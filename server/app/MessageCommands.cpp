// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MessageCommands.h"

#include "app/ArgumentChecks.h"
#include "app/Arguments.h"
#include "app/PersonalCommands.h"
#include "messages/Address.h"
#include "messages/Channels.h"
#include "secrets/Keys.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace beacond {

namespace {

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

} // namespace

void AddMessageCommands(CLI::App& program, Arguments& arguments)
{
    program.add_subcommand("outbox", "lists the texts that wait, with their states")->callback([&arguments] {
        RunOutbox(arguments);
    });
    using Command = void (*)(const Settings&, const Address&, std::ostream&);
    const auto add = [&](const char* name, const char* description, Command run) {
        CLI::App* const command = program.add_subcommand(name, description);
        command
            ->add_option("address", arguments.address,
                         "mail address, phone number or ntfy topic; - reads it from standard input")
            ->required();
        command->callback(
            [&arguments, run] { run(SettingsOf(arguments), RequireAddress(arguments.address), std::cout); });
    };
    add("forget", "deletes all that is kept of an address, texts included", &ForgetAddress);
    add("export", "prints all that is kept of an address, as JSON", &ExportAddress);
    add("unblock", "lets a blocked address sign up again", &UnblockAddress);
    CLI::App* const block =
        program.add_subcommand("block", "deletes all that is kept of an address, and refuses its sign-ups");
    block->add_option("address", arguments.address,
                      "mail address, phone number or ntfy topic; - reads it from standard input");
    block->add_flag("--list", arguments.isList, "lists the hashes of the blocked addresses");
    block->callback([&arguments] { RunBlock(arguments); });
    program.add_subcommand("rotate-keys", "seals the addresses with new keys, while the service is stopped")
        ->callback([&arguments] { ReplaceKeysOfStore(SettingsOf(arguments), std::cout); });
    CLI::App* const message = program.add_subcommand("message", "messages by the configured channels");
    message->require_subcommand(1);
    CLI::App* const test = message->add_subcommand("test", "sends a test message and says what happened");
    test->add_option("address", arguments.address,
                     "mail address, phone number or ntfy topic; - reads it from standard input")
        ->required();
    test->callback([&arguments] { RunMessageTest(arguments); });
}

} // namespace beacond
