// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "protocol/Scripts.h"

#include <string>

namespace beacond {

class Hooks;
class Signups;

/// The requests of the main listener: the scripts, the pages, the two health checks. Thread-safe.
class Site final
{
public:
    /// @param signupAddress shown on the home page; empty for none
    Site(ScriptSources sources, Signups& signups, Hooks& hooks, const Latest<std::string>& signupAddress);

    [[nodiscard]] boost::asio::awaitable<Response> Answer(const Request& request);
    [[nodiscard]] const MessageFigures& Figures() const { return m_scripts.Figures(); }

private:
    [[nodiscard]] boost::asio::awaitable<Response> AnswerAny(const Request& request);
    [[nodiscard]] boost::asio::awaitable<Response> AnswerSignup(const Request& request);
    [[nodiscard]] boost::asio::awaitable<Response> AnswerHook(const Request& request);
    [[nodiscard]] Response Readiness() const;

    ScriptSources m_sources;
    Scripts m_scripts;
    Signups& m_signups;
    Hooks& m_hooks;
    const Latest<std::string>& m_signupAddress;
};

} // namespace beacond
