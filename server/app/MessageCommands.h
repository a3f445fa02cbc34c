// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace beacond {

struct Arguments;

/// Adds the commands about messages and the addresses that get them. @p arguments must outlive the program.
void AddMessageCommands(CLI::App& program, Arguments& arguments);

} // namespace beacond
