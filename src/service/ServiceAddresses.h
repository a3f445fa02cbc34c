// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

struct Configuration;

/// The addresses of the service that the program uses: each is taken from settings.xml if it is valid there,
/// otherwise it is the default of the build. White space around an address is ignored.
namespace ServiceAddresses {
/// The address to which all paths are appended, without slashes at its end. The address in the settings is
/// valid if it is http or https, in any case, with a host and optionally a port and a path, but no user name,
/// query or fragment.
[[nodiscard]] QString Base(const Configuration& configuration);
/// The e-mail address to which a user sends the first text message of a mobile sign-up. The default is
/// "signup" at the host of Base: only the service that is asked for the confirmation knows the code. The
/// address in the settings is valid if it is ASCII, no longer than 50 characters and has one "@".
[[nodiscard]] QString Signup(const Configuration& configuration);
/// The page that is requested to test the network. The rule is that of Base, but a query and a fragment are
/// allowed.
[[nodiscard]] QString Probe(const Configuration& configuration);
} // namespace ServiceAddresses
