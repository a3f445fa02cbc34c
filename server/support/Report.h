// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string_view>

namespace beacond {

/// Takes the reason of a failure, which holds nothing of a request. Called by any thread.
using Report = std::function<void(std::string_view reason)>;

} // namespace beacond
