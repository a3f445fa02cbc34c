// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string_view>

namespace beacond {

/// Receives the reason of a failure, a text without any data of a request. Called by any thread.
using Report = std::function<void(std::string_view reason)>;

} // namespace beacond
