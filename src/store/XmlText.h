// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// A document beyond these limits is neither loaded nor saved: ordinary settings files and replies are far
/// below them, and within them every search is quick.
struct XmlLimits
{
    static constexpr qsizetype kBytes = 8LL * 1024 * 1024;
    static constexpr int kDepth = 256;
    /// Of a start tag with its attributes, in UTF-8.
    static constexpr int kTagBytes = 64 * 1024;
    /// Elements, comments, instructions and CDATA sections directly in one element, or around the root.
    static constexpr int kChildren = 6000;
    /// The same in the whole document.
    static constexpr int kNodes = 65'536;
};

/// The document in UTF-8, without a byte order mark, from the encoding that its mark or its declaration names
/// (UTF-8 if neither does). Nothing if the encoding is unknown, the bytes are not valid in it, the document
/// is not well-formed XML 1.0 with namespaces, its document type declares something or refers to another
/// file, or it exceeds XmlLimits.
[[nodiscard]] std::optional<QByteArray> CheckedXml(const QByteArray& bytes);

/// True for a name without a prefix that an element or attribute can have: XML 1.0, fourth edition.
[[nodiscard]] bool IsXmlName(const QString& name);
