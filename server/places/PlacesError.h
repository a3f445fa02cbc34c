// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>

namespace beacond {

/// A table or places file is unusable. The text names the file and the reason, for the operator.
class PlacesError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace beacond
