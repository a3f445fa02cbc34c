// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "strip/HtmlTokens.h"

#include "strip/HtmlText.h"

#include <algorithm>

namespace {

// An ordinary tag has fewer; further attributes are skipped.
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

// Takes @p rest up to the first of @p ends at or after @p from.
std::string_view TakeUpTo(std::string_view& rest, std::string_view ends, std::size_t from = 0)
{
    const std::string_view taken = rest.substr(0, rest.find_first_of(ends, from));
    rest.remove_prefix(taken.size());
    return taken;
}

void Skip(std::string_view& rest, std::string_view characters)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(characters), rest.size()));
}

// Skips to the end of the first @p end, which is in lower case. Without one, skips everything and returns
// false.
bool SkipPast(std::string_view& rest, std::string_view end)
{
    const auto* const found =
        std::search(rest.begin(), rest.end(), end.begin(), end.end(),
                    [](char character, char wanted) { return LowerCase(character) == wanted; });
    const bool isFound = found != rest.end();
    rest = isFound ? rest.substr(static_cast<std::size_t>(found - rest.begin()) + end.size())
                   : std::string_view();
    return isFound;
}

// Takes the value after a "=".
std::string_view TakeValue(std::string_view& rest)
{
    Skip(rest, kHtmlSpaces);
    if (!rest.starts_with('"') && !rest.starts_with('\'')) {
        return TakeUpTo(rest, " \t\n\f\r>");
    }
    const std::string_view quote = rest.substr(0, 1);
    rest.remove_prefix(1);
    const std::string_view value = TakeUpTo(rest, quote);
    rest.remove_prefix(std::min<std::size_t>(rest.size(), 1));
    return value;
}

void TakeAttributes(std::string_view& rest, HtmlToken& tag)
{
    for (int count = 0; count < kMostAttributes; ++count) {
        Skip(rest, " \t\n\f\r/");
        if (rest.empty() || rest.front() == '>') {
            return;
        }
        std::string name = LowerCase(TakeUpTo(rest, " \t\n\f\r/>=", 1));
        std::string value;
        Skip(rest, kHtmlSpaces);
        if (rest.starts_with('=')) {
            rest.remove_prefix(1);
            value = AttributeValue(TakeValue(rest));
        }
        // The first of two attributes with one name counts.
        if (tag.Find(name) == nullptr) {
            tag.attributes.emplace_back(std::move(name), Trimmed(value));
        }
    }
}

HtmlToken TakeTag(std::string_view& rest)
{
    HtmlToken tag;
    const bool isClosing = rest.starts_with("</");
    tag.kind = isClosing ? HtmlToken::Kind::Close : HtmlToken::Kind::Open;
    rest.remove_prefix(isClosing ? 2 : 1);
    tag.name = LowerCase(TakeUpTo(rest, " \t\n\f\r/>"));
    TakeAttributes(rest, tag);
    tag.isWhole = SkipPast(rest, ">");
    if (!isClosing && HasHiddenContent(tag.name) && SkipPast(rest, "</" + tag.name)) {
        SkipPast(rest, ">");
    }
    return tag;
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
    while (!m_rest.empty()) {
        if (m_rest.starts_with("<!--")) {
            m_rest.remove_prefix(4);
            SkipPast(m_rest, "-->");
        } else if (m_rest.starts_with("<!") || m_rest.starts_with("<?")) {
            SkipPast(m_rest, ">");
        } else if (StartsTag(m_rest)) {
            return TakeTag(m_rest);
        } else {
            HtmlToken text;
            // A "<" that does not start a tag is text.
            text.text = TakeUpTo(m_rest, "<", 1);
            return text;
        }
    }
    return std::nullopt;
}
