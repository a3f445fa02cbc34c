// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Boxes.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class TextBoxControl : public testing::Test
{
protected:
    TextBoxControl()
    {
        box.OnChange([this] { changes << box.Text(); });
        box.show();
    }

    TextBox box{nullptr};
    QStringList changes;
};

} // namespace

TEST_F(TextBoxControl, setText_raisesChangeInsideTheSetterOnlyOnAChange)
{
    box.SetText(QString());
    EXPECT_TRUE(changes.isEmpty());
    box.SetText(QStringLiteral("a"));
    box.SetText(QStringLiteral("a"));
    EXPECT_EQ(changes, QStringList(QStringLiteral("a")));
}

TEST_F(TextBoxControl, typing_raisesChangeAtEachKeystroke)
{
    QTest::keyClicks(&box, QStringLiteral("-17"));
    QTest::keyClick(&box, Qt::Key_Backspace);
    QTest::keyClick(&box, Qt::Key_Left);
    EXPECT_EQ(changes.join(u'|'), u"-|-1|-17|-1");
}

TEST_F(TextBoxControl, pasteOverASelection_raisesOneChange)
{
    box.SetText(QStringLiteral("-15"));
    QGuiApplication::clipboard()->setText(QStringLiteral("99"));
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(changes.join(u'|'), u"-15|99");
}

TEST_F(TextBoxControl, setTextInsideItsOwnChange_nests)
{
    box.OnChange([this] {
        changes << QStringLiteral("in ") + box.Text();
        if (box.Text() == u"x") {
            box.SetText(QStringLiteral("5"));
        }
        changes << QStringLiteral("out ") + box.Text();
    });
    QTest::keyClicks(&box, QStringLiteral("x"));
    EXPECT_EQ(changes.join(u'|'), u"in x|in 5|out 5|out 5");
    QTest::keyClicks(&box, QStringLiteral("7"));
    EXPECT_EQ(box.Text(), QStringLiteral("57"));
}

TEST_F(TextBoxControl, readOnly_takesNoTypingButCode)
{
    box.setReadOnly(true);
    QTest::keyClicks(&box, QStringLiteral("5"));
    EXPECT_TRUE(changes.isEmpty());
    box.SetText(QStringLiteral("6"));
    EXPECT_EQ(changes, QStringList(QStringLiteral("6")));
}

TEST_F(TextBoxControl, enterKey_callsItsHandlerWithoutAChange)
{
    int enters = 0;
    box.OnEnter([&] { ++enters; });
    QTest::keyClick(&box, Qt::Key_Return);
    QTest::keyClick(&box, Qt::Key_Enter);
    EXPECT_EQ(enters, 2);
    EXPECT_TRUE(changes.isEmpty());
}
