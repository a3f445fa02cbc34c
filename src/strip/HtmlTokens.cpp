// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "strip/HtmlTokens.h"

#include "strip/HtmlText.h"

#include <algorithm>

namespace {

// An honest tag has fewer; the rest of one that has more is passed over.
constexpr int kMostAttributes = 32;

bool HasHiddenContent(std::string_view name)
{
    constexpr std::string_view kNames[] = {"script", "style",    "title",  "iframe", "object",
                                           "applet", "noframes", "select", "svg",    "template"};
    return std::ranges::find(kNames, name) != std::end(kNames);
}

bool StartsTag(std::string_view rest)
{
    const std::size_t name = rest.starts_with("</") ? 2 : 1;
    const char lower = rest.starts_with('<') && rest.size() > name ? LowerCase(rest[name]) : ' ';
    return lower >= 'a' && lower <= 'z';
}

std::string_view Trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kHtmlSpaces), text.size()));
    return text.substr(0, text.find_last_not_of(kHtmlSpaces) + 1);
}

} // namespace

const std::string* HtmlToken::Find(std::string_view attribute) const
{
    const auto found = std::ranges::find(attributes, attribute,
                                         [](const auto& known) -> std::string_view { return known.first; });
    return found == attributes.end() ? nullptr : &found->second;
}

std::optional<HtmlToken> HtmlTokens::Next()
{
    while (m_at < m_page.size()) {
        if (Rest().starts_with("<!--")) {
            m_at += 4;
            SkipPast("-->");
        } else if (Rest().starts_with("<!") || Rest().starts_with("<?")) {
            SkipPast(">");
        } else {
            return StartsTag(Rest()) ? Tag() : Text();
        }
    }
    return std::nullopt;
}

HtmlToken HtmlTokens::Text()
{
    HtmlToken token;
    // A "<" that starts no tag is text.
    token.text = TakeUpTo("<", 1);
    return token;
}

HtmlToken HtmlTokens::Tag()
{
    HtmlToken token;
    token.kind = Rest().starts_with("</") ? HtmlToken::Kind::Close : HtmlToken::Kind::Open;
    m_at += token.kind == HtmlToken::Kind::Close ? 2 : 1;
    token.name = LowerCase(TakeUpTo(" \t\n\f\r/>"));
    TakeAttributes(token);
    SkipPast(">");
    if (token.kind == HtmlToken::Kind::Open && HasHiddenContent(token.name)) {
        SkipPast("</" + token.name);
        SkipPast(">");
    }
    return token;
}

void HtmlTokens::TakeAttributes(HtmlToken& tag)
{
    for (int count = 0; count < kMostAttributes; ++count) {
        Skip(" \t\n\f\r/");
        if (Rest().empty() || IsAt(">")) {
            return;
        }
        std::string name = LowerCase(TakeUpTo(" \t\n\f\r/>=", 1));
        Skip(kHtmlSpaces);
        std::string value = IsAt("=") ? AttributeValue(Value()) : std::string();
        // Of two attributes of one name the first counts.
        if (tag.Find(name) == nullptr) {
            tag.attributes.emplace_back(std::move(name), Trimmed(value));
        }
    }
}

std::string_view HtmlTokens::Value()
{
    ++m_at;
    Skip(kHtmlSpaces);
    if (!IsAt("\"'")) {
        return TakeUpTo(" \t\n\f\r>");
    }
    const std::string_view quote = Rest().substr(0, 1);
    ++m_at;
    const std::string_view value = TakeUpTo(quote);
    m_at += Rest().empty() ? 0 : 1;
    return value;
}

bool HtmlTokens::IsAt(std::string_view characters) const
{
    return !Rest().empty() && characters.find(Rest().front()) != std::string_view::npos;
}

std::string_view HtmlTokens::Rest() const
{
    return m_page.substr(std::min(m_at, m_page.size()));
}

// Up to the first of the characters, which is looked for @p from bytes further on.
std::string_view HtmlTokens::TakeUpTo(std::string_view characters, std::size_t from)
{
    const std::string_view taken = Rest().substr(0, Rest().find_first_of(characters, from));
    m_at += taken.size();
    return taken;
}

void HtmlTokens::Skip(std::string_view characters)
{
    m_at = std::min(m_page.find_first_not_of(characters, m_at), m_page.size());
}

// @p end in lower case. The end of a part longer than this is not looked for: no honest page has one.
void HtmlTokens::SkipPast(std::string_view end)
{
    constexpr std::size_t kLongestPart = 64UL * 1024;
    const auto found =
        std::ranges::search(Rest().substr(0, kLongestPart), end,
                            [](char character, char wanted) { return LowerCase(character) == wanted; });
    m_at = found.empty() ? m_page.size() + 1 : static_cast<std::size_t>(found.end() - m_page.begin());
}
