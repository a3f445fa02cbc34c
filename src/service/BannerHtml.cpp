// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/BannerHtml.h"

#include "service/HtmlTokens.h"

#include <QSet>

#include <algorithm>

namespace {

// Laying out is linear in the text and doubles with each table around it. The limits are measured: what just
// passes them takes less than 50 ms on a slow machine.
constexpr qsizetype kLongestHtml = 16LL * 1024;
constexpr qsizetype kLargestCost = 24LL * 1024;
constexpr qsizetype kLongestSource = 64LL * 1024;
constexpr qsizetype kDeepestTables = 6;
constexpr qsizetype kDeepestNesting = 60;
constexpr qsizetype kMostImages = 16;
constexpr int kMostSpannedCells = 10;
constexpr qsizetype kLongestAttribute = 400;
constexpr qsizetype kLongestAddress = 2000;

const QSet<QString>& ShownTags()
{
    static const QSet<QString> tags{
        QStringLiteral("a"),       QStringLiteral("address"),    QStringLiteral("b"),
        QStringLiteral("big"),     QStringLiteral("blockquote"), QStringLiteral("br"),
        QStringLiteral("caption"), QStringLiteral("center"),     QStringLiteral("cite"),
        QStringLiteral("code"),    QStringLiteral("dd"),         QStringLiteral("dfn"),
        QStringLiteral("div"),     QStringLiteral("dl"),         QStringLiteral("dt"),
        QStringLiteral("em"),      QStringLiteral("font"),       QStringLiteral("h1"),
        QStringLiteral("h2"),      QStringLiteral("h3"),         QStringLiteral("h4"),
        QStringLiteral("h5"),      QStringLiteral("h6"),         QStringLiteral("hr"),
        QStringLiteral("i"),       QStringLiteral("img"),        QStringLiteral("kbd"),
        QStringLiteral("li"),      QStringLiteral("nobr"),       QStringLiteral("ol"),
        QStringLiteral("p"),       QStringLiteral("pre"),        QStringLiteral("s"),
        QStringLiteral("samp"),    QStringLiteral("small"),      QStringLiteral("span"),
        QStringLiteral("strike"),  QStringLiteral("strong"),     QStringLiteral("sub"),
        QStringLiteral("sup"),     QStringLiteral("table"),      QStringLiteral("td"),
        QStringLiteral("th"),      QStringLiteral("tr"),         QStringLiteral("tt"),
        QStringLiteral("u"),       QStringLiteral("ul"),         QStringLiteral("var"),
        QStringLiteral("body")};
    return tags;
}

const QSet<QString>& TextAttributes()
{
    static const QSet<QString> names{
        QStringLiteral("align"),  QStringLiteral("alt"),        QStringLiteral("bgcolor"),
        QStringLiteral("color"),  QStringLiteral("dir"),        QStringLiteral("face"),
        QStringLiteral("link"),   QStringLiteral("text"),       QStringLiteral("type"),
        QStringLiteral("valign"), QStringLiteral("bordercolor")};
    return names;
}

const QSet<QString>& SizeAttributes()
{
    static const QSet<QString> names{QStringLiteral("border"),      QStringLiteral("cellpadding"),
                                     QStringLiteral("cellspacing"), QStringLiteral("height"),
                                     QStringLiteral("size"),        QStringLiteral("width")};
    return names;
}

bool IsCell(const QString& name)
{
    return name == u"td" || name == u"th";
}

bool IsOfTable(const QString& name)
{
    return name == u"table" || name == u"tr" || IsCell(name);
}

bool IsVoid(const QString& name)
{
    return name == u"br" || name == u"hr" || name == u"img";
}

// Four digits in a row make a size that no strip has, unless they are a colour's.
bool HasHugeNumber(const QString& text)
{
    int digits = 0;
    bool isColour = false;
    for (const QChar character : text) {
        const bool isHexadecimal =
            character.isDigit() || (character.toLower() >= u'a' && character.toLower() <= u'f');
        isColour = character == u'#' || (isColour && isHexadecimal);
        digits = character.isDigit() && !isColour ? digits + 1 : 0;
        if (digits > 3) {
            return true;
        }
    }
    return false;
}

bool HasScheme(const QString& address, std::initializer_list<QLatin1String> starts)
{
    return std::any_of(starts.begin(), starts.end(),
                       [&](QLatin1String start) { return address.startsWith(start, Qt::CaseInsensitive); });
}

QString Attribute(const QString& name, const QString& value)
{
    return u' ' + name + QStringLiteral("=\"") + EscapedHtml(value) + u'"';
}

QString KeptAttribute(const QString& tag, const QString& name, const QString& value)
{
    if (value.size() > kLongestAddress) {
        return {};
    }
    if (name == u"href") {
        const bool isOpened =
            tag == u"a" && HasScheme(value, {QLatin1String("http://"), QLatin1String("https://")});
        return isOpened ? Attribute(name, value) : QString();
    }
    if (value.size() > kLongestAttribute) {
        return {};
    }
    if (name == u"colspan" || name == u"rowspan") {
        const int span = value.toInt();
        return span > 1 && span <= kMostSpannedCells ? Attribute(name, QString::number(span)) : QString();
    }
    if (name == u"style") {
        const bool isHarmless =
            !HasHugeNumber(value) && !value.contains(u"url", Qt::CaseInsensitive) && !value.contains(u'\\');
        return isHarmless ? Attribute(name, value) : QString();
    }
    if (SizeAttributes().contains(name)) {
        return HasHugeNumber(value) ? QString() : Attribute(name, value);
    }
    return TextAttributes().contains(name) ? Attribute(name, value) : QString();
}

qsizetype LengthOfDataAddress(const HtmlToken& token)
{
    const auto found =
        std::find_if(token.attributes.begin(), token.attributes.end(), [](const auto& attribute) {
            return attribute.first == u"src" && HasScheme(attribute.second, {QLatin1String("data:")});
        });
    return found == token.attributes.end() ? 0 : found->second.size();
}

// Builds the clean page tag by tag and keeps count of what it costs.
class BannerBuilder final
{
public:
    void Text(const QString& text)
    {
        const bool isBlank = text.trimmed().isEmpty();
        if (isBlank && IsBetweenCells()) {
            return;
        }
        EnsureCell();
        Append(text);
    }

