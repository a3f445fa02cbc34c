// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/XmlText.h"

#include <QXmlStreamReader>

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

// Where the markup that starts at @p at ends: behind @p end, or nowhere.
qsizetype Behind(const QByteArray& text, qsizetype at, const char* end)
{
    const qsizetype found = text.indexOf(end, at);
    return found < 0 ? text.size() : found + static_cast<qsizetype>(qstrlen(end));
}

struct TagContent
{
    int attributes = 0;
    int namespaces = 0;
};

// Goes over a start tag that begins at @p at and counts what it holds.
qsizetype BehindTag(const QByteArray& text, qsizetype at, TagContent& content)
{
    char quote = '\0';
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (quote != '\0') {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '=') {
            ++content.attributes;
        } else if (c == '>') {
            return at + 1;
        } else if (c == 'x' && QByteArrayView(text).sliced(at).startsWith("xmlns")) {
            // A name that merely holds the word counts too: no document comes near the limit.
            ++content.namespaces;
        }
    }
    return at;
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

bool HasModestMarkup(const QByteArray& utf8)
{
    constexpr int kMostNodes = 65'536;
    constexpr int kMostAttributes = 256;
    constexpr int kMostNamespaces = 256;
    // Of attributes with those of the same element and with the namespaces before them.
    constexpr int kMostComparisons = 1024 * kMostAttributes * kMostAttributes;
    int comparisons = 0;
    int nodes = 0;
    int namespaces = 0;
    for (qsizetype at = utf8.indexOf('<'); at >= 0; at = utf8.indexOf('<', at)) {
        const QByteArrayView rest = QByteArrayView(utf8).sliced(at);
        if (rest.startsWith("</")) {
            at = Behind(utf8, at, ">");
            continue;
        }
        if (++nodes > kMostNodes) {
            return false;
        }
        // The end is looked for behind the start: "<!-->" and "<?>" are no whole ones.
        if (rest.startsWith("<!--")) {
            at = Behind(utf8, at + 4, "-->");
        } else if (rest.startsWith("<![CDATA[")) {
            at = Behind(utf8, at + 9, "]]>");
        } else if (rest.startsWith("<?")) {
            at = Behind(utf8, at + 2, "?>");
        } else if (rest.startsWith("<!")) {
            const qsizetype end = Behind(utf8, at, ">");
            // A reader takes a second for a few thousand declarations, and none of them is wanted. Behind a
            // quote a ">" would end nothing, and what is quoted here is a declaration elsewhere.
            const QByteArray declaration = utf8.mid(at, end - at);
            if (declaration.contains('[') || declaration.contains('"') || declaration.contains('\'')) {
                return false;
            }
            at = end;
        } else {
            TagContent content;
            at = BehindTag(utf8, at + 1, content);
            namespaces += content.namespaces;
            if (content.attributes > kMostAttributes || namespaces > kMostNamespaces) {
                return false;
            }
            comparisons += content.attributes * (content.attributes + namespaces);
            if (comparisons > kMostComparisons) {
                return false;
            }
        }
    }
    return true;
}

bool IsWellFormedXml(const QByteArray& utf8, int deepest)
{
    // The reader compares each attribute of a tag with every other one and with every namespace. Nothing is
    // declared in modest markup, so that no entity or default attribute is met behind it.
    if (!HasModestMarkup(utf8)) {
        return false;
    }
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
    // The reader decides, so that no name can be given that makes a saved document unreadable.
    QXmlStreamReader reader(u'<' + name + QStringLiteral("/>"));
    return reader.readNextStartElement() && reader.name() == name && !reader.readNextStartElement() &&
           !reader.hasError();
}
