// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XmlText.h"

#include <QXmlStreamReader>

#include <unicode/uchar.h>
#include <unicode/ucnv.h>

#include <memory>

namespace {

// The encoding that <?xml … encoding="…"?> names; empty if the text has no such declaration.
QByteArray DeclaredEncoding(const QByteArray& bytes)
{
    const QByteArray head = bytes.left(256);
    if (!head.startsWith("<?xml")) {
        return {};
    }
    const QByteArray declaration = head.left(head.indexOf("?>"));
    const qsizetype key = declaration.indexOf("encoding");
    if (key < 0) {
        return {};
    }
    qsizetype quote = key + 8;
    while (quote < declaration.size() && declaration[quote] != '"' && declaration[quote] != '\'') {
        ++quote;
    }
    const qsizetype end =
        quote < declaration.size() ? declaration.indexOf(declaration[quote], quote + 1) : -1;
    return end < 0 ? QByteArray() : declaration.mid(quote + 1, end - quote - 1);
}

struct Encoding
{
    QByteArray name;
    qsizetype markLength = 0;
};

Encoding DetectEncoding(const QByteArray& bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        return {"UTF-8", 3};
    }
    if (bytes.startsWith("\xFF\xFE")) {
        return {"UTF-16LE", 2};
    }
    if (bytes.startsWith("\xFE\xFF")) {
        return {"UTF-16BE", 2};
    }
    // Without a mark a UTF-16 document still starts with "<" in two bytes.
    if (bytes.size() >= 2 && bytes[0] == '<' && bytes[1] == '\0') {
        return {"UTF-16LE", 0};
    }
    if (bytes.size() >= 2 && bytes[0] == '\0' && bytes[1] == '<') {
        return {"UTF-16BE", 0};
    }
    const QByteArray declared = DeclaredEncoding(bytes);
    return {declared.isEmpty() ? QByteArray("UTF-8") : declared, 0};
}

struct ConverterCloser
{
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

bool IsNameStart(char32_t c)
{
    return c == U'_' || u_isalpha(static_cast<UChar32>(c)) != 0 ||
           u_charType(static_cast<UChar32>(c)) == U_LETTER_NUMBER;
}

bool IsNameCharacter(char32_t c)
{
    return IsNameStart(c) || c == U'-' || c == U'.' || c == U'\u00B7' ||
           u_isdigit(static_cast<UChar32>(c)) != 0 ||
           (U_GET_GC_MASK(static_cast<UChar32>(c)) & (U_GC_MN_MASK | U_GC_MC_MASK | U_GC_ME_MASK)) != 0;
}

} // namespace

std::optional<QByteArray> DecodeXml(const QByteArray& bytes)
{
    const Encoding encoding = DetectEncoding(bytes);
    const QByteArray body = bytes.mid(encoding.markLength);
    if (body.isEmpty()) {
        return std::nullopt;
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, ConverterCloser> converter(
        ucnv_open(encoding.name.constData(), &status));
    if (U_FAILURE(status) != 0) {
        return std::nullopt;
    }
    // An eight-bit declaration inside a text that is not in eight bits is a lie that nobody can read.
    if (ucnv_getMinCharSize(converter.get()) > 1 && encoding.markLength == 0 && body.startsWith("<?xml")) {
        return std::nullopt;
    }
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    QString text(body.size() + 1, Qt::Uninitialized);
    const int32_t length = ucnv_toUChars(converter.get(), reinterpret_cast<UChar*>(text.data()),
                                         static_cast<int32_t>(text.size()), body.constData(),
                                         static_cast<int32_t>(body.size()), &status);
    if (U_FAILURE(status) != 0) {
        return std::nullopt;
    }
    text.truncate(length);
    return text.toUtf8();
}

bool IsWellFormedXml(const QByteArray& utf8, int deepest)
{
    // Given text, the reader leaves the encoding declaration alone; it has been obeyed already.
    QXmlStreamReader reader(QString::fromUtf8(utf8));
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth > deepest) {
                return false;
            }
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return !reader.hasError();
}

bool IsXmlName(const QString& name)
{
    const QList<uint> points = name.toUcs4();
    if (points.isEmpty() || !IsNameStart(points.front())) {
        return false;
    }
    for (const uint point : points) {
        if (!IsNameCharacter(point)) {
            return false;
        }
    }
    return true;
}
