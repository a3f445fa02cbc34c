// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The single-byte code page of the program's byte-oriented codecs: windows-1252, on every system, so that
// what one computer encodes another decodes. Its five bytes without a character (81, 8D, 8F, 90, 9D) stand
// for the C1 control of their value, so that all 256 bytes go there and back.

/// One byte a character; "?" for what has no place in the code page.
[[nodiscard]] QByteArray ToCodePage(const QString& text);
[[nodiscard]] QString FromCodePage(const QByteArray& bytes);

/// The text of @p bytes in the encoding of that name, with U+FFFD for what is none in it; nothing if there is
/// no such encoding, or if a character of ASCII is not its own byte in it.
[[nodiscard]] std::optional<QString> FromEncoding(const QByteArray& bytes, const QByteArray& name);

/// Whether both names are names of one encoding; false for two that are not known.
[[nodiscard]] bool IsSameEncoding(const QByteArray& name, const QByteArray& other);
