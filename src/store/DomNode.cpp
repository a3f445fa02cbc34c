// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Dom.h"
#include "store/XmlText.h"
#include "support/RuntimeError.h"

#include <pugixml.hpp>

#include <iterator>
#include <sstream>

namespace {

void CollectText(pugi::xml_node node, QString& text)
{
    if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
        text += QString::fromUtf8(node.value());
    }
    for (const pugi::xml_node child : node.children()) {
        CollectText(child, text);
    }
}

// Texts and comments have neither attributes nor children, and a document has only one element.
void RequireElement(pugi::xml_node node)
{
    if (node.type() != pugi::node_element) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("Only an element can hold that"));
    }
}

bool IsDocumentWithoutRoot(pugi::xml_node node)
{
    return node.type() == pugi::node_document &&
           !node.find_child([](pugi::xml_node child) { return child.type() == pugi::node_element; });
}

void RequireName(const QString& name)
{
    if (!IsXmlName(name)) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("Invalid XML name"));
    }
}

} // namespace

pugi::xml_node_struct* DomNode::Node() const
{
    if (m_node == nullptr) {
        throw RuntimeError(ErrorNumber::kObjectNotSet, QStringLiteral("Object variable not set"));
    }
    return m_node;
}

QString DomNode::NodeName() const
{
    const pugi::xml_node node(Node());
    switch (node.type()) {
    case pugi::node_pcdata:
        return QStringLiteral("#text");
    case pugi::node_cdata:
        return QStringLiteral("#cdata-section");
    case pugi::node_comment:
        return QStringLiteral("#comment");
    case pugi::node_document:
        return QStringLiteral("#document");
    default:
        return QString::fromUtf8(node.name());
    }
}

QString DomNode::BaseName() const
{
    return NodeName().section(u':', -1);
}

std::optional<QString> DomNode::NodeValue() const
{
    const pugi::xml_node node(Node());
    if (node.type() == pugi::node_element || node.type() == pugi::node_document) {
        return std::nullopt;
    }
    return QString::fromUtf8(node.value());
}

QString DomNode::Text() const
{
    const pugi::xml_node node(Node());
    if (node.type() == pugi::node_comment || node.type() == pugi::node_pi) {
        return QString::fromUtf8(node.value());
    }
    QString text;
    CollectText(node, text);
    return text;
}

void DomNode::SetText(const QString& text) const
{
    pugi::xml_node node(Node());
    if (node.type() != pugi::node_element && node.type() != pugi::node_document) {
        node.set_value(text.toUtf8().constData());
        return;
    }
    RequireElement(node);
    node.remove_children();
    if (!text.isEmpty()) {
        node.append_child(pugi::node_pcdata).set_value(text.toUtf8().constData());
    }
}

QString DomNode::Xml() const
{
    std::ostringstream stream;
    pugi::xml_node(Node()).print(stream, "", pugi::format_raw, pugi::encoding_utf8);
    return QString::fromStdString(stream.str());
}

bool DomNode::HasChildNodes() const
{
    return !pugi::xml_node(Node()).first_child().empty();
}

int DomNode::ChildCount() const
{
    const auto children = pugi::xml_node(Node()).children();
    return static_cast<int>(std::distance(children.begin(), children.end()));
}

DomNode DomNode::Child(int index) const
{
    pugi::xml_node child = pugi::xml_node(Node()).first_child();
    for (int i = 0; i < index && child; ++i) {
        child = child.next_sibling();
    }
    return DomNode(child.internal_object());
}

DomNode DomNode::ParentNode() const
{
    return DomNode(pugi::xml_node(Node()).parent().internal_object());
}

QString DomNode::Attribute(const QString& name) const
{
    const pugi::xml_attribute attribute = pugi::xml_node(Node()).attribute(name.toUtf8().constData());
    if (!attribute) {
        throw RuntimeError(ErrorNumber::kObjectNotSet, QStringLiteral("No such attribute"));
    }
    return QString::fromUtf8(attribute.value());
}

void DomNode::SetAttribute(const QString& name, const QString& value) const
{
    pugi::xml_node node(Node());
    RequireElement(node);
    RequireName(name);
    const QByteArray utf8Name = name.toUtf8();
    pugi::xml_attribute attribute = node.attribute(utf8Name.constData());
    if (!attribute) {
        attribute = node.append_attribute(utf8Name.constData());
    }
    attribute.set_value(value.toUtf8().constData());
}

void DomNode::RemoveAttribute(const QString& name) const
{
    pugi::xml_node node(Node());
    RequireElement(node);
    node.remove_attribute(name.toUtf8().constData());
}

DomNode DomNode::AppendElement(const QString& name) const
{
    pugi::xml_node node(Node());
    if (!IsDocumentWithoutRoot(node)) {
        RequireElement(node);
    }
    RequireName(name);
    return DomNode(node.append_child(name.toUtf8().constData()).internal_object());
}

DomNode DomNode::AppendChild(DomNode node) const
{
    pugi::xml_node parent(Node());
    pugi::xml_node child(node.Node());
    RequireElement(parent);
    if (parent.root() == child.root()) {
        const pugi::xml_node moved = parent.append_move(child);
        if (!moved) {
            throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("The node can't stand there"));
        }
        return DomNode(moved.internal_object());
    }
    const pugi::xml_node copy = parent.append_copy(child);
    if (!copy) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("The node can't stand there"));
    }
    child.parent().remove_child(child);
    return DomNode(copy.internal_object());
}

void DomNode::RemoveChild(DomNode child) const
{
    if (!pugi::xml_node(Node()).remove_child(pugi::xml_node(child.Node()))) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("Not a child of this node"));
    }
}
