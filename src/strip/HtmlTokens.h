// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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
    /// Of a text: unchanged from the page.
    std::string_view text;
    /// Of a tag: in lower case.
    std::string name;
    /// Of an opening tag: names in lower case, each once, and values without references.
    std::vector<std::pair<std::string, std::string>> attributes;
    /// Of a tag: whether the page holds its end.
    bool isWhole = true;
};

/// Splits a page into tags and texts and tolerates the errors that browsers tolerate. Comments, declarations
/// and the content of scripts, style sheets, frames and titles are skipped. The time is linear in the length
/// of the page.
class HtmlTokens final
{
public:
    /// @param page UTF-8, or another encoding compatible with ASCII; must outlive the texts of the tokens
    explicit HtmlTokens(std::string_view page)
        : m_rest(page)
    {
    }

    /// Nothing at the end of the page.
    [[nodiscard]] std::optional<HtmlToken> Next();
    /// The part of the page after the last token.
    [[nodiscard]] std::string_view Rest() const { return m_rest; }

private:
    std::string_view m_rest;
};
