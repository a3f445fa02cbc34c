// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Base64Class.h"

#include "support/CodePage.h"
#include "support/RuntimeError.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr qsizetype kLineLength = 76;

// Intended: an empty result is an error.
void RequireBytes(qsizetype count)
{
    if (count == 0) {
        throw RuntimeError(ErrorNumber::kSubscript, QStringLiteral("Subscript out of range"));
    }
}

} // namespace

Base64Class::Base64Class()
{
    std::copy(kAlphabet.begin(), kAlphabet.end(), m_encode.begin());
    for (std::size_t value = 0; value < m_encode.size(); ++value) {
        m_decode[static_cast<unsigned char>(m_encode[value])] = static_cast<unsigned char>(value);
    }
}

QString Base64Class::EncodeString(const QString& Text) const
{
    return EncodeByteArray(ToCodePage(Text));
}

QString Base64Class::EncodeByteArray(const QByteArray& Data) const
{
    RequireBytes(Data.size());
    QByteArray text;
    qsizetype inLine = 0;
    for (qsizetype i = 0; i < Data.size(); i += 3) {
        // Between lines, not after the last one.
        if (inLine == kLineLength) {
            text += "\r\n";
            inLine = 0;
        }
        const qsizetype count = std::min<qsizetype>(3, Data.size() - i);
        unsigned int group = 0;
        for (qsizetype k = 0; k < 3; ++k) {
            group = (group << 8U) | (k < count ? static_cast<unsigned char>(Data[i + k]) : 0U);
        }
        for (qsizetype k = 0; k < 4; ++k) {
            text += k <= count ? m_encode[(group >> (18U - 6U * static_cast<unsigned int>(k))) & 63U] : '=';
        }
        inLine += 4;
    }
    return QString::fromLatin1(text);
}

QString Base64Class::DecodeToString(const QString& EncodedText) const
{
    return FromCodePage(DecodeToByteArray(EncodedText));
}

QByteArray Base64Class::DecodeToByteArray(const QString& EncodedText) const
{
    QByteArray text = ToCodePage(EncodedText);
    text.replace("\r\n", "").replace("=", "");
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); i += 4) {
        const qsizetype count = std::min<qsizetype>(4, text.size() - i);
        unsigned int group = 0;
        for (qsizetype k = 0; k < 4; ++k) {
            group = (group << 6U) | (k < count ? m_decode[static_cast<unsigned char>(text[i + k])] : 0U);
        }
        for (qsizetype k = 0; k < count - 1; ++k) {
            bytes += static_cast<char>((group >> (16U - 8U * static_cast<unsigned int>(k))) & 255U);
        }
    }
    RequireBytes(bytes.size());
    return bytes;
}
