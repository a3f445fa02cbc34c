// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct HtmlToken
{
    enum class Kind { Text, Open, Close };

    /// The value of the attribute of that name; nullptr if there is none.
    [[nodiscard]] const std::string* Find(std::string_view attribute) const;

    Kind kind = Kind::Text;
    /// Of a text: as it stands in the page.
    std::string_view text;
    /// Of a tag: in lower case.
    std::string name;
    /// Of an opening tag: names in lower case, each once, and values without references.
    std::vector<std::pair<std::string, std::string>> attributes;
};

/// Splits a page into tags and texts as forgivingly as browsers do. Comments, declarations and the content of
/// scripts, style sheets, frames and titles are passed over. The time it takes is linear in the page.
class HtmlTokens final
{
public:
    /// @param page UTF-8, or another encoding that holds ASCII; must outlive the tokens
    explicit HtmlTokens(std::string_view page)
        : m_page(page)
    {
    }

    /// Nothing at the end of the page.
    [[nodiscard]] std::optional<HtmlToken> Next();
    /// Number of bytes taken so far; more than the page has if its last tag does not end.
    [[nodiscard]] std::size_t Position() const { return m_at; }

private:
    [[nodiscard]] HtmlToken Text();
    [[nodiscard]] HtmlToken Tag();
    void TakeAttributes(HtmlToken& tag);
    [[nodiscard]] std::string_view Value();
    [[nodiscard]] bool IsAt(std::string_view characters) const;
    [[nodiscard]] std::string_view Rest() const;
    [[nodiscard]] std::string_view TakeUpTo(std::string_view characters, std::size_t from = 0);
    void Skip(std::string_view characters);
    void SkipPast(std::string_view end);

    std::string_view m_page;
    std::size_t m_at = 0;
};
