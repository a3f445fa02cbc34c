// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/PageText.h"

#include "strip/HtmlTokens.h"
#include "support/CodePage.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace {

constexpr qsizetype kEncodingNamedWithin = 1024;

// Keeps only the characters of names: ICU reads others as converter options.
QByteArray NameIn(const std::string& assignment)
{
    static const QRegularExpression named(QStringLiteral("charset\\s*=\\s*[\"']?([a-z0-9_:.-]+)"),
                                          QRegularExpression::CaseInsensitiveOption);
    return named.match(QString::fromLatin1(assignment)).captured(1).toLower().toLatin1();
}

QByteArray EncodingOf(const HtmlToken& tag)
{
    for (const auto& [name, value] : tag.attributes) {
        QByteArray encoding = name == "charset"   ? NameIn("charset=" + value)
                              : name == "content" ? NameIn(value)
                                                  : QByteArray();
        if (!encoding.isEmpty()) {
            return encoding;
        }
    }
    return {};
}

QByteArray NamedEncoding(const QByteArray& page)
{
    const auto size = static_cast<std::size_t>(std::min(page.size(), kEncodingNamedWithin));
    HtmlTokens tokens({page.constData(), size});
    while (const std::optional<HtmlToken> token = tokens.Next()) {
        // An incomplete tag may hold half of a name.
        if (token->name == "meta" && token->isWhole) {
            if (QByteArray encoding = EncodingOf(*token); !encoding.isEmpty()) {
                return encoding;
            }
        }
    }
    return {};
}

// Browsers replace these encodings by larger code pages that contain them, and UTF-16 by UTF-8, since a page
// in UTF-16 could not name it in ASCII. Source: WHATWG Encoding Standard, 4.2, and HTML, 13.2.3.2.
QByteArray BrowserEncoding(const QByteArray& name)
{
    constexpr std::pair<const char*, const char*> kEncodings[] = {{"iso-8859-1", "windows-1252"},
                                                                  {"us-ascii", "windows-1252"},
                                                                  {"iso-8859-9", "windows-1254"},
                                                                  {"iso-8859-11", "windows-874"},
                                                                  {"gb2312", "gbk"},
                                                                  {"gb_2312-80", "gbk"},
                                                                  {"euc-kr", "windows-949"},
                                                                  {"utf-16", "utf-8"},
                                                                  {"utf-16be", "utf-8"},
                                                                  {"utf-16le", "utf-8"},
                                                                  {"unicodefeff", "utf-8"},
                                                                  {"unicodefffe", "utf-8"}};
    const auto* const found =
        std::find_if(std::begin(kEncodings), std::end(kEncodings), [&](const auto& encoding) {
            return name == encoding.first || IsSameEncoding(name, encoding.first);
        });
    return found == std::end(kEncodings) ? name : QByteArray(found->second);
}

} // namespace

QString PageText(const QByteArray& page)
{
    const std::optional<QString> text = FromEncoding(page, BrowserEncoding(NamedEncoding(page)));
    return text ? *text : FromCodePage(page);
}
