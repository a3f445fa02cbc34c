// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "fakes/MemoryFiles.h"
#include "fuzz/FuzzTarget.h"
#include "service/InternetClass.h"
#include "support/Base64Class.h"
#include "support/CodePage.h"
#include "support/RuntimeError.h"

#include <algorithm>

namespace {

const QString kAmpersand = QStringLiteral("&");

/// The number of the error that @p act throws, 0 for no error.
template <typename Act>
int ErrorOf(Act act)
{
    try {
        act();
    } catch (const RuntimeError& error) {
        return error.Number();
    }
    return 0;
}

bool IsBlank(const QString& text)
{
    return text.count(u' ') == text.size();
}

void CheckCodePage(const QByteArray& bytes)
{
    const QString text = FromCodePage(bytes);
    Demand(text.size() == bytes.size(), "a byte is a character");
    Demand(ToCodePage(text) == bytes, "every byte goes there and back");
}

void CheckBase64OfBytes(const QByteArray& bytes)
{
    const Base64Class codec;
    if (bytes.isEmpty()) {
        Demand(ErrorOf([&] { static_cast<void>(codec.EncodeByteArray(bytes)); }) == ErrorNumber::kSubscript,
               "nothing can't be encoded");
        return;
    }
    const QString encoded = codec.EncodeByteArray(bytes);
    Demand(codec.DecodeToByteArray(encoded) == bytes, "what was encoded decodes to itself");
    Demand(codec.EncodeString(FromCodePage(bytes)) == encoded, "text is encoded as its bytes");
    Demand(QString(encoded).remove(QStringLiteral("\r\n")) == QString::fromLatin1(bytes.toBase64()),
           "the encoding is the common one");
    const QStringList lines = encoded.split(QStringLiteral("\r\n"));
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        Demand(lines[i].size() == 76, "a line has 76 characters");
    }
    Demand(!lines.last().isEmpty() && lines.last().size() <= 76, "the last line ends without a line end");
}

// A text from the network.
void CheckBase64OfText(const QString& text)
{
    const Base64Class codec;
    const qsizetype count = ToCodePage(text).replace("\r\n", "").replace("=", "").size();
    const qsizetype size = count / 4 * 3 + std::max<qsizetype>(count % 4 - 1, 0);
    QByteArray bytes;
    const int error = ErrorOf([&] { bytes = codec.DecodeToByteArray(text); });
    Demand(error == (size == 0 ? ErrorNumber::kSubscript : 0), "only nothing can't be decoded");
    Demand(bytes.size() == size, "four characters give three bytes");
    if (size > 0) {
        Demand(codec.DecodeToString(text) == FromCodePage(bytes), "bytes and text are decoded alike");
    }
}

void CheckUrlCodecs(const InternetClass& internet, const QString& text)
{
    const QString encoded = internet.URLEncodeEx(text);
    const QString decoded = internet.URLDecodeEx(text);
    if (IsBlank(text)) {
        Demand(encoded == text && decoded == text, "blanks stay");
        return;
    }
    Demand(internet.URLDecodeEx(encoded) == FromCodePage(ToCodePage(text)),
           "what was encoded for a URL decodes to itself");
    Demand(std::all_of(
               encoded.begin(), encoded.end(),
               [](QChar c) { return c == u'+' || c == u'%' || (c.unicode() < 128 && c.isLetterOrNumber()); }),
           "a URL takes what was encoded for it");
    Demand(decoded.size() <= text.size(), "decoding of a URL adds nothing");
}

void CheckHtmlCodecs(const InternetClass& internet, const QString& text)
{
    const QString encoded = internet.HTMLEncodeEx(text, false, kAmpersand);
    if (IsBlank(text)) {
        Demand(encoded == text && internet.HTMLDecodeEx(text, false, kAmpersand) == text, "blanks stay");
        return;
    }
    Demand(!encoded.contains(u'<') && !encoded.contains(u'>') && !encoded.contains(u'"') &&
               !encoded.contains(u' '),
           "encoded HTML holds no markup");
    // Prefix ';': otherwise text before the first introducer is decoded as an entity.
    const QString guarded = u';' + text;
    Demand(internet.HTMLDecodeEx(internet.HTMLEncodeEx(guarded, false, kAmpersand), false, kAmpersand) ==
               FromCodePage(ToCodePage(guarded)),
           "what was encoded for HTML decodes to itself");
    Demand(
        internet.HTMLEncodeEx(text, true, kAmpersand).replace(QStringLiteral("%20"), QStringLiteral(" ")) ==
            QString(encoded)
                .replace(QStringLiteral("&nbsp;"), QStringLiteral(" "))
                .replace(QStringLiteral("%20"), QStringLiteral(" ")),
        "for an address the blank alone is encoded otherwise");
}

// Any text and any introducer: an error of the number after "#", or a text.
void CheckHtmlDecode(const InternetClass& internet, const QString& text, const QString& introducer)
{
    QString decoded;
    const int error = ErrorOf([&] { decoded = internet.HTMLDecodeEx(text, false, introducer); });
    Demand(error == 0 || error == ErrorNumber::kInvalidCall || error == ErrorNumber::kOverflow ||
               error == ErrorNumber::kTypeMismatch,
           "only a number can be wrong");
    Demand(introducer.size() > 1 || decoded.size() <= text.size(), "decoding of HTML adds nothing");
    static_cast<void>(internet.HTMLEncodeEx(text, true, introducer));
}

void CheckText(const InternetClass& internet, const QString& text)
{
    Demand(ToCodePage(text).size() <= text.size(), "a character is one byte");
    CheckBase64OfText(text);
    CheckUrlCodecs(internet, text);
    CheckHtmlCodecs(internet, text);
    CheckHtmlDecode(internet, text, kAmpersand);
    CheckHtmlDecode(internet, text, text.left(text.size() % 4));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const FakePlatformOn<MemoryFiles> platform;
    const InternetClass internet(platform.interfaces, QString());
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    CheckCodePage(bytes);
    CheckBase64OfBytes(bytes);
    CheckText(internet, QString::fromUtf8(bytes));
    // Pairs of bytes form every UTF-16 code unit, unpaired surrogates included.
    QString wide(bytes.size() / 2, u'\0');
    std::copy_n(bytes.begin(), wide.size() * 2, reinterpret_cast<char*>(wide.data()));
    CheckText(internet, wide);
    return 0;
}
