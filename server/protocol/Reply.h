// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "http/Query.h"
#include "support/Ascii.h"
#include "support/Xml.h"

#include <string>
#include <string_view>

namespace beacond {

/// A script's reply.
[[nodiscard]] inline Response ScriptReply(XmlReply reply)
{
    return {200, "text/xml; charset=utf-8", reply.Finish(), {{"Cache-Control", "no-store"}}};
}

/// A script's failure. The program ignores the status and reads any XML as a reply, so a failure is plain
/// text.
[[nodiscard]] inline Response ScriptFailure(unsigned status, std::string text)
{
    return {status, "text/plain; charset=utf-8", std::move(text), {{"Cache-Control", "no-store"}}};
}

[[nodiscard]] inline std::string TrimmedValue(const Query& query, std::string_view name)
{
    const std::string value = query.Value(name);
    return std::string(Trimmed(value));
}

} // namespace beacond
