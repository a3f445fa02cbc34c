// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "strip/Banner.h"

#include "strip/HtmlText.h"
#include "strip/HtmlTokens.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <span>

namespace {

// The time of the layout is linear in the text and doubles with each table around it. The limits are
// measured: a page that just passes them takes less than 50 ms on a slow machine. Lengths are in UTF-16
// units.
constexpr std::size_t kLongestHtml = 16UL * 1024;
constexpr std::size_t kLargestCost = 24UL * 1024;
constexpr std::size_t kLongestSource = 64UL * 1024;
constexpr std::size_t kDeepestTables = 6;
constexpr std::size_t kDeepestNesting = 60;
constexpr std::size_t kMostImages = 16;
constexpr int kMostSpannedCells = 10;
constexpr int kMostDigitsOfSize = 3;
constexpr std::size_t kLongestAttribute = 400;
constexpr std::size_t kLongestAddress = 2000;

using Words = std::span<const std::string_view>;

constexpr std::string_view kShownTags[] = {
    "a",    "address", "b",   "big", "blockquote", "body",  "br",   "caption", "center", "cite",
    "code", "dd",      "dfn", "div", "dl",         "dt",    "em",   "font",    "h1",     "h2",
    "h3",   "h4",      "h5",  "h6",  "hr",         "i",     "img",  "kbd",     "li",     "nobr",
    "ol",   "p",       "pre", "s",   "samp",       "small", "span", "strike",  "strong", "sub",
    "sup",  "table",   "td",  "th",  "tr",         "tt",    "u",    "ul",      "var"};
constexpr std::string_view kTextAttributes[] = {"align", "alt",  "bgcolor", "bordercolor", "color", "dir",
                                                "face",  "link", "text",    "type",        "valign"};
constexpr std::string_view kSizeAttributes[] = {"border", "cellpadding", "cellspacing",
                                                "height", "size",        "width"};
constexpr std::string_view kTableParts[] = {"table", "tr", "td", "th"};
constexpr Words kTable = Words(kTableParts).first(1);
constexpr Words kTableAndRow = Words(kTableParts).first(2);
constexpr Words kRow = Words(kTableParts).subspan(1, 1);
constexpr Words kCells = Words(kTableParts).subspan(2);
constexpr std::string_view kItem[] = {"li"};
constexpr std::string_view kListsAndTableParts[] = {"ul", "ol", "table", "tr", "td", "th"};

bool IsOneOf(std::string_view word, Words words)
{
    return std::ranges::find(words, word) != words.end();
}

// True for a number of four or more digits: no size in the strip is as large. The digits of a colour do not
// count.
bool HasHugeNumber(std::string_view text)
{
    int digits = 0;
    bool isColour = false;
    for (const char character : text) {
        const bool isDigit = character >= '0' && character <= '9';
        const char lower = LowerCase(character);
        isColour = character == '#' || (isColour && (isDigit || (lower >= 'a' && lower <= 'f')));
        digits = isDigit && !isColour ? digits + 1 : 0;
        if (digits > kMostDigitsOfSize) {
            return true;
        }
    }
    return false;
}

bool HasScheme(std::string_view address, std::initializer_list<std::string_view> schemes)
{
    return std::ranges::any_of(schemes, [&](std::string_view scheme) {
        return LowerCase(address.substr(0, scheme.size())) == scheme;
    });
}

bool IsSpan(std::string_view value)
{
    int cells = 0;
    const char* const end = value.data() + value.size();
    return std::from_chars(value.data(), end, cells).ptr == end && cells > 1 && cells <= kMostSpannedCells;
}

bool IsHarmlessStyle(std::string_view style)
{
    return !HasHugeNumber(style) && LowerCase(style).find("url") == std::string::npos &&
           style.find('\\') == std::string_view::npos;
}

bool IsKept(std::string_view tag, std::string_view name, std::string_view value)
{
    if (name == "href") {
        return tag == "a" && Utf16Units(value) <= kLongestAddress &&
               HasScheme(value, {"http://", "https://"});
    }
    if (Utf16Units(value) > kLongestAttribute) {
        return false;
    }
    if (name == "colspan" || name == "rowspan") {
        return IsSpan(value);
    }
    if (name == "style") {
        return IsHarmlessStyle(value);
    }
    return IsOneOf(name, kTextAttributes) || (IsOneOf(name, kSizeAttributes) && !HasHugeNumber(value));
}

std::string KeptAttributes(const HtmlToken& tag)
{
    std::string kept;
    for (const auto& [name, value] : tag.attributes) {
        if (IsKept(tag.name, name, value)) {
            kept += ' ' + name + "=\"" + Escaped(value) + '"';
        }
    }
    return kept;
}

// The bytes of a data URL take no time to lay out.
std::size_t LengthOfDataAddress(const HtmlToken& tag)
{
    const std::string* const address = tag.Find("src");
    const bool isOpening = tag.kind == HtmlToken::Kind::Open;
    return isOpening && address != nullptr && HasScheme(*address, {"data:"}) ? Utf16Units(*address) : 0;
}

// Builds the clean page tag by tag and counts its cost.
class BannerBuilder final
{
public:
    void Take(const HtmlToken& token)
    {
        switch (token.kind) {
        case HtmlToken::Kind::Text:
            return Text(token.text);
        case HtmlToken::Kind::Open:
            return Open(token);
        case HtmlToken::Kind::Close:
            return Close(token.name);
        }
    }

