// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CodePage.h"

#include "support/RuntimeError.h"

#include <unicode/ucnv.h>

#include <memory>

namespace {

constexpr int kMostUnitsPerByte = 2;

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

void Check(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QString::fromLatin1(u_errorName(status)));
    }
}

QString Decode(const Converter& converter, const QByteArray& bytes, int mostUnitsPerByte, UErrorCode& status)
{
    QString text(mostUnitsPerByte * bytes.size(), u'\0');
    const std::int32_t length = ucnv_toUChars(converter.get(), reinterpret_cast<UChar*>(text.data()),
                                              static_cast<std::int32_t>(text.size()), bytes.constData(),
                                              static_cast<std::int32_t>(bytes.size()), &status);
    text.truncate(U_FAILURE(status) ? 0 : length);
    return text;
}

// Control characters are not tested: some encodings use them as shift codes.
bool IsAsciiCompatible(const Converter& converter)
{
    QByteArray ascii;
    for (char character = ' '; character <= '~'; ++character) {
        ascii += character;
    }
    UErrorCode status = U_ZERO_ERROR;
    const QString text = Decode(converter, ascii, kMostUnitsPerByte, status);
    ucnv_resetToUnicode(converter.get());
    return U_SUCCESS(status) && text == QString::fromLatin1(ascii);
}

Converter OpenCodePage()
{
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open("windows-1252", &status), &ucnv_close);
    Check(status);
    ucnv_setFallback(converter.get(), false);
    ucnv_setSubstChars(converter.get(), "?", 1, &status);
    Check(status);
    return converter;
}

} // namespace

QByteArray ToCodePage(const QString& text)
{
    const Converter converter = OpenCodePage();
    QByteArray bytes(text.size(), '\0');
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = ucnv_fromUChars(
        converter.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()),
        reinterpret_cast<const UChar*>(text.utf16()), static_cast<std::int32_t>(text.size()), &status);
    Check(status);
    bytes.truncate(length);
    return bytes;
}

QString FromCodePage(const QByteArray& bytes)
{
    UErrorCode status = U_ZERO_ERROR;
    QString text = Decode(OpenCodePage(), bytes, 1, status);
    Check(status);
    return text;
}

std::optional<QString> FromEncoding(const QByteArray& bytes, const QByteArray& name)
{
    UErrorCode status = U_ZERO_ERROR;
    const Converter converter(ucnv_open(name.constData(), &status), &ucnv_close);
    // ICU interprets the empty name as the encoding of the system.
    if (name.isEmpty() || U_FAILURE(status)) {
        return std::nullopt;
    }
    if (!IsAsciiCompatible(converter)) {
        return std::nullopt;
    }
    QString text = Decode(converter, bytes, kMostUnitsPerByte, status);
    return U_FAILURE(status) ? std::nullopt : std::optional(text);
}

std::optional<QString> FromEncodingExactly(const QByteArray& bytes, const QByteArray& name)
{
    UErrorCode status = U_ZERO_ERROR;
    const Converter converter(ucnv_open(name.constData(), &status), &ucnv_close);
    if (name.isEmpty() || U_FAILURE(status)) {
        return std::nullopt;
    }
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    QString text = Decode(converter, bytes, kMostUnitsPerByte, status);
    return U_FAILURE(status) ? std::nullopt : std::optional(text);
}

bool IsSameEncoding(const QByteArray& name, const QByteArray& other)
{
    UErrorCode status = U_ZERO_ERROR;
    // The first alias is the name of the encoding itself.
    const char* const own = ucnv_getAlias(name.constData(), 0, &status);
    const char* const othersOwn = ucnv_getAlias(other.constData(), 0, &status);
    return U_SUCCESS(status) && own != nullptr && othersOwn != nullptr && qstrcmp(own, othersOwn) == 0;
}
