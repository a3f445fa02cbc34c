// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "messages/Signups.h"

#include <string_view>
#include <vector>

namespace beacond {

struct Release;

/// The HTML pages. Each is self-contained: no script, no external resource.

/// @param offersSignup whether the form for mail addresses is shown
/// @param signupAddress the address for a first text message; empty for none
[[nodiscard]] Response HomePage(bool offersSignup, std::string_view signupAddress);
[[nodiscard]] Response HelpPage();
[[nodiscard]] Response SoundPage();
[[nodiscard]] Response DownloadsPage(const std::vector<Release>& releases);
/// The answer to the sign-up form.
[[nodiscard]] Response SignupPage(Signups::Outcome outcome);
[[nodiscard]] Response NotFoundPage();

} // namespace beacond
