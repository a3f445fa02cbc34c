// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The document in UTF-8, without a byte order mark, from the encoding that its mark or its declaration names
/// (UTF-8 if neither does). Nothing if the encoding is unknown or the bytes are not valid in it.
[[nodiscard]] std::optional<QByteArray> DecodeXml(const QByteArray& bytes);

/// True for markup of a size that every reader gets through in good time: up to 65,536 pieces in all
/// (elements, comments, instructions, CDATA sections), up to 256 attributes in an element (in 1,024
/// elements as full as that, in more that are less full, in fewer behind namespaces), up to 256 namespaces
/// named in the whole text, and no document type with declarations inside or elsewhere. Whether the text is
/// well-formed is another question.
[[nodiscard]] bool HasModestMarkup(const QByteArray& utf8);

/// True for exactly one well-formed document in UTF-8 of modest markup whose elements nest no deeper than
/// @p deepest, and whose type, if it names one, is declared nowhere.
[[nodiscard]] bool IsWellFormedXml(const QByteArray& utf8, int deepest);

/// True for a name without a prefix that an element or attribute can have: XML 1.0, fourth edition, which
/// is what the readers take.
[[nodiscard]] bool IsXmlName(const QString& name);
