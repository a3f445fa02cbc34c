// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Dom.h"

#include "fakes/ErrorOf.h"
#include "fakes/FakePlatform.h"
#include "fakes/Memory.h"
#include "fakes/Pipe.h"
#include "store/XmlText.h"

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <functional>

namespace {

const QString kDocumentFile = QStringLiteral("document.xml");
constexpr qint64 kMostTimesTheFile = 12;

void WriteFile(const QByteArray& bytes)
{
    QFile file(kDocumentFile);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray FileContent()
{
    QFile file(kDocumentFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray Nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

// "Billion laughs": nine levels of ten each.
QByteArray Laughs()
{
    QByteArray text = "<!DOCTYPE a [<!ENTITY l0 \"lol\">";
    for (int i = 1; i <= 9; ++i) {
        const QByteArray inner = "&l" + QByteArray::number(i - 1) + ";";
        text += "<!ENTITY l" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
    }
    return text + "]><a>&l9;</a>";
}

QByteArray ManyDefaultAttributes()
{
    QByteArray text = "<!DOCTYPE a [<!ATTLIST a";
    for (int i = 0; i < 50'000; ++i) {
        text += " n" + QByteArray::number(i) + " CDATA \"\"";
    }
    return text + ">]><a/>";
}

// Nested tags with as many attributes as the limit allows, around as many elements as it allows.
QByteArray FullTags(const QByteArray& attribute, const QByteArray& child)
{
    constexpr int kTags = 120;
    QByteArray tag = "<a";
    for (int i = 0; tag.size() < XmlLimits::kTagBytes - 30; ++i) {
        tag += attribute + QByteArray::number(i) + "='u'";
    }
    return (tag + ">").repeated(kTags) + child.repeated(5999) + QByteArray("</a>").repeated(kTags);
}

class DomTest : public testing::Test
{
protected:
    /// Loads the bytes, or leaves nothing of them, in a limited time and memory.
    void ExpectLoad(const QByteArray& bytes, bool loads)
    {
        SCOPED_TRACE(bytes.left(80).toStdString());
        WriteFile(bytes);
        document = std::make_shared<DomDocument>(platform.files, platform.http);
        document->SetDocumentElement(QStringLiteral("before"));
        QElapsedTimer watch;
        watch.start();
        const qint64 before = Memory::ForgetPeak();
        EXPECT_EQ(document->Load(kDocumentFile), loads);
        const qint64 eaten = Memory::Peak() - before;
        if (Memory::kIsTrue) {
            EXPECT_LT(eaten, kMostTimesTheFile * bytes.size() + 4 * 1024 * 1024);
        }
        EXPECT_LT(watch.elapsed(), 5'000) << "a document must never hang the program";
        EXPECT_EQ(static_cast<bool>(document->DocumentElement()), loads)
            << "half a tree is as bad as an unreported failure";
        EXPECT_TRUE(platform.http.requests.isEmpty()) << "a document must not fetch anything";
    }
    DomNode Loaded(const QByteArray& bytes)
    {
        WriteFile(bytes);
        EXPECT_TRUE(document->Load(kDocumentFile));
        return document->DocumentElement();
    }

    FakePlatform platform;
    std::shared_ptr<DomDocument> document = std::make_shared<DomDocument>(platform.files, platform.http);
};

TEST_F(DomTest, load_document_loadsOrLeavesNothing)
{
    for (const char* const whole : {"<a/>", "<?xml version=\"1.0\"?><a/>", "<!DOCTYPE a><a/>"}) {
        ExpectLoad(whole, true);
    }
    for (const char* const refused : {"",
                                      " \n\t ",
                                      "<?xml version=\"1.0\"?>",
                                      "<!-- a -->",
                                      "settings",
                                      "<a><b x=\"1",
                                      "<a><b/>",
                                      "<a><b></a>",
                                      "<a/><b/>",
                                      "<a/>x",
                                      "x<a/>",
                                      "<a b='1' b='2'/>",
                                      "<a b=1/>",
                                      "<p:a/>",
                                      "<a>&nbsp;</a>",
                                      "<a b='&nbsp;'/>",
                                      "<!DOCTYPE a SYSTEM \"http://127.0.0.1:9/a.dtd\"><a/>",
                                      "<!DOCTYPE a SYSTEM \"a.dtd\"><a>&e;</a>",
                                      "<!DOCTYPE a SYSTEM \"a.dtd\"><a b='&e;'/>",
                                      "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
                                      "<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><a>&e;</a>",
                                      "<?xml version='1.1'?><a/>",
                                      "<a b='\x01'/>",
                                      "<a b='&#1;'/>",
                                      "<a b='&#xD800;'/>",
                                      "<a b\x01='1'/>"}) {
        ExpectLoad(refused, false);
    }
    ExpectLoad(QByteArray("<a>x\0y</a>", 10), false);
    ExpectLoad(QByteArray("<a/>\0", 5), false);
}

TEST_F(DomTest, load_largeDocument_upToTheLimitsOnly)
{
    const QByteArray eightMebibytes(8 * 1024 * 1024 - 7, 'x');
    ExpectLoad("<a>" + eightMebibytes + "</a>", true);
    ExpectLoad("<a>" + eightMebibytes + "x</a>", false);
    ExpectLoad(Nested(256), true);
    ExpectLoad(Nested(257), false);
    ExpectLoad(Nested(1'000'000), false);
    ExpectLoad(FullTags(" n", "<b/>"), true);
    ExpectLoad(FullTags(" xmlns:n", "<n0:b/>"), true);
    ExpectLoad("<a b='" + QByteArray(8'000'000, 'x') + "'/>", false);
    ExpectLoad("<a" + QByteArray(" a=''").repeated(1'600'000) + "/>", false);
    for (const char* const piece : {"<b/>", "<?a?>", "<!---->"}) {
        ExpectLoad("<a>" + QByteArray(piece).repeated(1'100'000) + "</a>", false);
    }
}

TEST_F(DomTest, load_declarationsThatGrow_areRefused)
{
    ExpectLoad(Laughs(), false);
    ExpectLoad(ManyDefaultAttributes(), false);
    ExpectLoad("<!DOCTYPE a [<!ENTITY e \"" + QByteArray(100'000, 'x') + "\">]><a>" +
                   QByteArray("&e;").repeated(100'000) + "</a>",
               false);
}

TEST_F(DomTest, load_declaredEncoding_readsItsText)
{
    const DomNode root = Loaded("<?xml version='1.0' encoding='windows-1252'?><a b='\x80'/>");
    EXPECT_EQ(root.Attribute(QStringLiteral("b")), QStringLiteral("\u20AC"));
}

TEST_F(DomTest, load_missingFolderOrPipe_isFalse)
{
    ASSERT_TRUE(MakePipe(QStringLiteral("pipe.xml")));
    EXPECT_FALSE(document->Load(QStringLiteral("pipe.xml"))) << "and doesn't wait for a writer";
    EXPECT_FALSE(document->Load(QStringLiteral("missing.xml")));
    EXPECT_FALSE(document->Load(platform.folder.path()));
    EXPECT_FALSE(document->Load(QString()));
}

TEST_F(DomTest, load_url_goesThroughHttp_inAnyCaseOfTheScheme)
{
    platform.http.replies[QStringLiteral("127.0.0.1")] = "<root x='1'/>";
    EXPECT_TRUE(document->Load(QStringLiteral("HTTP://127.0.0.1/a")));
    EXPECT_EQ(document->DocumentElement().Attribute(QStringLiteral("x")), QStringLiteral("1"));
    EXPECT_FALSE(document->Load(QStringLiteral("https://localhost/b")));
    EXPECT_EQ(platform.http.requests,
              (QStringList{QStringLiteral("HTTP://127.0.0.1/a"), QStringLiteral("https://localhost/b")}));
    EXPECT_EQ(platform.http.limits, (HttpLimits{8'388'608, 10, 30'000, 5'000}));
}

TEST_F(DomTest, nodes_haveTheirNamesAndCounts)
{
    const DomNode root = Loaded("<r>\n  <!--note--><?go on?><a/>\n text <b>x<![CDATA[y]]></b></r>");
    ASSERT_EQ(root.ChildCount(), 5) << "text of white space alone is no child";
    EXPECT_EQ(root.Child(0).NodeName(), QStringLiteral("#comment"));
    EXPECT_EQ(root.Child(0).NodeValue(), QStringLiteral("note"));
    EXPECT_EQ(root.Child(0).Text(), QStringLiteral("note"));
    EXPECT_EQ(root.Child(1).NodeName(), QStringLiteral("go"));
    EXPECT_EQ(root.Child(2).NodeName(), QStringLiteral("a"));
    EXPECT_EQ(root.Child(2).NodeValue(), std::nullopt);
    EXPECT_EQ(root.Child(3).NodeName(), QStringLiteral("#text"));
    EXPECT_EQ(root.Child(4).Child(1).NodeName(), QStringLiteral("#cdata-section"));
    EXPECT_EQ(root.Child(4).Text(), QStringLiteral("xy"));
    EXPECT_FALSE(root.Child(5));
    EXPECT_FALSE(root.Text().contains(QStringLiteral("note")));
}

TEST_F(DomTest, emptyHandle_everyMemberThrows)
{
    const DomNode none;
    EXPECT_FALSE(none);
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(none.NodeName()); }), ErrorNumber::kObjectNotSet);
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(none.ChildCount()); }), ErrorNumber::kObjectNotSet);
    EXPECT_EQ(ErrorOf([&] { none.SetText(QStringLiteral("x")); }), ErrorNumber::kObjectNotSet);
}

TEST_F(DomTest, textNode_holdsNeitherAttributesNorChildren)
{
    const DomNode text = Loaded("<r>text</r>").Child(0);
    EXPECT_EQ(ErrorOf([&] { text.SetAttribute(QStringLiteral("a"), QString()); }), ErrorNumber::kInvalidCall);
    EXPECT_EQ(ErrorOf([&] { text.RemoveAttribute(QStringLiteral("a")); }), ErrorNumber::kInvalidCall);
    EXPECT_EQ(ErrorOf([&] { text.AppendElement(QStringLiteral("a")); }), ErrorNumber::kInvalidCall);
    EXPECT_EQ(ErrorOf([&] { text.AppendChild(document->DocumentElement()); }), ErrorNumber::kInvalidCall);
    text.SetText(QStringLiteral("other"));
    EXPECT_EQ(document->DocumentElement().Xml(), QStringLiteral("<r>other</r>"));
}

TEST_F(DomTest, documentNode_takesNoSecondRoot)
{
    Loaded("<r/>");
    const DomNode all = document->SelectSingleNode(QStringLiteral("/"));
    EXPECT_EQ(all.NodeName(), QStringLiteral("#document"));
    EXPECT_EQ(ErrorOf([&] { all.AppendElement(QStringLiteral("a")); }), ErrorNumber::kInvalidCall);
    EXPECT_EQ(ErrorOf([&] { all.SetText(QStringLiteral("a")); }), ErrorNumber::kInvalidCall);
}

TEST_F(DomTest, removeChild_childOfAnother_isRefused)
{
    const DomNode root = Loaded("<r><a><b/></a></r>");
    EXPECT_EQ(ErrorOf([&] { root.RemoveChild(root.Child(0).Child(0)); }), ErrorNumber::kInvalidCall);
    EXPECT_EQ(root.Xml(), QStringLiteral("<r><a><b/></a></r>"));
}

TEST_F(DomTest, patterns_firstInDocumentOrder_orNothing_orAnError)
{
    Loaded("<root><x><alerts n='1'/></x><alerts n='2'/></root>");
    EXPECT_EQ(document->SelectSingleNode(QStringLiteral("//root//alerts")).Attribute(QStringLiteral("n")),
              QStringLiteral("1"));
    EXPECT_TRUE(document->SelectSingleNode(QStringLiteral("root")));
    EXPECT_FALSE(document->SelectSingleNode(QStringLiteral("//Root")));
    for (const QString& refused :
         {QString(), QStringLiteral("//root//"), QStringLiteral("//root//New York"), QStringLiteral("//a["),
          QStringLiteral("1+1"), QStringLiteral("//root//#comment"), QStringLiteral("//alerts/@n")}) {
        EXPECT_EQ(ErrorOf([&] { static_cast<void>(document->SelectSingleNode(refused)); }),
                  ErrorNumber::kInvalidCall)
            << refused.toStdString();
    }
}

TEST_F(DomTest, save_loadedDocument_loadsTheSame)
{
    const QByteArray text = "<?xml version=\"1.0\"?>\n"
                            "<!--before-->\n"
                            "<root z=\"1\" a=\"2\" m=\"&lt;&amp;&quot;&#09;&#10;'\">\n"
                            "  <!--inside-->\n"
                            "  <?go on?>\n"
                            "  <caf\xC3\xA9 b=\"\xD9\x85\" />\n"
                            "  <mixed>one<b />two &amp; three</mixed>\n"
                            "</root>\n";
    Loaded(text);
    ASSERT_TRUE(document->Save(kDocumentFile));
    EXPECT_EQ(FileContent().toStdString(), text.toStdString());
    ASSERT_TRUE(document->Load(kDocumentFile));
    ASSERT_TRUE(document->Save(kDocumentFile));
    EXPECT_EQ(FileContent().toStdString(), text.toStdString());
}

TEST_F(DomTest, save_documentThatCouldNotBeLoaded_isFalse_fileAsBefore)
{
    const struct
    {
        const char* name;
        std::function<void()> spoil;
    } rows[] = {
        {"control character in an attribute",
         [&] { document->DocumentElement().SetAttribute(QStringLiteral("a"), QString(QChar(1))); }},
        {"control character in a text", [&] { document->DocumentElement().SetText(QString(QChar(2))); }},
        {"no character at all", [&] { document->DocumentElement().SetText(QString(QChar(0xFFFE))); }},
        {"too deep",
         [&] {
             DomNode node = document->DocumentElement();
             for (int i = 0; i < 256; ++i) {
                 node = node.AppendElement(QStringLiteral("a"));
             }
         }},
        {"too many children",
         [&] {
             for (int i = 0; i <= 6000; ++i) {
                 document->DocumentElement().AppendElement(QStringLiteral("a"));
             }
         }},
        // A quotation mark takes six bytes in a file.
        {"too long a tag",
         [&] { document->DocumentElement().SetAttribute(QStringLiteral("a"), QString(11'000, u'"')); }},
        {"too large", [&] { document->DocumentElement().SetText(QString(3'000'000, u'&')); }},
        {"empty document", [&] { document = std::make_shared<DomDocument>(platform.files, platform.http); }},
    };
    for (const auto& row : rows) {
        Loaded("<r/>");
        row.spoil();
        EXPECT_FALSE(document->Save(kDocumentFile)) << row.name;
        EXPECT_EQ(FileContent(), "<r/>") << row.name;
    }
}

TEST_F(DomTest, save_loneHalfOfACharacter_isReplaced_andLoads)
{
    Loaded("<r/>").SetAttribute(QStringLiteral("a"), QString(QChar(0xD83D)));
    EXPECT_TRUE(document->Save(kDocumentFile));
    EXPECT_TRUE(document->Load(kDocumentFile));
}

TEST_F(DomTest, save_toAUrl_isFalse)
{
    Loaded("<r/>");
    EXPECT_FALSE(document->Save(QStringLiteral("http://127.0.0.1/r.xml")));
}

} // namespace