    [[nodiscard]] bool IsTooMuch() const
    {
        return m_length > kLongestHtml || m_cost > kLargestCost || Tables() > kDeepestTables ||
               m_open.size() > kDeepestNesting;
    }

    [[nodiscard]] Banner Finish()
    {
        CloseFrom(0);
        m_banner.html = WithoutLayoutMarks(m_banner.html);
        return m_banner;
    }

private:
    void Text(std::string_view text)
    {
        const std::string_view part = InnermostTablePart();
        const bool isBetweenCells = part == "table" || part == "tr";
        if (!isBetweenCells || text.find_first_not_of(kHtmlSpaces) != std::string_view::npos) {
            EnsureCell();
            Append(SafeText(text));
        }
    }

    void Open(const HtmlToken& tag)
    {
        const std::string& name = tag.name;
        if (!IsOneOf(name, kShownTags)) {
            return;
        }
        CloseBefore(name);
        if (name != "tr" && !IsOneOf(name, kCells)) {
            EnsureCell();
        } else if (InnermostTablePart().empty()) {
            return;
        } else if (name != "tr" && InnermostTablePart() == "table") {
            Push("tr");
        }
        if (name == "img") {
            Image(tag);
        } else if (name == "br" || name == "hr") {
            Append('<' + name + KeptAttributes(tag) + '>');
        } else {
            Push(name, KeptAttributes(tag));
        }
    }

    void Close(std::string_view name)
    {
        // An end tag closes nothing outside its table, an end tag of a style nothing outside its cell.
        CloseInnermost({&name, 1}, IsOneOf(name, kTableParts) ? kTable : Words(kTableParts));
    }

    [[nodiscard]] std::size_t Tables() const
    {
        return static_cast<std::size_t>(std::ranges::count(m_open, "table"));
    }

    // Empty outside of tables.
    [[nodiscard]] std::string_view InnermostTablePart() const
    {
        const auto found = std::find_if(m_open.rbegin(), m_open.rend(),
                                        [](const std::string& open) { return IsOneOf(open, kTableParts); });
        return found == m_open.rend() ? std::string_view() : *found;
    }

    // Content of a table outside its cells gets a cell.
    void EnsureCell()
    {
        if (InnermostTablePart() == "table") {
            Push("tr");
        }
        if (InnermostTablePart() == "tr") {
            Push("td");
        }
    }

    // Closes the elements that end where an element of that name begins.
    void CloseBefore(std::string_view name)
    {
        if (name == "tr") {
            CloseInnermost(kRow, kTable);
        } else if (IsOneOf(name, kCells)) {
            CloseInnermost(kCells, kTableAndRow);
        } else if (name == "li") {
            CloseInnermost(kItem, kListsAndTableParts);
        } else if (name == "p" && !m_open.empty() && m_open.back() == "p") {
            CloseFrom(m_open.size() - 1);
        }
    }

    // Closes the innermost element of one of these names, but none outside a barrier.
    void CloseInnermost(Words names, Words barriers)
    {
        for (std::size_t level = m_open.size(); level-- > 0;) {
            if (IsOneOf(m_open[level], names)) {
                return CloseFrom(level);
            }
            if (IsOneOf(m_open[level], barriers)) {
                return;
            }
        }
    }

    void CloseFrom(std::size_t level)
    {
        while (m_open.size() > level) {
            Append("</" + m_open.back() + '>');
            m_open.pop_back();
        }
    }

    void Image(const HtmlToken& tag)
    {
        const std::string* const address = tag.Find("src");
        if (address != nullptr && m_banner.images.size() < kMostImages &&
            HasScheme(*address, {"http://", "https://", "data:"})) {
            Append("<img src=\"image:" + std::to_string(m_banner.images.size()) + '"' + KeptAttributes(tag) +
                   '>');
            m_banner.images.push_back(*address);
        }
    }

    void Push(std::string_view name, const std::string& attributes = {})
    {
        m_open.emplace_back(name);
        Append('<' + m_open.back() + attributes + '>');
    }

    void Append(const std::string& html)
    {
        const std::size_t length = Utf16Units(html);
        m_banner.html += html;
        m_length += length;
        m_cost += length << std::min(Tables(), kDeepestTables);
    }

    Banner m_banner;
    std::vector<std::string> m_open;
    std::size_t m_length = 0;
    std::size_t m_cost = 0;
};

} // namespace

std::optional<Banner> CleanBanner(std::string_view page)
{
    BannerBuilder builder;
    HtmlTokens tokens(page);
    std::size_t length = 0;
    while (true) {
        const std::string_view before = tokens.Rest();
        const std::optional<HtmlToken> token = tokens.Next();
        length += Utf16Units(before.substr(0, before.size() - tokens.Rest().size()));
        length -= token ? LengthOfDataAddress(*token) : 0;
        if (length > kLongestSource) {
            return std::nullopt;
        }
        if (!token) {
            return builder.Finish();
        }
        builder.Take(*token);
        if (builder.IsTooMuch()) {
            return std::nullopt;
        }
    }
}
