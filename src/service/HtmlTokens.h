// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <vector>

struct HtmlToken
{
    enum class Kind { Text, Open, Close };

    Kind kind = Kind::Text;
    /// Of a text: safe to stand between tags, its entities in place.
    QString text;
    /// Of a tag: in lower case.
    QString name;
    /// Of an opening tag: names in lower case, values as they are meant, their entities decoded.
    std::vector<std::pair<QString, QString>> attributes;
};

/// Takes a page apart as forgivingly as browsers do. Comments, declarations and the content of scripts, style
/// sheets, frames and titles are passed over.
class HtmlTokens final
{
public:
    explicit HtmlTokens(const QString& page)
        : m_page(page)
    {
    }

    /// Nothing at the end of the page.
    [[nodiscard]] std::optional<HtmlToken> Next();
    /// How much of the page has been taken.
    [[nodiscard]] qsizetype Position() const { return m_at; }

private:
    [[nodiscard]] bool StartsTag() const;
    [[nodiscard]] HtmlToken Text();
    [[nodiscard]] HtmlToken Tag();
    [[nodiscard]] QString Name();
    [[nodiscard]] QString Value();
    void SkipBlanks();
    void SkipPast(const QString& end);
    [[nodiscard]] QString Entity();

    const QString& m_page;
    qsizetype m_at = 0;
};

/// Safe inside the double quotes of an attribute.
[[nodiscard]] QString EscapedHtml(const QString& value);
