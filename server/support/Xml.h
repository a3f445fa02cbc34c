// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace beacond {

/// Appends @p value, escaped for a quoted attribute or a text of XML or HTML. Accepts any bytes: invalid
/// UTF-8 becomes U+FFFD, and characters that XML does not allow are omitted.
void AppendEscaped(std::string& text, std::string_view value);

/// Writes a reply: the element `root` with attributes and, in it, empty elements with attributes. Values are
/// escaped. Names are written unchanged and must be valid XML names; an element must not get the same
/// attribute twice.
class XmlReply final
{
public:
    /// Adds an attribute to the element begun last, which is the root until the first child.
    XmlReply& Attribute(std::string_view name, std::string_view value);

    /// Begins the next child, named by its number: c1, c2 and so on. The program finds children by name, so
    /// that the names must differ.
    XmlReply& Child();
    /// Begins the next child. The name must be unique among the children.
    XmlReply& Child(std::string_view name);

    /// The length in bytes of the document if it ended now.
    [[nodiscard]] std::size_t Size() const;

    /// Ends the document and returns it. The writer can't be used afterwards.
    [[nodiscard]] std::string Finish();

private:
    std::string m_text = "<root";
    std::size_t m_children = 0;
};

} // namespace beacond
