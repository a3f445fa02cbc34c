// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/XmlText.h"

#include "support/CodePage.h"

#include <QStringDecoder>

#include <expat.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using Parser = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

// The encoding that the XML declaration names; "UTF-8" without one. An invalid declaration need not be found:
// the document is refused later.
QByteArray DeclaredEncoding(const QByteArray& bytes)
{
    constexpr qsizetype kDeclarationWithin = 256;
    QByteArray encoding = "UTF-8";
    const Parser parser(XML_ParserCreate("ISO-8859-1"), &XML_ParserFree);
    XML_SetUserData(parser.get(), &encoding);
    XML_SetXmlDeclHandler(parser.get(), [](void* found, const char*, const char* name, int /*standalone*/) {
        if (name != nullptr) {
            *static_cast<QByteArray*>(found) = name;
        }
    });
    const auto length = static_cast<int>(std::min(bytes.size(), kDeclarationWithin));
    XML_Parse(parser.get(), bytes.constData(), length, XML_FALSE);
    return encoding;
}

std::optional<QString> Decoded(const QByteArray& bytes)
{
    const auto encoding = QStringConverter::encodingForData(bytes, u'<');
    const QByteArray name =
        encoding ? QByteArray(QStringConverter::nameForEncoding(*encoding)) : DeclaredEncoding(bytes);
    // Stateless: an incomplete character at the end is an error.
    QStringDecoder decoder(name.constData(), QStringConverter::Flag::Stateless);
    if (!decoder.isValid()) {
        // A Qt without ICU knows Unicode and ISO-8859-1 only.
        return FromEncodingExactly(bytes, name);
    }
    QString text = decoder(bytes);
    if (decoder.hasError() || !text.isValidUtf16()) {
        return std::nullopt;
    }
    return text;
}

/// One pass of libexpat over one document. Its time is linear in the length, for any number of attributes and
/// namespaces.
class XmlPass final
{
public:
    XmlPass()
    {
        XML_Parser const parser = m_parser.get();
        XML_SetUserData(parser, this);
        XML_SetXmlDeclHandler(parser, &XmlPass::OnDeclaration);
        XML_SetElementHandler(parser, &XmlPass::OnStart, &XmlPass::OnEnd);
        XML_SetCommentHandler(parser, [](void* self, const char* /*text*/) { Self(self).Count(); });
        XML_SetProcessingInstructionHandler(
            parser, [](void* self, const char* /*target*/, const char* /*text*/) { Self(self).Count(); });
        XML_SetStartCdataSectionHandler(parser, [](void* self) { Self(self).Count(); });
        XML_SetStartDoctypeDeclHandler(parser, &XmlPass::OnDocumentType);
    }

    [[nodiscard]] bool Accepts(const QByteArray& utf8)
    {
        return XML_Parse(m_parser.get(), utf8.constData(), static_cast<int>(utf8.size()), XML_TRUE) ==
               XML_STATUS_OK;
    }
    [[nodiscard]] const QByteArray& RootName() const { return m_rootName; }

private:
    static XmlPass& Self(void* self) { return *static_cast<XmlPass*>(self); }

    static void OnDeclaration(void* self, const char* version, const char* /*encoding*/, int /*standalone*/)
    {
        // XML 1.1 has other characters and line ends, which neither parser supports.
        Self(self).RefuseIf(QByteArrayView(version) != "1.0");
    }
    static void OnStart(void* self, const char* name, const char** /*attributes*/)
    {
        XmlPass& pass = Self(self);
        pass.Count();
        if (pass.m_children.size() == 1) {
            pass.m_rootName = name;
        }
        // The first entry is for the document.
        pass.RefuseIf(pass.m_children.size() > XmlLimits::kDepth ||
                      XML_GetCurrentByteCount(pass.m_parser.get()) > XmlLimits::kTagBytes);
        pass.m_children.push_back(0);
    }
    static void OnEnd(void* self, const char* /*name*/) { Self(self).m_children.pop_back(); }
    static void OnDocumentType(void* self, const char* /*name*/, const char* systemId, const char* publicId,
                               int hasDeclarations)
    {
        // Entities and default attributes can multiply the size of a document.
        Self(self).RefuseIf(hasDeclarations != 0 || systemId != nullptr || publicId != nullptr);
    }
    void Count() { RefuseIf(++m_nodes > XmlLimits::kNodes || ++m_children.back() > XmlLimits::kChildren); }
    void RefuseIf(bool isRefused)
    {
        if (isRefused) {
            XML_StopParser(m_parser.get(), XML_FALSE);
        }
    }

    Parser m_parser{XML_ParserCreateNS("UTF-8", '\0'), &XML_ParserFree};
    int m_nodes = 0;
    /// Of the document and of each open element.
    std::vector<int> m_children = {0};
    QByteArray m_rootName;
};

} // namespace

std::optional<QByteArray> CheckedXml(const QByteArray& bytes)
{
    const std::optional<QString> text = bytes.size() <= XmlLimits::kBytes ? Decoded(bytes) : std::nullopt;
    if (!text) {
        return std::nullopt;
    }
    QByteArray utf8 = text->toUtf8();
    return XmlPass().Accepts(utf8) ? std::optional(std::move(utf8)) : std::nullopt;
}

bool IsXmlName(const QString& name)
{
    // The parser decides, so that a saved document can be loaded again.
    const QByteArray utf8 = name.toUtf8();
    XmlPass pass;
    return pass.Accepts('<' + utf8 + "/>") && pass.RootName() == utf8;
}
