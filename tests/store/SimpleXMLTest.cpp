// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SimpleXML.h"

#include "fakes/ErrorOf.h"
#include "fakes/FakePlatform.h"
#include "store/EnumerationObject.h"
#include "store/Texts.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

const QString kFile = QStringLiteral("document.xml");
const QString kCurrent = QStringLiteral("current");
const QString kRoot = QStringLiteral("//root");

class SimpleXMLTest : public testing::Test
{
protected:
    static void WriteFile(const QByteArray& text)
    {
        QFile file(kFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    void Load(const QByteArray& text)
    {
        WriteFile(text);
        ASSERT_TRUE(xml.Load(kFile));
    }
    // The whole document as XML.
    [[nodiscard]] QString Whole() const
    {
        const DomNode root = xml.xmldoc->DocumentElement();
        return root ? root.Xml() : QString();
    }

    FakePlatform platform;
    SimpleXML xml{platform.interfaces};
};

TEST_F(SimpleXMLTest, creation_isAnEmptyDocument)
{
    EXPECT_EQ(xml.GetCurrPath(), QString());
    EXPECT_EQ(xml.ElementName(), QString());
    EXPECT_EQ(xml.GetRootName(), QString());
    EXPECT_EQ(xml.XML(), QString());
    EXPECT_FALSE(xml.Save(kFile));
    EXPECT_FALSE(QFile::exists(kFile));
}

TEST_F(SimpleXMLTest, load_file_rootBecomesThePath)
{
    Load("<root><a/></root>");
    EXPECT_EQ(xml.GetCurrPath(), kRoot);
    EXPECT_EQ(xml.GetRootName(), kRoot);
    EXPECT_EQ(xml.ElementName(), Q("root"));
    EXPECT_EQ(xml.XML(), Q("<root><a/></root>"));
}

TEST_F(SimpleXMLTest, load_failure_leavesThePath_andGettersReturnNothing)
{
    Load("<root a='1'/>");
    xml.SetCurrentPath(Q("//root//kept"));
    WriteFile("<root><a></root>");
    EXPECT_FALSE(xml.Load(kFile));
    EXPECT_EQ(xml.GetCurrPath(), Q("//root//kept"));
    EXPECT_EQ(xml.GetAttribute(Q("a"), kRoot), QString());
    EXPECT_FALSE(xml.Load(Q("missing.xml")));
}

TEST_F(SimpleXMLTest, load_url_usesTheHttpOfThePlatform)
{
    platform.http.replies[Q("getThing.pl")] = "<root result='1'/>";
    EXPECT_TRUE(xml.Load(Q("http://127.0.0.1/getThing.pl?a=b c")));
    EXPECT_EQ(platform.http.requests, QStringList{Q("http://127.0.0.1/getThing.pl?a=b c")});
    EXPECT_EQ(xml.GetAttribute(Q("result"), kRoot), Q("1"));
    EXPECT_FALSE(xml.Load(Q("http://127.0.0.1/other")));
    platform.http.replies[Q("broken")] = "<root>";
    EXPECT_FALSE(xml.Load(Q("http://127.0.0.1/broken")));
}

TEST_F(SimpleXMLTest, load_documentDroppedWhileTheUrlLoads_isSafe)
{
    platform.http.replies[Q("slow")] = "<root/>";
    platform.http.whileWaiting = [this] { xml.Reset(); };
    static_cast<void>(xml.Load(Q("http://127.0.0.1/slow")));
    EXPECT_EQ(xml.ElementName(), QString());
}

TEST_F(SimpleXMLTest, save_writesWhatWasChanged)
{
    Load("<root a='1'/>");
    xml.AddAttributeByName(Q("a"), Q("2"), kRoot);
    EXPECT_TRUE(xml.Save(kFile));
    SimpleXML other(platform.interfaces);
    ASSERT_TRUE(other.Load(kFile));
    EXPECT_EQ(other.GetAttribute(Q("a"), kRoot), Q("2"));
    EXPECT_FALSE(xml.Save(Q("no/such/folder.xml")));
}

TEST_F(SimpleXMLTest, setCurrentPath_fewerThanTwoCharacters_changesNothing)
{
    EXPECT_TRUE(xml.SetCurrentPath(Q("//")));
    EXPECT_EQ(xml.GetCurrPath(), Q("//"));
    EXPECT_FALSE(xml.SetCurrentPath(Q("/")));
    EXPECT_FALSE(xml.SetCurrentPath(QString()));
    EXPECT_EQ(xml.GetCurrPath(), Q("//"));
    EXPECT_TRUE(xml.SetCurrentPath(Q("//leads//nowhere")));
    EXPECT_EQ(xml.GetCurrPath(), Q("//leads//nowhere"));
}

TEST_F(SimpleXMLTest, setCurrentPath_current_keepsThePath)
{
    EXPECT_FALSE(xml.SetCurrentPath(kCurrent)) << "an empty path is a short one";
    EXPECT_EQ(xml.GetCurrPath(), QString());
    xml.SetCurrentPath(kRoot);
    EXPECT_TRUE(xml.SetCurrentPath(kCurrent));
    EXPECT_EQ(xml.GetCurrPath(), kRoot);
}

TEST_F(SimpleXMLTest, reset_keepsThePath_andEmptiesTheDocument)
{
    Load("<root/>");
    EXPECT_TRUE(xml.Reset());
    EXPECT_EQ(xml.GetCurrPath(), kRoot);
    EXPECT_EQ(xml.ElementName(), QString());
    EXPECT_EQ(xml.GetRootName(), QString());
}

TEST_F(SimpleXMLTest, current_isAKeywordInThatSpellingOnly)
{
    Load("<root><a><b/></a><Current/></root>");
    xml.SetCurrentPath(Q("//root//a"));
    EXPECT_TRUE(xml.hasChildren(kCurrent));
    EXPECT_FALSE(xml.hasChildren(Q("Current"))) << "a path that matches nothing here";
    EXPECT_EQ(xml.ChildCount(kCurrent), 1);
    EXPECT_FALSE(xml.hasChildren(Q("//root//Current")));
    EXPECT_EQ(xml.GetElement(Q("//root//Current"))->ElementName(), Q("Current"));
}

TEST_F(SimpleXMLTest, current_isKnownToEveryMember)
{
    Load("<root><a n='1' m='2'>text</a></root>");
    xml.SetCurrentPath(Q("//root//a"));
    EXPECT_EQ(xml.GetNodeText(kCurrent), Q("text"));
    EXPECT_TRUE(xml.RemoveAttrib(Q("m"), kCurrent));
    SimpleXML other(platform.interfaces);
    other.AddElementByName(Q("b"), QString());
    other.SetCurrentPath(Q("//b"));
    EXPECT_TRUE(xml.AddSimpleXML(other, kCurrent));
    EXPECT_EQ(Whole(), Q("<root><a n=\"1\">text<b/></a></root>"));
    xml.SetCurrentPath(Q("//root//a/text()"));
    EXPECT_EQ(xml.GetValue(kCurrent), Q("text"));
    xml.SetCurrentPath(Q("//root//a"));
    EXPECT_TRUE(xml.SetValue(Q("new"), kCurrent));
    EXPECT_EQ(Whole(), Q("<root><a n=\"1\">new</a></root>"));
}

TEST_F(SimpleXMLTest, prefixedName_isReadWithoutItsPrefix)
{
    Load("<p:root xmlns:p='urn:x'><p:a/></p:root>");
    EXPECT_EQ(xml.GetRootName(), kRoot);
    xml.SetCurrentPath(Q("//p:root//p:a"));
    EXPECT_EQ(xml.ElementName(), Q("a"));
}

TEST_F(SimpleXMLTest, reset_leavesTheOldDocumentToItsOtherOwners)
{
    Load("<root><a n='1'/><b/></root>");
    const auto walk = xml.getEnumeration(kRoot);
    const auto child = walk->nextElement();
    xml.Reset();
    EXPECT_EQ(child->GetAttribute(Q("n"), kCurrent), Q("1"));
    ASSERT_TRUE(walk->hasMoreElements());
    EXPECT_EQ(walk->nextElement()->ElementName(), Q("b"));
    EXPECT_EQ(Whole(), QString());
}

TEST_F(SimpleXMLTest, elementName_ofThePathOrTheRoot)
{
    Load("<root><a/></root>");
    xml.SetCurrentPath(Q("//root//a"));
    EXPECT_EQ(xml.ElementName(), Q("a"));
    xml.SetCurrentPath(Q("//root//b"));
    EXPECT_EQ(xml.ElementName(), QString());
    EXPECT_EQ(xml.GetElement(Q("//root//a"))->ElementName(), Q("a")) << "with no path it is the root";
}

TEST_F(SimpleXMLTest, childCount_countsEveryNode_upTo32767)
{
    Load("<root>text<!--note--><a/></root>");
    EXPECT_EQ(xml.ChildCount(kRoot), 3);
    EXPECT_EQ(xml.ChildCount(Q("//root//b")), 0);
    // No file that loads has as many: only the program itself could add them.
    const DomNode root = xml.xmldoc->DocumentElement();
    for (int count = 3; count < 32'767; ++count) {
        root.AppendElement(Q("a"));
    }
    EXPECT_EQ(xml.ChildCount(kRoot), 32'767);
    root.AppendElement(Q("a"));
    EXPECT_EQ(xml.ChildCount(kRoot), 0);
    EXPECT_TRUE(xml.hasChildren(kRoot));
}

TEST_F(SimpleXMLTest, addElementByName_appendsOrReplacesTheRoot)
{
    const struct
    {
        const char* name;
        const char* document;
        const char* element;
        const char* path;
        bool added;
        const char* after;
    } rows[] = {
        {"underThePath", "<root><b/></root>", "a", "//root", true, "<root><b/><a/></root>"},
        {"underCurrent", "<root/>", "a", "current", true, "<root><a/></root>"},
        {"emptyDocument", "", "a", "", true, "<a/>"},
        {"emptyDocument_anyPath", "", "a", "//root", true, "<a/>"},
        {"emptyDocument_theDocumentItself", "", "a", "/", true, "<a/>"},
        {"emptyPath_replacesTheRoot", "<root><b/></root>", "a", "", true, "<a/>"},
        {"pathToNowhere_replacesTheRoot", "<root><b/></root>", "a", "//root//missing", true, "<a/>"},
        {"pathThatCannotBeRead_changesNothing", "<root><b/></root>", "a", "//root//New York", false,
         "<root><b/></root>"},
        {"nameThatIsNone_changesNothing", "<root/>", "New York", "//root", false, "<root/>"},
        {"nameThatIsNone_atNowhere_changesNothing", "<root/>", "1a", "//root//x", false, "<root/>"},
        {"underAText_changesNothing", "<root>text</root>", "a", "//root/text()", false, "<root>text</root>"},
        {"underAnAttribute_changesNothing", "<root x='1'/>", "a", "//root/@x", false, "<root x=\"1\"/>"},
        {"besideTheRoot_changesNothing", "<root/>", "a", "/", false, "<root/>"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        xml.Reset();
        if (*row.document != '\0') {
            Load(row.document);
        }
        EXPECT_EQ(xml.AddElementByName(Q(row.element), Q(row.path)), row.added);
        EXPECT_EQ(Whole().toStdString(), row.after);
    }
}

TEST_F(SimpleXMLTest, addAttribute_twice_keepsOneInItsPlace)
{
    Load("<root a='1' b='2'/>");
    EXPECT_TRUE(xml.AddAttributeByName(Q("a"), Q("x"), kRoot));
    EXPECT_TRUE(xml.AddAttributeByName(Q("c"), Q("3"), kRoot));
    EXPECT_TRUE(xml.AddAttributeByName(Q("c"), Q("4"), kRoot));
    EXPECT_EQ(Whole(), Q("<root a=\"x\" b=\"2\" c=\"4\"/>"));
}

TEST_F(SimpleXMLTest, addAttribute_pathWithoutElement_writesNothing)
{
    Load("<root>text</root>");
    EXPECT_FALSE(xml.AddAttributeByName(Q("a"), Q("1"), Q("//root//missing")));
    EXPECT_FALSE(xml.AddAttributeByName(Q("a"), Q("1"), Q("//root//")));
    EXPECT_FALSE(xml.AddAttributeByName(Q("a"), Q("1"), Q("//root/text()")));
    EXPECT_FALSE(xml.AddAttributeByName(Q("no name"), Q("1"), kRoot));
    EXPECT_EQ(Whole(), Q("<root>text</root>"));
}

TEST_F(SimpleXMLTest, attribute_anyText_isReadBackTheSame)
{
    Load("<root/>");
    for (const QString& value : {QString(), Q("<&>\"'"), Q("a\tb\nc"), Q("\u0645\u0643\u0629 \U0001F54C"),
                                 Q("  blanks  "), Q("&amp;"), Q("]]>")}) {
        ASSERT_TRUE(xml.AddAttributeByName(Q("a"), value, kRoot));
        ASSERT_TRUE(xml.Save(kFile));
        ASSERT_TRUE(xml.Load(kFile));
        EXPECT_EQ(xml.GetAttribute(Q("a"), kRoot), value);
    }
}

TEST_F(SimpleXMLTest, getAttribute_missingElementAndMissingAttribute_areTheSame)
{
    Load("<root a=''/>");
    EXPECT_EQ(xml.GetAttribute(Q("x"), Q("//root//nothing")), QString());
    EXPECT_EQ(xml.GetAttribute(Q("x"), kRoot), QString());
    EXPECT_EQ(xml.GetAttribute(Q("a"), kRoot), QString());
    EXPECT_EQ(xml.GetAttribute(Q("A"), kRoot), QString());
    EXPECT_EQ(xml.GetAttribute(Q("a"), Q("//[")), QString());
}

TEST_F(SimpleXMLTest, removeAttrib_isTrueAlsoWhenItWasNotThere)
{
    Load("<root a='1'/>");
    EXPECT_TRUE(xml.RemoveAttrib(Q("a"), kRoot));
    EXPECT_TRUE(xml.RemoveAttrib(Q("a"), kRoot));
    EXPECT_EQ(Whole(), Q("<root/>"));
    EXPECT_FALSE(xml.RemoveAttrib(Q("a"), Q("//root//missing")));
}

TEST_F(SimpleXMLTest, removeElement_childrenStayUnlessIgnored)
{
    Load("<root><a><b/></a><c>text</c><d/></root>");
    EXPECT_FALSE(xml.RemoveElement(false, Q("//root//a")));
    EXPECT_FALSE(xml.RemoveElement(false, Q("//root//c"))) << "a text is a child";
    EXPECT_TRUE(xml.RemoveElement(false, Q("//root//d")));
    EXPECT_TRUE(xml.RemoveElement(true, Q("//root//a")));
    EXPECT_EQ(Whole(), Q("<root><c>text</c></root>"));
    EXPECT_FALSE(xml.RemoveElement(true, Q("//root//missing")));
    EXPECT_FALSE(xml.RemoveElement(true, Q("/")));
    EXPECT_TRUE(xml.RemoveElement(true, kCurrent)) << "the root goes too";
    EXPECT_EQ(Whole(), QString());
}

TEST_F(SimpleXMLTest, setValue_isTheOneMemberThatThrows)
{
    Load("<root><a><b/></a></root>");
    EXPECT_TRUE(xml.SetValue(Q("x < y"), Q("//root//a")));
    EXPECT_EQ(xml.GetNodeText(Q("//root//a")), Q("x < y"));
    EXPECT_EQ(Whole(), Q("<root><a>x &lt; y</a></root>"));
    EXPECT_EQ(ErrorOf([this] { xml.SetValue(Q("x"), Q("//root//missing")); }), ErrorNumber::kObjectNotSet);
    EXPECT_EQ(ErrorOf([this] { xml.SetValue(Q("x"), Q("//[")); }), ErrorNumber::kInvalidCall);
}

TEST_F(SimpleXMLTest, values_elementsHaveNone_textsDo)
{
    Load("<root>one<a>two</a><!--three--></root>");
    EXPECT_EQ(xml.GetValue(kRoot), QString());
    EXPECT_EQ(xml.GetValue(Q("//root/text()")), Q("one"));
    EXPECT_EQ(xml.GetValue(Q("//root/comment()")), Q("three"));
    EXPECT_EQ(xml.GetValue(Q("//root//b")), QString());
    EXPECT_EQ(xml.GetNodeText(kRoot), Q("onetwo"));
    EXPECT_EQ(xml.GetNodeText(Q("//root//b")), QString());
}

TEST_F(SimpleXMLTest, getElement_isACopyOfItsOwn)
{
    Load("<root><a x='1'><b/></a></root>");
    const auto copy = xml.GetElement(Q("//root//a"));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetCurrPath(), QString());
    EXPECT_EQ(copy->GetRootName(), Q("//a"));
    copy->AddAttributeByName(Q("x"), Q("2"), Q("//a"));
    copy->RemoveElement(true, Q("//a//b"));
    EXPECT_EQ(Whole(), Q("<root><a x=\"1\"><b/></a></root>"));
    EXPECT_EQ(xml.GetElement(Q("//root//b//c")), nullptr);
    EXPECT_EQ(xml.GetElement(Q("/")), nullptr);
    EXPECT_NE(xml.GetElement(kCurrent), nullptr);
}

TEST_F(SimpleXMLTest, addSimpleXML_movesTheNodeAcrossDocuments)
{
    Load("<root><locations><Old/></locations></root>");
    SimpleXML reply(platform.interfaces);
    platform.http.replies[Q("city")] = "<root><New city='N' more='m'><x/></New></root>";
    ASSERT_TRUE(reply.Load(Q("http://127.0.0.1/city")));
    reply.SetCurrentPath(Q("//root//New"));
    EXPECT_TRUE(xml.AddSimpleXML(reply, Q("//root//locations")));
    EXPECT_EQ(Whole(), Q("<root><locations><Old/><New city=\"N\" more=\"m\"><x/></New></locations></root>"));
    EXPECT_FALSE(reply.hasChildren(kRoot)) << "it is gone from where it was";
    EXPECT_FALSE(xml.AddSimpleXML(reply, Q("//root//locations"))) << "there is none left";
}

TEST_F(SimpleXMLTest, addSimpleXML_ofTheSameDocument_movesTheNode)
{
    Load("<root><a n='1'><b/></a><c/></root>");
    const auto a = xml.getEnumeration(kRoot)->nextElement();
    ASSERT_EQ(a->GetCurrPath(), Q("//root//a"));
    EXPECT_TRUE(xml.AddSimpleXML(*a, Q("//root//c")));
    EXPECT_EQ(Whole(), Q("<root><c><a n=\"1\"><b/></a></c></root>"));
    EXPECT_FALSE(xml.AddSimpleXML(*a, Q("//root//b"))) << "a node can't be its own child";
    EXPECT_EQ(Whole(), Q("<root><c><a n=\"1\"><b/></a></c></root>"));
}

TEST_F(SimpleXMLTest, addSimpleXML_pathWithoutElement_changesNeitherDocument)
{
    Load("<root/>");
    SimpleXML other(platform.interfaces);
    other.AddElementByName(Q("a"), QString());
    other.SetCurrentPath(Q("//a"));
    EXPECT_FALSE(xml.AddSimpleXML(other, Q("//root//missing")));
    EXPECT_EQ(other.XML(), Q("<a/>"));
    EXPECT_EQ(Whole(), Q("<root/>"));
}

} // namespace
