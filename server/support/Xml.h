// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace beacond {

/// Appends @p value as a quoted attribute or a text of XML or HTML holds it. Any bytes may come: those that
/// are not valid UTF-8 become U+FFFD, characters that XML does not allow are left out.
void AppendEscaped(std::string& text, std::string_view value);

/// Writes a reply: the element `root` with attributes and, below it, elements with attributes and nothing
/// between them. Values are escaped. Names are taken as they stand and must be names of XML; an element must
/// not get the same attribute twice.
class XmlReply final
{
public:
    /// Adds an attribute to the element begun last, which is the root until the first child.
    XmlReply& Attribute(std::string_view name, std::string_view value);

    /// Begins the next child, named by its number: c1, c2 and so on, since the readers need different names.
    XmlReply& Child();
    /// Begins the next child. The name must be unique among the children.
    XmlReply& Child(std::string_view name);

    /// The length of the document in bytes if it ended here.
    [[nodiscard]] std::size_t Size() const;

    /// Ends the document and hands it over. The writer is of no further use.
    [[nodiscard]] std::string Finish();

private:
    std::string m_text = "<root";
    std::size_t m_children = 0;
};

} // namespace beacond
