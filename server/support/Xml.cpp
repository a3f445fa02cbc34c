// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Xml.h"

#include "support/Utf8.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kEmptyEnd = "/>";
constexpr std::string_view kEnd = "/></root>";

// White space other than a space is written as a reference: a parser would normalise it to a space. The other
// control characters are not allowed in XML 1.0 (section 2.2).
void AppendSpecial(std::string& text, char character)
{
    switch (character) {
    case '&':
        text += "&amp;";
        return;
    case '<':
        text += "&lt;";
        return;
    case '>':
        text += "&gt;";
        return;
    case '"':
        text += "&quot;";
        return;
    case '\'':
        text += "&#39;";
        return;
    case '\t':
        text += "&#9;";
        return;
    case '\n':
        text += "&#10;";
        return;
    case '\r':
        text += "&#13;";
        return;
    default:
        return;
    }
}

// Whether the character needs no escape in XML.
bool IsPlain(char character)
{
    return character >= ' ' && character != '&' && character != '<' && character != '>' && character != '"' &&
           character != '\'';
}

} // namespace

namespace beacond {

void AppendEscaped(std::string& text, std::string_view value)
{
    while (!value.empty()) {
        // Append a run at once: long replies consist almost only of such runs.
        const auto run =
            static_cast<std::size_t>(std::find_if_not(value.begin(), value.end(), IsPlain) - value.begin());
        text += value.substr(0, run);
        value.remove_prefix(run);
        if (value.empty()) {
            return;
        }
        const std::size_t length = Utf8SequenceLength(value);
        if (length == 1) {
            AppendSpecial(text, value.front());
        } else if (length == 0) {
            text += kReplacement;
        } else if (const std::string_view sequence = value.substr(0, length);
                   sequence != "\xEF\xBF\xBE" && sequence != "\xEF\xBF\xBF") {
            text += sequence;
        }
        value.remove_prefix(length == 0 ? 1 : length);
    }
}

XmlReply& XmlReply::Attribute(std::string_view name, std::string_view value)
{
    m_text += ' ';
    m_text += name;
    m_text += "=\"";
    AppendEscaped(m_text, value);
    m_text += '"';
    return *this;
}

XmlReply& XmlReply::Child()
{
    std::string name("c");
    name += std::to_string(m_children + 1);
    return Child(name);
}

XmlReply& XmlReply::Child(std::string_view name)
{
    m_text += m_children == 0 ? ">" : kEmptyEnd;
    m_text += '<';
    m_text += name;
    ++m_children;
    return *this;
}

std::size_t XmlReply::Size() const
{
    return m_text.size() + (m_children == 0 ? kEmptyEnd : kEnd).size();
}

std::string XmlReply::Finish()
{
    m_text += m_children == 0 ? kEmptyEnd : kEnd;
    return std::move(m_text);
}

} // namespace beacond
