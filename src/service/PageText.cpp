// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/PageText.h"

#include "service/HtmlTokens.h"
#include "support/CodePage.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace {

constexpr qsizetype kEncodingNamedWithin = 1024;

// Of a name only the letters that names are made of: the library takes others for orders.
QByteArray NameIn(const QString& assignment)
{
    static const QRegularExpression named(QStringLiteral("charset\\s*=\\s*[\"']?([a-z0-9_:.-]+)"),
                                          QRegularExpression::CaseInsensitiveOption);
    return named.match(assignment).captured(1).toLower().toLatin1();
}

QByteArray EncodingOf(const HtmlToken& tag)
{
    for (const auto& [name, value] : tag.attributes) {
        QByteArray encoding = name == u"charset"   ? NameIn(QStringLiteral("charset=") + value)
                              : name == u"content" ? NameIn(value)
                                                   : QByteArray();
        if (!encoding.isEmpty()) {
            return encoding;
        }
    }
    return {};
}

QByteArray NamedEncoding(const QByteArray& page)
{
    const QString head = QString::fromLatin1(page.left(kEncodingNamedWithin));
    HtmlTokens tokens(head);
    while (const std::optional<HtmlToken> token = tokens.Next()) {
        // A tag that is cut may name half of what it means.
        const bool isMeta = token->kind == HtmlToken::Kind::Open && token->name == u"meta";
        QByteArray encoding = isMeta && tokens.Position() <= head.size() ? EncodingOf(*token) : QByteArray();
        if (!encoding.isEmpty()) {
            return encoding;
        }
    }
    return {};
}

// As browsers take these encodings: for the larger code pages of the same letters, and for what alone can be
// meant where the name could be read. Source: WHATWG Encoding Standard, 4.2, and HTML, 13.2.3.2.
QByteArray Meant(const QByteArray& name)
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
    const std::optional<QString> text = FromEncoding(page, Meant(NamedEncoding(page)));
    return text ? *text : FromCodePage(page);
}
