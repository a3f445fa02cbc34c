// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The document in UTF-8, without a byte order mark, from the encoding that its mark or its declaration names
/// (UTF-8 if neither does). Nothing if the encoding is unknown or the bytes are not valid in it.
[[nodiscard]] std::optional<QByteArray> DecodeXml(const QByteArray& bytes);

/// True for exactly one well-formed document in UTF-8 whose elements nest no deeper than @p deepest.
[[nodiscard]] bool IsWellFormedXml(const QByteArray& utf8, int deepest);

/// True for a name that an element or attribute can have.
[[nodiscard]] bool IsXmlName(const QString& name);
