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

/// The ways to sign up for messages.
struct SignupOffer
{
    bool mail = false;                ///< mail addresses in the form
    bool ntfy = false;                ///< ntfy topics in the form
    bool needsInvite = false;         ///< with an invite word
    std::string_view signupAddress{}; ///< the address for a first mail or text message; empty for none
};

[[nodiscard]] Response HomePage(const SignupOffer& offer);
[[nodiscard]] Response HelpPage(const SignupOffer& offer);
[[nodiscard]] Response SoundPage();
[[nodiscard]] Response DownloadsPage(const std::vector<Release>& releases);
/// The answer to the sign-up form.
[[nodiscard]] Response SignupPage(Signups::Outcome outcome);
[[nodiscard]] Response NotFoundPage();

} // namespace beacond