    void Open(const HtmlToken& token)
    {
        const QString& name = token.name;
        if (!ShownTags().contains(name)) {
            return;
        }
        CloseWhatEndsBefore(name);
        if (name == u"tr" || IsCell(name)) {
            if (Innermost([](const QString& open) { return IsOfTable(open); }).isEmpty()) {
                return;
            }
            if (IsCell(name) && InnermostOfTable() == u"table") {
                Push(QStringLiteral("tr"), QString());
            }
        } else {
            EnsureCell();
        }
        if (name == u"img") {
            Image(token);
            return;
        }
        QString attributes;
        for (const auto& [attribute, value] : token.attributes) {
            attributes += KeptAttribute(name, attribute, value);
        }
        if (IsVoid(name)) {
            Append(u'<' + name + attributes + u'>');
        } else {
            Push(name, attributes);
        }
    }

    void Close(const QString& name)
    {
        if (!IsVoid(name)) {
            CloseThrough(
                [&](const QString& open) { return open == name; },
                [&](const QString& open) { return name != u"table" && Stops(open, IsOfTable(name)); });
        }
    }

    [[nodiscard]] bool IsTooMuch() const
    {
        return m_banner.html.size() > kLongestHtml || m_cost > kLargestCost || m_tables > kDeepestTables ||
               m_open.size() > kDeepestNesting;
    }

    [[nodiscard]] Banner Finish()
    {
        while (!m_open.isEmpty()) {
            Pop();
        }
        return m_banner;
    }

private:
    // What holds a search for an open tag inside a table's cell, or inside its table.
    static bool Stops(const QString& open, bool isOfTable)
    {
        return open == u"table" || (!isOfTable && IsOfTable(open));
    }

