// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Channels.h"
#include "server/messages/ScriptedServer.h"

#include <string>

inline beacond::ChannelOptions SmtpOptions(unsigned short port)
{
    beacond::ChannelOptions options;
    options.name = "mail";
    options.type = "smtp";
    options.kind = "mail";
    options.perSecond = 1000;
    options.timeout = std::chrono::seconds(1);
    options.server = "127.0.0.1:" + std::to_string(port);
    options.tls = "none";
    options.from = "beacon@mosque.example";
    options.replyTo = "stop@mosque.example";
    return options;
}

inline beacond::ChannelOptions HttpOptionsTo(unsigned short port)
{
    beacond::ChannelOptions options;
    options.name = "sms";
    options.type = "http";
    options.kind = "sms";
    options.perSecond = 1000;
    options.timeout = std::chrono::seconds(1);
    options.url = "http://127.0.0.1:" + std::to_string(port) + "/send";
    options.body = "to={address}&text={text}";
    return options;
}

inline beacond::OutgoingMessage MailTo(const std::string& address)
{
    return {address, "Maghrib", "Maghrib 18:42", "text-1", "en"};
}
