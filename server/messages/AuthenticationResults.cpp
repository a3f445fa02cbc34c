// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/AuthenticationResults.h"

#include "support/Ascii.h"

#include <algorithm>
#include <vector>

namespace beacond {

namespace {

// A quoted text keeps its opening quotation mark: it must not be read as a keyword.
using Tokens = std::vector<std::string>;

// Splits the value into tokens; ";" and "=" are tokens of their own. Server and results contain parts of the
// sender's choice, such as the local part of an address, in quotation marks or comments.
class Tokenizer final
{
public:
    explicit Tokenizer(std::string_view text)
        : m_text(text)
    {
    }

    /// Nothing for a text with an open quotation mark or comment.
    std::optional<Tokens> Read()
    {
        while (m_at < m_text.size()) {
            const char c = m_text[m_at++];
            if (c == '(') {
                SkipComment();
                EndToken();
            } else if (c == '"') {
                ReadQuoted();
            } else if (c == ';' || c == '=') {
                EndToken();
                m_tokens.emplace_back(1, c);
            } else if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
                EndToken();
            } else {
                m_token += ToLower(c);
            }
        }
        EndToken();
        return m_isWhole ? std::optional(std::move(m_tokens)) : std::nullopt;
    }

private:
    void EndToken()
    {
        if (!m_token.empty()) {
            m_tokens.push_back(std::move(m_token));
        }
        m_token.clear();
    }

    void SkipComment()
    {
        for (std::size_t depth = 1; depth > 0; ++m_at) {
            if (m_at >= m_text.size()) {
                m_isWhole = false;
                return;
            }
            if (m_text[m_at] == '\\') {
                ++m_at;
            } else if (m_text[m_at] == '(') {
                ++depth;
            } else if (m_text[m_at] == ')') {
                --depth;
            }
        }
    }

    void ReadQuoted()
    {
        m_token += '"';
        for (; m_at < m_text.size() && m_text[m_at] != '"'; ++m_at) {
            m_at += m_text[m_at] == '\\' ? 1 : 0;
            m_token += m_at < m_text.size() ? ToLower(m_text[m_at]) : '"';
        }
        m_isWhole = m_isWhole && m_at < m_text.size();
        ++m_at;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::string m_token;
    Tokens m_tokens;
    bool m_isWhole = true;
};

// The value after "NAME=" in the tokens of one result; empty if it is missing or occurs twice.
std::string ValueOf(const Tokens& result, std::string_view name)
{
    std::string value;
    for (std::size_t i = 0; i + 2 < result.size(); ++i) {
        if (result[i] == name && result[i + 1] == "=") {
            if (!value.empty()) {
                return {};
            }
            value = result[i + 2];
        }
    }
    return value;
}

bool IsDmarc(const Tokens& result)
{
    return !result.empty() && (result[0] == "dmarc" || result[0].starts_with("dmarc/"));
}

} // namespace

std::optional<AuthenticationResults> ReadAuthenticationResults(std::string_view value)
{
    const std::optional<Tokens> tokens = Tokenizer(value).Read();
    if (!tokens || tokens->empty()) {
        return std::nullopt;
    }
    AuthenticationResults results{tokens->front(), std::nullopt};
    bool hasFailed = false;
    for (auto begin = std::find(tokens->begin(), tokens->end(), ";"); begin != tokens->end();) {
        const auto end = std::find(begin + 1, tokens->end(), ";");
        const Tokens result(begin + 1, end);
        if (IsDmarc(result)) {
            const std::string domain = ValueOf(result, "header.from");
            hasFailed = hasFailed || ValueOf(result, result[0]) != "pass" || domain.empty() ||
                        results.dmarcDomain.value_or(domain) != domain;
            results.dmarcDomain = domain;
        }
        begin = end;
    }
    if (hasFailed) {
        results.dmarcDomain.reset();
    }
    return results;
}

} // namespace beacond
