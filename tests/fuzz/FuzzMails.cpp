// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzTarget.h"
#include "messages/AuthenticationResults.h"
#include "messages/IncomingMail.h"
#include "messages/IncomingText.h"
#include "support/Utf8.h"

#include <string>
#include <string_view>
#include <variant>

using namespace beacond;

namespace {

constexpr std::string_view kServer = "mx.example.net";

void CheckRead(const IncomingText& text)
{
    Demand(ParseAddress(text.sender.text) == text.sender, "a sender is a normalised address");
    Demand(IsValidUtf8(text.subject) && IsValidUtf8(text.text), "a text is UTF-8");
    static_cast<void>(WishOf(text.subject, text.text));
    Demand(WordsOf(text.text).size() <= 100, "the words are limited");
}

} // namespace

// A whole mail; then the same bytes below the headers of a server that has found them genuine, and below
// those of one that has found them forged.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string mail(reinterpret_cast<const char*>(data), size);
    const std::string path = "Return-Path: <a@example.org>\n";
    const std::string results = "Authentication-Results: mx.example.net; dmarc=";
    const auto whole = ReadMail(mail, kServer);
    if (const auto* const text = std::get_if<IncomingText>(&whole)) {
        CheckRead(*text);
    }
    const auto genuine = ReadMail(path + results + "pass header.from=example.org\n" + mail, kServer);
    if (const auto* const text = std::get_if<IncomingText>(&genuine)) {
        CheckRead(*text);
        Demand(text->sender.text == "a@example.org", "the server's headers hold");
    }
    const auto forged = ReadMail(path + results + "fail header.from=example.org\n" + mail, kServer);
    Demand(std::holds_alternative<MailRefusal>(forged), "a forged mail is refused");
    static_cast<void>(ReadAuthenticationResults(mail));
    static_cast<void>(WishOf(mail, mail));
    return 0;
}
