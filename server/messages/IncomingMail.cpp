// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/IncomingMail.h"

#include "messages/AuthenticationResults.h"
#include "messages/MailAddress.h"
#include "support/Ascii.h"
#include "support/Utf8.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace beacond {

namespace {

// A person's mail has a text beside an HTML text, perhaps within a signed part or beside attachments.
constexpr int kMostLevels = 8;
constexpr int kMostParts = 64;
constexpr std::size_t kLongestText = 16UL * 1024;

struct Unref
{
    void operator()(void* object) const { g_object_unref(object); }
};
template <typename Type>
using Owned = std::unique_ptr<Type, Unref>;

struct Free
{
    void operator()(char* text) const { g_free(text); }
};

struct Header
{
    std::string name; ///< in lower case
    std::string value;
};

std::string Lower(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), &ToLower);
    return lower;
}

std::string ValidUtf8(const char* text)
{
    const std::string_view read = text == nullptr ? std::string_view() : std::string_view(text);
    const std::string_view first = read.substr(0, kLongestText);
    return IsValidUtf8(first) ? std::string(first) : FromWindows1252(first);
}

Owned<GMimeMessage> Parse(std::string_view message)
{
    static const bool isReady = [] {
        g_mime_init();
        return true;
    }();
    static_cast<void>(isReady);
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(message.data(), message.size()));
    const Owned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    return Owned<GMimeMessage>(g_mime_parser_construct_message(parser.get(), nullptr));
}

std::vector<Header> HeadersOf(GMimeMessage* message)
{
    std::vector<Header> headers;
    GMimeHeaderList* const list = g_mime_object_get_header_list(GMIME_OBJECT(message));
    for (int i = 0; i < g_mime_header_list_get_count(list); ++i) {
        GMimeHeader* const header = g_mime_header_list_get_header_at(list, i);
        const char* const value = g_mime_header_get_raw_value(header);
        headers.push_back({Lower(g_mime_header_get_name(header)), value == nullptr ? "" : value});
    }
    return headers;
}

// A Return-Path below a Received was written by the sender.
std::optional<std::string> EnvelopeSender(const std::vector<Header>& headers)
{
    for (const Header& header : headers) {
        if (header.name == "received") {
            break;
        }
        if (header.name == "return-path") {
            std::string_view path = Trimmed(header.value, " \t\r\n");
            if (path.starts_with('<') && path.ends_with('>')) {
                path = path.substr(1, path.size() - 2);
            }
            return NormalisedMailAddress(path);
        }
    }
    return std::nullopt;
}

// The senders whose mail is answered by no program: RFC 3834, section 2.
bool IsAutomatic(const std::vector<Header>& headers, std::string_view sender)
{
    const std::string_view name = sender.substr(0, sender.find('@'));
    return name == "mailer-daemon" || name.starts_with("owner-") || name.ends_with("-request") ||
           std::any_of(headers.begin(), headers.end(), [](const Header& header) {
               const std::string value = Lower(Trimmed(header.value, " \t\r\n"));
               const bool isToMany = value == "bulk" || value == "list" || value == "junk";
               return header.name.starts_with("list-") || (header.name == "precedence" && isToMany) ||
                      (header.name == "auto-submitted" && value != "no");
           });
}

bool IsAuthenticated(const std::vector<Header>& headers, std::string_view server, std::string_view sender)
{
    for (const Header& header : headers) {
        if (header.name != "authentication-results") {
            continue;
        }
        const std::optional<AuthenticationResults> results = ReadAuthenticationResults(header.value);
        // The server's own value can be malformed by the sender's text in it: those below must not count.
        if (!results || results->server == Lower(server)) {
            return results && results->dmarcDomain &&
                   RegistrableDomainOf('@' + *results->dmarcDomain) == RegistrableDomainOf(sender);
        }
    }
    return false;
}

std::string WithoutMarkup(std::string_view html)
{
    std::string text;
    bool isInTag = false;
    for (const char c : html) {
        isInTag = c == '<' || (isInTag && c != '>');
        if (isInTag && c == '<') {
            text += '\n'; // most elements begin a line
        } else if (!isInTag && c != '>') {
            text += c;
        }
    }
    return text;
}

// Searches for the first plain text, and keeps the first HTML text until there is one.
class TextSearch final
{
public:
    void Visit(GMimeObject* part, int level)
    {
        if (level > kMostLevels || ++m_parts > kMostParts || !m_plain.empty()) {
            return;
        }
        if (GMIME_IS_MULTIPART(part)) {
            auto* const parts = GMIME_MULTIPART(part);
            for (int i = 0; i < g_mime_multipart_get_count(parts) && m_parts <= kMostParts; ++i) {
                Visit(g_mime_multipart_get_part(parts, i), level + 1);
            }
        } else if (GMIME_IS_TEXT_PART(part) && g_mime_part_is_attachment(GMIME_PART(part)) == FALSE) {
            const std::unique_ptr<char, Free> text(g_mime_text_part_get_text(GMIME_TEXT_PART(part)));
            const bool isHtml =
                g_mime_content_type_is_type(g_mime_object_get_content_type(part), "text", "html") != FALSE;
            std::string& found = isHtml ? m_html : m_plain;
            found = found.empty() ? ValidUtf8(text.get()) : found;
        }
    }

    [[nodiscard]] std::string Result() const { return m_plain.empty() ? WithoutMarkup(m_html) : m_plain; }

private:
    int m_parts = 0;
    std::string m_plain;
    std::string m_html;
};

} // namespace

std::variant<IncomingText, MailRefusal> ReadMail(std::string_view message, std::string_view server)
{
    const Owned<GMimeMessage> parsed = Parse(message.substr(0, kMailBytesRead));
    if (!parsed) {
        return MailRefusal::NoSender;
    }
    const std::vector<Header> headers = HeadersOf(parsed.get());
    const std::optional<std::string> sender = EnvelopeSender(headers);
    if (!sender) {
        return MailRefusal::NoSender;
    }
    if (IsAutomatic(headers, *sender)) {
        return MailRefusal::Automatic;
    }
    if (!IsAuthenticated(headers, server, *sender)) {
        return MailRefusal::NotAuthenticated;
    }
    TextSearch search;
    if (GMimeObject* const body = g_mime_message_get_mime_part(parsed.get()); body != nullptr) {
        search.Visit(body, 0);
    }
    return IncomingText{
        {AddressKind::Mail, *sender}, ValidUtf8(g_mime_message_get_subject(parsed.get())), search.Result()};
}

} // namespace beacond
