// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/HtmlTokens.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

// Texts longer than this come in pieces, so that a page that is too long is given up early.
constexpr qsizetype kLongestPiece = 4096;
constexpr std::size_t kMostAttributes = 32;
constexpr int kMostStepsInTag = 4096;

bool IsNameCharacter(QChar character)
{
    return character.unicode() < 128 &&
           (character.isLetterOrNumber() || character == u'-' || character == u':');
}

bool HasHiddenContent(const QString& name)
{
    constexpr std::array kNames{u"script", u"style",    u"title",  u"iframe", u"object",
                                u"applet", u"noframes", u"select", u"svg",    u"template"};
    return std::any_of(kNames.begin(), kNames.end(),
                       [&](const char16_t* hidden) { return name == QStringView(hidden); });
}

// Controls, and what the text layout uses as marks of its own, are no text.
bool IsShowable(char32_t code)
{
    const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
    const bool isSeparator = code == 0x2028 || code == 0x2029 || code == 0xFFFC;
    const bool isNoCharacter = (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFE) == 0xFFFE;
    return !isControl && !isSeparator && !isNoCharacter && code <= 0x10FFFF &&
           !(code >= 0xD800 && code <= 0xDFFF);
}

QString Escaped(QChar character)
{
    switch (character.unicode()) {
    case u'<':
        return QStringLiteral("&lt;");
    case u'>':
        return QStringLiteral("&gt;");
    case u'"':
        return QStringLiteral("&quot;");
    default:
        return IsShowable(character.unicode()) || character.isSurrogate() ? QString(character)
                                                                          : QStringLiteral(" ");
    }
}

bool IsDigit(QChar character, bool isHexadecimal)
{
    const char16_t lower = character.toLower().unicode();
    return (lower >= u'0' && lower <= u'9') || (isHexadecimal && lower >= u'a' && lower <= u'f');
}

// The number that stands for a character, as in "&#38;" and "&#x26;". Without its ";" it ends behind its
// digits, and without a digit it is none. Source: HTML standard, 13.2.5.75 to 13.2.5.80.
class NumberedEntity final
{
public:
    /// @param at where its "&" stands in @p text
    NumberedEntity(const QString& text, qsizetype at)
    {
        const QStringView mark = QStringView(text).mid(at, 3);
        if (!mark.startsWith(u"&#")) {
            return;
        }
        const bool isHexadecimal = mark.size() > 2 && mark[2].toLower() == u'x';
        const qsizetype start = at + (isHexadecimal ? 3 : 2);
        qsizetype end = start;
        while (end < text.size() && IsDigit(text[end], isHexadecimal)) {
            ++end;
        }
        if (end == start) {
            return;
        }
        bool ok = false;
        const uint code = QStringView(text).mid(start, end - start).toUInt(&ok, isHexadecimal ? 16 : 10);
        m_code = ok && IsShowable(code) ? code : u' ';
        m_end = end + (end < text.size() && text[end] == u';' ? 1 : 0);
    }
    [[nodiscard]] bool IsOne() const { return m_end > 0; }
    /// A blank for what is no text.
    [[nodiscard]] char32_t Code() const { return m_code; }
    [[nodiscard]] qsizetype End() const { return m_end; }

private:
    char32_t m_code = u' ';
    qsizetype m_end = 0;
};

/// One of the names that stand for the marks themselves, in an attribute: an address needs no other.
class NamedEntity final
{
public:
    /// @param rest from the "&" on
    explicit NamedEntity(QStringView rest)
    {
        constexpr std::pair<const char16_t*, QChar> kNames[] = {
            {u"&amp;", u'&'}, {u"&lt;", u'<'}, {u"&gt;", u'>'}, {u"&quot;", u'"'}, {u"&apos;", u'\''},
            {u"&amp", u'&'},  {u"&lt", u'<'},  {u"&gt", u'>'},  {u"&quot", u'"'}};
        const auto* const found = std::find_if(std::begin(kNames), std::end(kNames), [&](const auto& known) {
            return rest.startsWith(QStringView(known.first)) && Ends(rest, QStringView(known.first));
        });
        if (found != std::end(kNames)) {
            m_character = found->second;
            m_length = QStringView(found->first).size();
        }
    }
    [[nodiscard]] bool IsOne() const { return m_length > 0; }
    [[nodiscard]] QChar Character() const { return m_character; }
    [[nodiscard]] qsizetype Length() const { return m_length; }

private:
    // Without its ";" a name counts as well, unless it may be the beginning of a parameter's.
    // Source: HTML standard, 13.2.5.73.
    static bool Ends(QStringView rest, QStringView name)
    {
        const QChar next = rest.size() > name.size() ? rest[name.size()] : QChar(u' ');
        return name.endsWith(u';') || (next != u'=' && (next.unicode() > 127 || !next.isLetterOrNumber()));
    }

    QChar m_character;
    qsizetype m_length = 0;
};

