// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The compiled part of Boost.Asio and Boost.Beast, once for the whole service.
#include <boost/asio/impl/src.hpp>
#include <boost/beast/src.hpp>
