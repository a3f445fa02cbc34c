// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

struct Configuration;

/// The addresses of the service that the program uses: each is that of settings.xml if it can be used,
/// otherwise the build's. White space around an address is ignored.
namespace ServiceAddresses {
/// The address that all paths are put behind, without slashes at its end, so that no path begins with two.
/// The one of the settings is used if it is http or https, in any case, with a host and maybe a port and a
/// path; not with a user name, a query or a fragment.
[[nodiscard]] QString Base(const Configuration& configuration);
/// The e-mail address to which a user sends the first text message of a mobile sign-up. Without a usable one
/// it is "signup" at the host of Base: only the service that is asked for the confirmation knows the code.
/// The one of the settings is used if it is ASCII, no longer than 50 characters and has one "@".
[[nodiscard]] QString Signup(const Configuration& configuration);
/// The page that is asked whether the network is there. The rule is that of Base, but that it may have a
/// query or a fragment.
[[nodiscard]] QString Probe(const Configuration& configuration);
} // namespace ServiceAddresses
