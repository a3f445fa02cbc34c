// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace pugi {
class xml_document;
struct xml_node_struct;
} // namespace pugi

class FileStore;
class Http;

/// A handle to a node of a DomDocument: a copy refers to the same node, and it is valid as long as the
/// document. Every member but operator bool throws kObjectNotSet on the empty handle.
class DomNode
{
public:
    DomNode() = default;
    explicit DomNode(pugi::xml_node_struct* node)
        : m_node(node)
    {
    }
    explicit operator bool() const { return m_node != nullptr; }

    /// The name without a prefix; "#text" and "#comment" for nodes without a name.
    [[nodiscard]] QString BaseName() const;
    [[nodiscard]] QString NodeName() const;
    /// The value of a text or a comment; nothing for an element.
    [[nodiscard]] std::optional<QString> NodeValue() const;
    /// The text of the node and of all below it.
    [[nodiscard]] QString Text() const;
    /// Replaces all children by one text.
    void SetText(const QString& text) const;
    /// The node written as XML, without line breaks of our own.
    [[nodiscard]] QString Xml() const;

    /// Texts and comments count as children.
    [[nodiscard]] bool HasChildNodes() const;
    [[nodiscard]] int ChildCount() const;
    /// The empty handle if there is no such child.
    [[nodiscard]] DomNode Child(int index) const;
    [[nodiscard]] DomNode ParentNode() const;

    /// Throws kObjectNotSet if there is no such attribute.
    [[nodiscard]] QString Attribute(const QString& name) const;
    /// Replaces the attribute in its place or adds it after the others; throws kInvalidCall if @p name is no
    /// XML name.
    void SetAttribute(const QString& name, const QString& value) const;
    void RemoveAttribute(const QString& name) const;

    /// Throws kInvalidCall if @p name is not an XML name.
    DomNode AppendElement(const QString& name) const;
    /// Moves @p node, which may belong to another document, after the last child; its old handles are
    /// invalid then.
    DomNode AppendChild(DomNode node) const;
    void RemoveChild(DomNode child) const;

private:
    friend class DomDocument;
    [[nodiscard]] pugi::xml_node_struct* Node() const;

    pugi::xml_node_struct* m_node = nullptr;
};

/// The document object model of one XML document.
class DomDocument final
{
public:
    DomDocument(FileStore& files, Http& http);
    ~DomDocument();
    DomDocument(const DomDocument&) = delete;
    DomDocument& operator=(const DomDocument&) = delete;

    /// Replaces the content by the document at a file name or an http or https URL; events are processed
    /// while a URL loads. False, and an empty document, if it can't be read, is not well-formed or exceeds
    /// XmlLimits.
    bool Load(const QString& path);
    /// Writes UTF-8, indented. False if Load would refuse the document or the file can't be written.
    [[nodiscard]] bool Save(const QString& path) const;

    /// The empty handle while the document is empty.
    [[nodiscard]] DomNode DocumentElement() const;
    /// Makes a new element the root; the old root is removed with its children.
    DomNode SetDocumentElement(const QString& name);
    /// Makes a deep copy of @p node the root.
    void SetDocumentElement(DomNode node);
    /// The first node in document order that matches the XPath pattern, or the empty handle.
    /// Throws kInvalidCall for an invalid pattern and for one that finds an attribute, which a handle can't
    /// refer to.
    [[nodiscard]] DomNode SelectSingleNode(const QString& pattern) const;

private:
    FileStore& m_files;
    Http& m_http;
    std::unique_ptr<pugi::xml_document> m_document;
};
