// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/InternetClass.h"

#include "platform/Http.h"
#include "platform/Platform.h"
#include "support/CodePage.h"
#include "support/Conversions.h"
#include "support/RuntimeError.h"

#include <algorithm>

namespace {

bool IsOnlySpaces(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character == u' '; });
}

bool IsLetterOrDigit(unsigned char byte)
{
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

// The value of the leading hexadecimal digits; 0 if there are none.
char LeadingHexadecimal(const QByteArray& digits)
{
    int value = 0;
    for (const char digit : digits) {
        bool isDigit = false;
        const int next = QByteArray(1, digit).toInt(&isDigit, 16);
        if (!isDigit) {
            break;
        }
        value = value * 16 + next;
    }
    return static_cast<char>(value);
}

QByteArray HtmlEncoded(unsigned char byte, bool isHref, const QByteArray& introducer)
{
    switch (byte) {
    case ' ':
        return isHref ? QByteArray("%20") : introducer + "nbsp;";
    case '"':
        return introducer + "quot;";
    case '&':
        return introducer + "amp;";
    case '<':
        return introducer + "lt;";
    case '>':
        return introducer + "gt;";
    default:
        break;
    }
    if (byte < 32 || byte > 127) {
        return introducer + '#' + QByteArray::number(byte) + ';';
    }
    return QByteArray(1, static_cast<char>(byte));
}

QString CharacterOfByte(const QString& number)
{
    const std::int16_t value = ToInteger16(number, QLocale::c());
    if (value < 0 || value > 255) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("Invalid procedure call or argument"));
    }
    return FromCodePage(QByteArray(1, static_cast<char>(value)));
}

QString DecodedPiece(const QString& piece, const QString& introducer)
{
    const qsizetype end = piece.indexOf(u';') + 1;
    if (end == 0) {
        return piece;
    }
    const QString head = piece.left(end);
    const QString rest = piece.mid(end);
    const struct
    {
        QLatin1String entity;
        QString character;
    } entities[] = {{QLatin1String("nbsp;"), QStringLiteral(" ")},
                    {QLatin1String("quot;"), QStringLiteral("\"")},
                    {QLatin1String("amp;"), introducer},
                    {QLatin1String("lt;"), QStringLiteral("<")},
                    {QLatin1String("gt;"), QStringLiteral(">")}};
    for (const auto& [entity, character] : entities) {
        if (head == entity) {
            return character + rest;
        }
    }
    if (head.startsWith(u'#')) {
        return CharacterOfByte(head.mid(1, head.size() - 2)) + rest;
    }
    return piece;
}

} // namespace

bool InternetClass::VerifyConnectivity() const
{
    return m_platform.http.Reach(m_probe);
}

QString InternetClass::URLDecodeEx(const QString& Text) const
{
    if (IsOnlySpaces(Text)) {
        return Text;
    }
    const QByteArray bytes = ToCodePage(Text);
    QByteArray decoded;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '+') {
            decoded += ' ';
        } else if (bytes[i] != '%') {
            decoded += bytes[i];
        } else if (i + 2 < bytes.size()) {
            decoded += LeadingHexadecimal(bytes.mid(i + 1, 2));
            i += 2;
        }
        // Intended: a "%" with fewer than two bytes after it is dropped, and the bytes are kept.
    }
    return FromCodePage(decoded);
}

QString InternetClass::URLEncodeEx(const QString& Text) const
{
    if (IsOnlySpaces(Text)) {
        return Text;
    }
    QByteArray encoded;
    for (const char byte : ToCodePage(Text)) {
        if (byte == ' ') {
            encoded += '+';
        } else if (IsLetterOrDigit(static_cast<unsigned char>(byte))) {
            encoded += byte;
        } else {
            encoded += '%' + QByteArray(1, byte).toHex().toUpper();
        }
    }
    return QString::fromLatin1(encoded);
}

QString InternetClass::HTMLDecodeEx(const QString& Text, bool /*vfHREFDecode*/,
                                    const QString& vstrAmpChar) const
{
    if (IsOnlySpaces(Text)) {
        return Text;
    }
    const QString text = FromCodePage(ToCodePage(Text));
    const QStringList pieces = vstrAmpChar.isEmpty()
                                   ? QStringList(text)
                                   : text.split(vstrAmpChar, Qt::KeepEmptyParts, Qt::CaseInsensitive);
    QString decoded;
    // Intended: the text before the first introducer is decoded as an entity too.
    for (const QString& piece : pieces) {
        decoded += DecodedPiece(piece, vstrAmpChar);
    }
    return decoded;
}

QString InternetClass::HTMLEncodeEx(const QString& Text, bool vfHREFEncode, const QString& vstrAmpChar) const
{
    if (IsOnlySpaces(Text)) {
        return Text;
    }
    const QByteArray introducer = ToCodePage(vstrAmpChar);
    QByteArray encoded;
    for (const char byte : ToCodePage(Text)) {
        encoded += HtmlEncoded(static_cast<unsigned char>(byte), vfHREFEncode, introducer);
    }
    return FromCodePage(encoded);
}
