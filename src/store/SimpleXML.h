// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Dom.h"

#include <memory>

class EnumerationObject;
struct Platform;

/// The root of settings.xml and of every reply of the service.
inline const QString kRootPath = QStringLiteral("//root");
/// Stands for the remembered path.
inline const QString kCurrentPath = QStringLiteral("current");

/// One XML document and one remembered path; the only way the program reads and writes XML.
///
/// A path is an XPath pattern such as "//root//alerts"; the first node in document order that matches is
/// meant. The exact word "current" as a path stands for the remembered path. Members return their failure
/// value (false, the empty text, 0, nullptr) if something is missing; only SetValue throws.
class SimpleXML final
{
public:
    /// Files and URLs are read through @p platform, which must outlive the object.
    explicit SimpleXML(const Platform& platform);

    /// The document, shared with the objects that an enumeration returns.
    std::shared_ptr<DomDocument> xmldoc;

    /// The name of the node at the remembered path, or of the root if that path is empty.
    [[nodiscard]] QString ElementName() const;
    /// "//" and the name of the root.
    [[nodiscard]] QString GetRootName() const;
    /// Returns false and changes nothing for a path of fewer than 2 characters; "current" counts with the
    /// length of the remembered path. Does not check whether the path matches a node.
    bool SetCurrentPath(const QString& Path);
    /// Starts over with an empty document; the remembered path stays.
    bool Reset();
    /// Reads a file or a URL; on success the root becomes the remembered path.
    bool Load(const QString& Path);
    bool Save(const QString& Path) const;
    /// The node at the remembered path as XML.
    [[nodiscard]] QString XML() const;
    [[nodiscard]] bool hasChildren(const QString& Path) const;
    /// A count above 32767 is a failure.
    [[nodiscard]] std::int16_t ChildCount(const QString& Path) const;
    /// Appends an element; if @p Path is empty or matches nothing, the element replaces the root.
    bool AddElementByName(const QString& Name, const QString& Path);
    /// Moves the node at the remembered path of @p newXML under the node at @p Path.
    bool AddSimpleXML(SimpleXML& newXML, const QString& Path);
    /// False, and nothing written, if no element is at @p Path.
    bool AddAttributeByName(const QString& AttribName, const QString& attribValue, const QString& Path);
    /// Throws kObjectNotSet if no node is at @p Path.
    bool SetValue(const QString& newValue, const QString& Path);
    /// True also when the attribute was not there.
    bool RemoveAttrib(const QString& AttribName, const QString& Path);
    /// With @p ignoreChild false a node that has children stays, and the answer is false.
    bool RemoveElement(bool ignoreChild, const QString& Path);
    /// Walks the children of the node at @p Path.
    [[nodiscard]] std::unique_ptr<EnumerationObject> getEnumeration(const QString& Path) const;
    /// Empty for a missing element and a missing attribute alike.
    [[nodiscard]] QString GetAttribute(const QString& AttribName, const QString& Path) const;
    /// Empty for an element, which has no value of its own.
    [[nodiscard]] QString GetValue(const QString& Path) const;
    [[nodiscard]] QString GetNodeText(const QString& Path) const;
    /// A new document whose root is a deep copy of the node; its remembered path is empty.
    [[nodiscard]] std::unique_ptr<SimpleXML> GetElement(const QString& Path) const;
    [[nodiscard]] const QString& GetCurrPath() const { return CurrPath; }

private:
    friend class EnumerationObject;
    /// Shares the document of another object.
    void SetDocument(const std::shared_ptr<DomDocument>& document, const QString& Path);
    [[nodiscard]] DomNode NodeAt(const QString& Path) const;
    [[nodiscard]] const QString& Resolved(const QString& Path) const;
    void AppendNode(DomNode node, const QString& Path) const;

    const Platform* m_platform = nullptr;
    QString CurrPath;
};
