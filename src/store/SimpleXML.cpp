// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SimpleXML.h"

#include "platform/Platform.h"
#include "store/EnumerationObject.h"
#include "support/RuntimeError.h"

#include <limits>

namespace {

// The one failure path of the members: a RuntimeError becomes the failure value of the member.
template <typename Result, typename Step>
Result ResultOr(Result failure, Step step)
{
    try {
        return step();
    } catch (const RuntimeError&) {
        return failure;
    }
}

std::shared_ptr<DomDocument> EmptyDocument(const Platform& platform)
{
    return std::make_shared<DomDocument>(platform.files, platform.http);
}

} // namespace

SimpleXML::SimpleXML(const Platform& platform)
    : xmldoc(EmptyDocument(platform))
    , m_platform(&platform)
{
}

void SimpleXML::SetDocument(const std::shared_ptr<DomDocument>& document, const QString& Path)
{
    xmldoc = document;
    CurrPath = Path;
}

const QString& SimpleXML::Resolved(const QString& Path) const
{
    return Path == kCurrentPath ? CurrPath : Path;
}

DomNode SimpleXML::NodeAt(const QString& Path) const
{
    return xmldoc->SelectSingleNode(Resolved(Path));
}

void SimpleXML::AppendNode(DomNode node, const QString& Path) const
{
    const DomNode parent = NodeAt(Path);
    parent.AppendChild(node);
}

QString SimpleXML::ElementName() const
{
    return ResultOr(QString(), [this] {
        return (CurrPath.isEmpty() ? xmldoc->DocumentElement() : xmldoc->SelectSingleNode(CurrPath))
            .BaseName();
    });
}

QString SimpleXML::GetRootName() const
{
    return ResultOr(QString(),
                    [this] { return QStringLiteral("//") + xmldoc->DocumentElement().BaseName(); });
}

bool SimpleXML::SetCurrentPath(const QString& Path)
{
    const QString path = Resolved(Path);
    if (path.size() < 2) {
        return false;
    }
    CurrPath = path;
    return true;
}

bool SimpleXML::Reset()
{
    xmldoc = EmptyDocument(*m_platform);
    return true;
}

bool SimpleXML::Load(const QString& Path)
{
    return ResultOr(false, [&] {
        // Events are processed while a URL loads, and a handler may drop this object's document.
        const std::shared_ptr<DomDocument> document = xmldoc;
        if (!document->Load(Path)) {
            return false;
        }
        CurrPath = GetRootName();
        return true;
    });
}

bool SimpleXML::Save(const QString& Path) const
{
    return ResultOr(false, [&] { return xmldoc->Save(Path); });
}

QString SimpleXML::XML() const
{
    return ResultOr(QString(), [this] { return xmldoc->SelectSingleNode(CurrPath).Xml(); });
}

bool SimpleXML::hasChildren(const QString& Path) const
{
    return ResultOr(false, [&] { return NodeAt(Path).HasChildNodes(); });
}

std::int16_t SimpleXML::ChildCount(const QString& Path) const
{
    return ResultOr(std::int16_t{0}, [&] {
        const int count = NodeAt(Path).ChildCount();
        return count > std::numeric_limits<std::int16_t>::max() ? std::int16_t{0}
                                                                : static_cast<std::int16_t>(count);
    });
}

bool SimpleXML::AddElementByName(const QString& Name, const QString& Path)
{
    return ResultOr(false, [&] {
        const QString path = Resolved(Path);
        // A pattern that matches nothing makes a new root; an invalid one does not.
        const DomNode found =
            ResultOr(xmldoc->DocumentElement(), [&] { return xmldoc->SelectSingleNode(path); });
        if (!found || path.isEmpty()) {
            xmldoc->SetDocumentElement(Name);
            return true;
        }
        NodeAt(path).AppendElement(Name);
        return true;
    });
}

bool SimpleXML::AddSimpleXML(SimpleXML& newXML, const QString& Path)
{
    return ResultOr(false, [&] {
        const DomNode node = newXML.xmldoc->SelectSingleNode(newXML.GetCurrPath());
        AppendNode(node, Path);
        return true;
    });
}

bool SimpleXML::AddAttributeByName(const QString& AttribName, const QString& attribValue, const QString& Path)
{
    return ResultOr(false, [&] {
        NodeAt(Path).SetAttribute(AttribName, attribValue);
        return true;
    });
}

bool SimpleXML::SetValue(const QString& newValue, const QString& Path)
{
    NodeAt(Path).SetText(newValue);
    return true;
}

bool SimpleXML::RemoveAttrib(const QString& AttribName, const QString& Path)
{
    return ResultOr(false, [&] {
        NodeAt(Path).RemoveAttribute(AttribName);
        return true;
    });
}

bool SimpleXML::RemoveElement(bool ignoreChild, const QString& Path)
{
    return ResultOr(false, [&] {
        const DomNode node = NodeAt(Path);
        if (!ignoreChild && node.HasChildNodes()) {
            return false;
        }
        node.ParentNode().RemoveChild(node);
        return true;
    });
}

std::unique_ptr<EnumerationObject> SimpleXML::getEnumeration(const QString& Path) const
{
    return std::make_unique<EnumerationObject>(*m_platform, xmldoc, Resolved(Path));
}

QString SimpleXML::GetAttribute(const QString& AttribName, const QString& Path) const
{
    return ResultOr(QString(), [&] { return NodeAt(Path).Attribute(AttribName); });
}

QString SimpleXML::GetValue(const QString& Path) const
{
    return ResultOr(QString(), [&] { return NodeAt(Path).NodeValue().value_or(QString()); });
}

QString SimpleXML::GetNodeText(const QString& Path) const
{
    return ResultOr(QString(), [&] { return NodeAt(Path).Text(); });
}

std::unique_ptr<SimpleXML> SimpleXML::GetElement(const QString& Path) const
{
    return ResultOr<std::unique_ptr<SimpleXML>>(nullptr, [&] {
        auto element = std::make_unique<SimpleXML>(*m_platform);
        element->xmldoc->SetDocumentElement(NodeAt(Path));
        return element;
    });
}
