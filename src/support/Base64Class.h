// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <array>

/// The Base64 encoding of RFC 2045, in lines of 76 characters. Decoding validates nothing: a byte outside the
/// alphabet counts as 0, so that a space or a lone line feed shifts the bytes after it. Each operation throws
/// kSubscript if the result would be empty.
class Base64Class final
{
public:
    Base64Class();

    /// Encodes the bytes of the text in the single-byte code page (see CodePage.h).
    [[nodiscard]] QString EncodeString(const QString& Text) const;
    [[nodiscard]] QString EncodeByteArray(const QByteArray& Data) const;
    /// The bytes as text of the single-byte code page.
    [[nodiscard]] QString DecodeToString(const QString& EncodedText) const;
    [[nodiscard]] QByteArray DecodeToByteArray(const QString& EncodedText) const;

private:
    std::array<char, 64> m_encode{};
    std::array<unsigned char, 256> m_decode{};
};
