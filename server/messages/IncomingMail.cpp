// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/IncomingMail.h"

#include "messages/AuthenticationResults.h"
#include "messages/FromAddress.h"
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
// The time to decode the words of a field grows with the square of their number.
constexpr std::size_t kLongestField = 4'096;

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

// The lines of a field, the first and its continuations, without the last line end. Removes them from @p
// text.
std::string_view TakeField(std::string_view& text)
{
    std::size_t end = text.find('\n');
    while (end != std::string_view::npos && end + 1 < text.size() &&
           (text[end + 1] == ' ' || text[end + 1] == '\t')) {
        end = text.find('\n', end + 1);
    }
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return field;
}

struct SplitMail
{
    std::vector<Header> headers;
    std::string_view body;
};

// Reads the header without GMime: most mails are refused by it, and need not be parsed further.
SplitMail Split(std::string_view message)
{
    SplitMail mail;
    while (!message.empty()) {
        const std::string_view field = TakeField(message);
        if (field.empty() || field == "\r") {
            break;
        }
        if (const std::size_t colon = field.find(':'); colon != std::string_view::npos) {
            mail.headers.push_back(
                {Lower(Trimmed(field.substr(0, colon), " \t")), std::string(field.substr(colon + 1))});
        }
    }
    mail.body = message;
    return mail;
}

// The text with at most 100 colons in each field, header or not. GMime parses groups of addresses, "a:b:c:",
// by recursion, also in the header of an attached mail: more of them would exhaust the stack.
std::string WithFewColons(std::string_view text)
{
    constexpr int kMostColons = 100;
    std::string result;
    result.reserve(text.size());
    int colons = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isNewField = i > 0 && text[i - 1] == '\n' && text[i] != ' ' && text[i] != '\t';
        colons = isNewField ? 0 : colons;
        const bool isTooMany = text[i] == ':' && ++colons > kMostColons;
        result += isTooMany ? ' ' : text[i];
    }
    return result;
}

// The mail with only those headers that say how to read its subject and its body.
std::string Reduced(const SplitMail& mail)
{
    std::string reduced;
    for (const Header& header : mail.headers) {
        if (header.name.starts_with("content-") || header.name == "mime-version" ||
            header.name == "subject") {
            reduced += header.name + ':' + header.value.substr(0, kLongestField) + '\n';
        }
    }
    return WithFewColons(reduced += '\n') + WithFewColons(mail.body);
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

// A DMARC pass proves the domain of the header From only: other addresses of that domain are other persons'.
bool IsFrom(const std::vector<Header>& headers, std::string_view sender)
{
    std::vector<std::optional<std::string>> addresses;
    for (const Header& header : headers) {
        if (header.name == "from") {
            addresses.push_back(FromAddress(header.value));
        }
    }
    return addresses.size() == 1 && addresses.front() == sender;
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
    const SplitMail mail = Split(message.substr(0, kMailBytesRead));
    const std::vector<Header>& headers = mail.headers;
    const std::optional<std::string> sender = EnvelopeSender(headers);
    if (!sender) {
        return MailRefusal::NoSender;
    }
    if (IsAutomatic(headers, *sender)) {
        return MailRefusal::Automatic;
    }
    if (!IsAuthenticated(headers, server, *sender) || !IsFrom(headers, *sender)) {
        return MailRefusal::NotAuthenticated;
    }
    const std::string reduced = Reduced(mail);
    const Owned<GMimeMessage> parsed = Parse(reduced);
    IncomingText text{{AddressKind::Mail, *sender}, {}, {}};
    if (!parsed) {
        return text;
    }
    TextSearch search;
    if (GMimeObject* const body = g_mime_message_get_mime_part(parsed.get()); body != nullptr) {
        search.Visit(body, 0);
    }
    text.subject = ValidUtf8(g_mime_message_get_subject(parsed.get()));
    text.text = search.Result();
    return text;
}

} // namespace beacond
