// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/EnumerationObject.h"

#include "fakes/FakePlatform.h"
#include "store/Texts.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

class EnumerationObjectTest : public testing::Test
{
protected:
    std::unique_ptr<EnumerationObject> Walk(const QByteArray& text, const QString& path)
    {
        QFile file(QStringLiteral("document.xml"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        EXPECT_TRUE(xml.Load(QStringLiteral("document.xml")));
        return xml.getEnumeration(path);
    }
    static QStringList Names(EnumerationObject& walk)
    {
        QStringList names;
        while (walk.hasMoreElements()) {
            const auto child = walk.nextElement();
            if (child == nullptr) {
                names << Q("(none)");
                break;
            }
            names << child->GetCurrPath();
        }
        return names;
    }

    FakePlatform platform;
    SimpleXML xml{platform.interfaces};
};

TEST_F(EnumerationObjectTest, children_comeInTheirOrder_underTheirPaths)
{
    const auto walk = Walk("<root><c/><a/><b/></root>", Q("//root"));
    EXPECT_EQ(Names(*walk), (QStringList{Q("//root//c"), Q("//root//a"), Q("//root//b")}));
    EXPECT_EQ(walk->nextElement(), nullptr);
}

TEST_F(EnumerationObjectTest, current_isTheRememberedPath)
{
    const auto walk = Walk("<root><a/></root>", Q("current"));
    EXPECT_EQ(Names(*walk), QStringList{Q("//root//a")});
}

TEST_F(EnumerationObjectTest, child_looksAtTheSameLiveDocument)
{
    const auto walk = Walk("<root><a n='1'/></root>", Q("//root"));
    const auto child = walk->nextElement();
    EXPECT_EQ(child->ElementName(), Q("a"));
    EXPECT_EQ(child->GetAttribute(Q("n"), Q("current")), Q("1"));
    child->AddAttributeByName(Q("n"), Q("2"), Q("current"));
    EXPECT_EQ(xml.GetAttribute(Q("n"), Q("//root//a")), Q("2"));
}

TEST_F(EnumerationObjectTest, childrenOfOneName_allReadAsTheFirst)
{
    const auto walk = Walk("<root><a n='1'/><a n='2'/></root>", Q("//root"));
    EXPECT_EQ(walk->nextElement()->GetAttribute(Q("n"), Q("current")), Q("1"));
    EXPECT_EQ(walk->nextElement()->GetAttribute(Q("n"), Q("current")), Q("1"));
    EXPECT_FALSE(walk->hasMoreElements());
}

TEST_F(EnumerationObjectTest, commentsAndTexts_areChildrenThatReadAsNothing)
{
    const auto walk = Walk("<root><!--note-->text<a/></root>", Q("//root"));
    const auto comment = walk->nextElement();
    EXPECT_EQ(comment->GetCurrPath(), Q("//root//#comment"));
    EXPECT_EQ(comment->GetAttribute(Q("city"), Q("current")), QString());
    EXPECT_EQ(walk->nextElement()->GetCurrPath(), Q("//root//#text"));
    EXPECT_EQ(walk->nextElement()->GetCurrPath(), Q("//root//a"));
}

TEST_F(EnumerationObjectTest, prefixedName_staysInThePath)
{
    const auto walk = Walk("<root xmlns:p='urn:x'><p:a n='1'/></root>", Q("//root"));
    const auto child = walk->nextElement();
    EXPECT_EQ(child->GetCurrPath(), Q("//root//p:a"));
    EXPECT_EQ(child->ElementName(), Q("a"));
}

TEST_F(EnumerationObjectTest, noChildrenOrNoParent_endsAtOnce)
{
    EXPECT_FALSE(Walk("<root/>", Q("//root"))->hasMoreElements());
    EXPECT_EQ(Walk("<root/>", Q("//root"))->nextElement(), nullptr);
    EXPECT_FALSE(Walk("<root/>", Q("//root//missing"))->hasMoreElements());
    EXPECT_EQ(Walk("<root/>", Q("//root//missing"))->nextElement(), nullptr);
    EXPECT_FALSE(Walk("<root/>", Q("//["))->hasMoreElements());
}

TEST_F(EnumerationObjectTest, childRemovedWhileWalking_skipsItsNextSibling)
{
    const auto walk = Walk("<root><a/><b/><c/></root>", Q("//root"));
    const auto first = walk->nextElement();
    xml.RemoveElement(true, first->GetCurrPath());
    EXPECT_EQ(Names(*walk), QStringList{Q("//root//c")});
}

TEST_F(EnumerationObjectTest, childAppendedWhileWalking_comesToo)
{
    const auto walk = Walk("<root><a/></root>", Q("//root"));
    static_cast<void>(walk->nextElement());
    EXPECT_FALSE(walk->hasMoreElements());
    xml.AddElementByName(Q("b"), Q("//root"));
    EXPECT_EQ(Names(*walk), QStringList{Q("//root//b")});
}

TEST_F(EnumerationObjectTest, listShorterThanTheIndex_returnsNothing)
{
    const auto walk = Walk("<root><a/><b/></root>", Q("//root"));
    static_cast<void>(walk->nextElement());
    static_cast<void>(walk->nextElement());
    xml.RemoveElement(true, Q("//root//b"));
    EXPECT_FALSE(walk->hasMoreElements());
    EXPECT_EQ(walk->nextElement(), nullptr);
}

TEST_F(EnumerationObjectTest, setPath_leadsElsewhere_andCountsOn)
{
    const auto walk = Walk("<root><x><a/><b/></x><y><c/><d/></y></root>", Q("//root//x"));
    EXPECT_EQ(walk->nextElement()->GetCurrPath(), Q("//root//x//a"));
    walk->SetPath(Q("//root//y"));
    EXPECT_EQ(Names(*walk), QStringList{Q("//root//y//d")});
}

} // namespace