    template <typename Condition>
    [[nodiscard]] QString Innermost(Condition condition) const
    {
        const auto found = std::find_if(m_open.rbegin(), m_open.rend(), condition);
        return found == m_open.rend() ? QString() : *found;
    }
    [[nodiscard]] QString InnermostOfTable() const
    {
        return Innermost([](const QString& open) { return IsOfTable(open); });
    }
    [[nodiscard]] bool IsBetweenCells() const
    {
        const QString innermost = InnermostOfTable();
        return innermost == u"table" || innermost == u"tr";
    }

    // What stands in a table but in none of its cells gets one.
    void EnsureCell()
    {
        if (InnermostOfTable() == u"table") {
            Push(QStringLiteral("tr"), QString());
        }
        if (InnermostOfTable() == u"tr") {
            Push(QStringLiteral("td"), QString());
        }
    }

    void CloseWhatEndsBefore(const QString& name)
    {
        const auto isTable = [](const QString& open) { return open == u"table"; };
        if (name == u"tr") {
            CloseThrough([](const QString& open) { return open == u"tr"; }, isTable);
        } else if (IsCell(name)) {
            CloseThrough([](const QString& open) { return IsCell(open); },
                         [](const QString& open) { return open == u"table" || open == u"tr"; });
        } else if (name == u"li") {
            CloseThrough(
                [](const QString& open) { return open == u"li"; },
                [](const QString& open) { return open == u"ul" || open == u"ol" || IsOfTable(open); });
        } else if (name == u"p" && !m_open.isEmpty() && m_open.back() == u"p") {
            Pop();
        }
    }

    template <typename Condition, typename Barrier>
    void CloseThrough(Condition condition, Barrier barrier)
    {
        qsizetype level = m_open.size() - 1;
        while (level >= 0 && !condition(m_open[level])) {
            if (barrier(m_open[level])) {
                return;
            }
            --level;
        }
        while (level >= 0 && m_open.size() > level) {
            Pop();
        }
    }

    void Image(const HtmlToken& token)
    {
        QString address;
        QString attributes;
        for (const auto& [name, value] : token.attributes) {
            if (name == u"src") {
                address = value.trimmed();
            } else {
                attributes += KeptAttribute(token.name, name, value);
            }
        }
        if (m_banner.images.size() < kMostImages &&
            HasScheme(address,
                      {QLatin1String("http://"), QLatin1String("https://"), QLatin1String("data:")})) {
            Append(QStringLiteral("<img src=\"image:%1\"").arg(m_banner.images.size()) + attributes + u'>');
            m_banner.images << address;
        }
    }

    void Push(const QString& name, const QString& attributes)
    {
        m_tables += name == u"table" ? 1 : 0;
        m_open << name;
        Append(u'<' + name + attributes + u'>');
    }

    void Pop()
    {
        const QString name = m_open.takeLast();
        Append(QStringLiteral("</") + name + u'>');
        m_tables -= name == u"table" ? 1 : 0;
    }

    void Append(const QString& html)
    {
        m_banner.html += html;
        m_cost += html.size() << std::min(m_tables, kDeepestTables);
    }

    Banner m_banner;
    QStringList m_open;
    qsizetype m_tables = 0;
    qsizetype m_cost = 0;
};

} // namespace

std::optional<Banner> CleanBanner(const QString& page)
{
    BannerBuilder builder;
    HtmlTokens tokens(page);
    qsizetype dataAddresses = 0;
    while (const std::optional<HtmlToken> token = tokens.Next()) {
        switch (token->kind) {
        case HtmlToken::Kind::Text:
            builder.Text(token->text);
            break;
        case HtmlToken::Kind::Open:
            dataAddresses += LengthOfDataAddress(*token);
            builder.Open(*token);
            break;
        case HtmlToken::Kind::Close:
            builder.Close(token->name);
            break;
        }
        if (builder.IsTooMuch() || tokens.Position() - dataAddresses > kLongestSource) {
            return std::nullopt;
        }
    }
    return builder.Finish();
}
