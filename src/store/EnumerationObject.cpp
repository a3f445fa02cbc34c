// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/EnumerationObject.h"

#include "support/RuntimeError.h"

EnumerationObject::EnumerationObject(const Platform& platform, const std::shared_ptr<DomDocument>& document,
                                     const QString& Path)
    : m_platform(platform)
    , xmldoc(document)
    , BasePath(Path)
    , ChildPath(Path)
{
}

DomNode EnumerationObject::Parent() const
{
    return xmldoc->SelectSingleNode(BasePath);
}

bool EnumerationObject::hasMoreElements() const
{
    try {
        return ChildIndex < Parent().ChildCount();
    } catch (const RuntimeError&) {
        return false;
    }
}

std::unique_ptr<SimpleXML> EnumerationObject::nextElement()
{
    try {
        const DomNode parent = Parent();
        if (parent.ChildCount() == ChildIndex) {
            return nullptr;
        }
        ChildPath = BasePath + QStringLiteral("//") + parent.Child(ChildIndex).NodeName();
        auto child = std::make_unique<SimpleXML>(m_platform);
        child->SetDocument(xmldoc, ChildPath);
        ++ChildIndex;
        return child;
    } catch (const RuntimeError&) {
        return nullptr;
    }
}
