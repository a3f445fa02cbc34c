// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Dom.h"

#include "platform/FileStore.h"
#include "platform/Http.h"
#include "store/XmlText.h"
#include "support/RuntimeError.h"

#include <pugixml.hpp>

#include <sstream>

namespace {

bool IsUrl(const QString& path)
{
    return path.startsWith(u"http://", Qt::CaseInsensitive) ||
           path.startsWith(u"https://", Qt::CaseInsensitive);
}

} // namespace

DomDocument::DomDocument(FileStore& files, Http& http)
    : m_files(files)
    , m_http(http)
    , m_document(std::make_unique<pugi::xml_document>())
{
}

DomDocument::~DomDocument() = default;

bool DomDocument::Load(const QString& path)
{
    m_document->reset();
    const std::optional<QByteArray> bytes =
        IsUrl(path) ? m_http.Fetch(path, HttpLimits{}) : m_files.Read(path, XmlLimits::kBytes);
    // pugixml alone accepts two roots, undeclared entities and invalid UTF-8, and leaves half a tree after an
    // error.
    const std::optional<QByteArray> utf8 = bytes ? CheckedXml(*bytes) : std::nullopt;
    if (!utf8) {
        return false;
    }
    const auto length = static_cast<std::size_t>(utf8->size());
    constexpr unsigned int kOptions = pugi::parse_default | pugi::parse_comments | pugi::parse_pi;
    if (!m_document->load_buffer(utf8->constData(), length, kOptions, pugi::encoding_utf8)) {
        m_document->reset();
        return false;
    }
    return true;
}

bool DomDocument::Save(const QString& path) const
{
    std::ostringstream stream;
    m_document->save(stream, "  ", pugi::format_indent, pugi::encoding_utf8);
    const QByteArray bytes = QByteArray::fromStdString(stream.str());
    // A control character in a value, or too long a value, would make a file that can't be loaded again.
    return CheckedXml(bytes) && m_files.Replace(path, bytes);
}

DomNode DomDocument::DocumentElement() const
{
    return DomNode(m_document->document_element().internal_object());
}

DomNode DomDocument::SetDocumentElement(const QString& name)
{
    if (!IsXmlName(name)) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("Invalid XML name"));
    }
    m_document->remove_child(m_document->document_element());
    return DomNode(m_document->append_child(name.toUtf8().constData()).internal_object());
}

void DomDocument::SetDocumentElement(DomNode node)
{
    const pugi::xml_node source(node.Node());
    if (source.type() != pugi::node_element) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("Only an element can be a root"));
    }
    const pugi::xml_node copy = m_document->append_copy(source);
    m_document->remove_child(m_document->document_element() == copy ? pugi::xml_node()
                                                                    : m_document->document_element());
}

DomNode DomDocument::SelectSingleNode(const QString& pattern) const
{
    try {
        const pugi::xpath_node found = m_document->select_node(pattern.toUtf8().constData());
        if (found.attribute()) {
            throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("An attribute is no element"));
        }
        return DomNode(found.node().internal_object());
    } catch (const pugi::xpath_exception& error) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QString::fromUtf8(error.what()));
    }
}