// What an attribute says.
QString WithoutEntities(const QString& value)
{
    QString text;
    qsizetype at = 0;
    for (qsizetype mark = value.indexOf(u'&'); mark >= 0; mark = value.indexOf(u'&', at)) {
        text += QStringView(value).mid(at, mark - at);
        const NumberedEntity number(value, mark);
        const NamedEntity name(QStringView(value).mid(mark));
        if (number.IsOne()) {
            text += QString::fromUcs4(std::array{number.Code()}.data(), 1);
            at = number.End();
        } else if (name.IsOne()) {
            text += name.Character();
            at = mark + name.Length();
        } else {
            text += u'&';
            at = mark + 1;
        }
    }
    text += QStringView(value).mid(at);
    return text;
}

} // namespace

QString EscapedHtml(const QString& value)
{
    QString escaped;
    for (const QChar character : value) {
        escaped += character == u'&' ? QStringLiteral("&amp;") : Escaped(character);
    }
    return escaped;
}

std::optional<HtmlToken> HtmlTokens::Next()
{
    while (m_at < m_page.size()) {
        const QStringView rest = QStringView(m_page).mid(m_at, 4);
        if (rest == u"<!--") {
            m_at += 4;
            SkipPast(QStringLiteral("-->"));
        } else if (rest.startsWith(u"<!") || rest.startsWith(u"<?")) {
            SkipPast(QStringLiteral(">"));
        } else {
            return StartsTag() ? Tag() : Text();
        }
    }
    return std::nullopt;
}

bool HtmlTokens::StartsTag() const
{
    const QStringView rest = QStringView(m_page).mid(m_at, 3);
    const qsizetype name = rest.startsWith(u"</") ? 2 : 1;
    return rest.startsWith(u'<') && rest.size() > name && rest[name].unicode() < 128 && rest[name].isLetter();
}

HtmlToken HtmlTokens::Text()
{
    HtmlToken token;
    do {
        const QChar character = m_page[m_at];
        if (character == u'&') {
            token.text += Entity();
        } else {
            token.text += Escaped(character);
            ++m_at;
        }
    } while (m_at < m_page.size() && m_page[m_at] != u'<' && token.text.size() < kLongestPiece);
    return token;
}

// Only a number can stand for what is no text; names stay as they are.
QString HtmlTokens::Entity()
{
    const NumberedEntity number(m_page, m_at);
    if (!number.IsOne()) {
        ++m_at;
        // The layout would take more for a number than browsers do.
        const bool looksLikeNumber = m_at < m_page.size() && m_page[m_at] == u'#';
        return looksLikeNumber ? QStringLiteral("&amp;") : QStringLiteral("&");
    }
    m_at = number.End();
    // "&" and "<" must not come out as markup, and a blank that holds is no blank.
    return number.Code() == u' ' ? QStringLiteral(" ") : QStringLiteral("&#%1;").arg(number.Code());
}

HtmlToken HtmlTokens::Tag()
{
    HtmlToken token;
    ++m_at;
    const bool isClosing = m_page[m_at] == u'/';
    m_at += isClosing ? 1 : 0;
    token.kind = isClosing ? HtmlToken::Kind::Close : HtmlToken::Kind::Open;
    token.name = Name();
    for (int steps = 0; m_at < m_page.size() && m_page[m_at] != u'>'; ++steps) {
        // No tag of an honest page comes near this; nothing behind such a one is looked at.
        if (steps > kMostStepsInTag) {
            m_at = m_page.size();
            break;
        }
        const QString name = Name();
        if (name.isEmpty()) {
            ++m_at;
            continue;
        }
        SkipBlanks();
        QString value;
        if (m_at < m_page.size() && m_page[m_at] == u'=') {
            ++m_at;
            value = Value();
        }
        // Of two attributes of one name the first counts.
        const bool isKnown = std::any_of(token.attributes.begin(), token.attributes.end(),
                                         [&](const auto& known) { return known.first == name; });
        if (!isClosing && !isKnown && token.attributes.size() < kMostAttributes) {
            token.attributes.emplace_back(name, value);
        }
    }
    ++m_at;
    if (!isClosing && HasHiddenContent(token.name)) {
        SkipPast(QStringLiteral("</") + token.name);
        SkipPast(QStringLiteral(">"));
    }
    return token;
}

QString HtmlTokens::Name()
{
    const qsizetype start = m_at;
    while (m_at < m_page.size() && IsNameCharacter(m_page[m_at])) {
        ++m_at;
    }
    return m_page.mid(start, m_at - start).toLower();
}

QString HtmlTokens::Value()
{
    SkipBlanks();
    if (m_at >= m_page.size()) {
        return {};
    }
    const QChar quote = m_page[m_at];
    const qsizetype start = quote == u'"' || quote == u'\'' ? m_at + 1 : m_at;
    qsizetype end = start;
    if (start > m_at) {
        end = m_page.indexOf(quote, start);
        end = end < 0 ? m_page.size() : end;
        m_at = std::min(end + 1, m_page.size());
    } else {
        while (end < m_page.size() && !m_page[end].isSpace() && m_page[end] != u'>') {
            ++end;
        }
        m_at = end;
    }
    return WithoutEntities(m_page.mid(start, end - start)).trimmed();
}

void HtmlTokens::SkipBlanks()
{
    while (m_at < m_page.size() && m_page[m_at].isSpace()) {
        ++m_at;
    }
}

void HtmlTokens::SkipPast(const QString& end)
{
    const qsizetype found = m_page.indexOf(end, m_at, Qt::CaseInsensitive);
    m_at = found < 0 ? m_page.size() : found + end.size();
}
