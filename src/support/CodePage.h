// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The single-byte code page of the program's codecs: windows-1252 on every system, so that one computer
// decodes the bytes of another. Its five bytes without a character (81, 8D, 8F, 90, 9D) are the C1 controls
// of the same value, so that all 256 bytes survive a round trip.

/// One byte for each character; "?" for a character that is not in the code page.
[[nodiscard]] QByteArray ToCodePage(const QString& text);
[[nodiscard]] QString FromCodePage(const QByteArray& bytes);

/// Decodes @p bytes from the encoding of that name, with U+FFFD for invalid bytes; nothing if the encoding is
/// unknown or not compatible with ASCII.
[[nodiscard]] std::optional<QString> FromEncoding(const QByteArray& bytes, const QByteArray& name);

/// The same for any encoding; nothing too if a byte is invalid or the last character incomplete.
[[nodiscard]] std::optional<QString> FromEncodingExactly(const QByteArray& bytes, const QByteArray& name);

/// Whether both names are aliases of one encoding; false if one is unknown.
[[nodiscard]] bool IsSameEncoding(const QByteArray& name, const QByteArray& other);
