// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Boost.JSON, compiled once.
#include <boost/json/src.hpp>
