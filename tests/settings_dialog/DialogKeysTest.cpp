// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Desk.h"
#include "settings_dialog/DialogTest.h"

namespace {

/// The settings dialog as the active window, so that keys go where the desktop sends them.
class DialogKeys : public DialogTest
{
protected:
    void OpenActive(std::int16_t tab = 1)
    {
        Open(tab);
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
    }
    void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(dialog->windowHandle(), key, modifiers);
        Desk::Settle();
    }
    void Focus(const char* name) const
    {
        Widget(name).setFocus();
        ASSERT_TRUE(Widget(name).hasFocus()) << name;
    }
};

} // namespace

TEST_F(DialogKeys, escapeOnTheGeneralPage_closesAsCloseDoes)
{
    WriteUserDefined("-18", "-15");
    for (const char* const control :
         {"LblGeneral", "OptSetByUser", "TxtSetFarjAngle", "VScroll2", "ChkDLS", "CmdClose"}) {
        OpenActive();
        main.calls.clear();
        Focus(control);
        PressKey(Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !IsOpen(); })) << control;
        ExpectHandedOver();
    }
}

TEST_F(DialogKeys, escapeOnAnotherPage_leavesTheDialogOpen)
{
    for (const std::int16_t tab : {std::int16_t{2}, std::int16_t{3}}) {
        OpenActive(tab);
        PressKey(Qt::Key_Escape);
        EXPECT_TRUE(IsOpen()) << tab;
        // A shortcut presses its button at once and clicks it after 100 ms.
        EXPECT_FALSE(Find<QPushButton>("CmdClose").isDown()) << tab;
    }
}

TEST_F(DialogKeys, upAndDownInABox_stepItsBar)
{
    WriteUserDefined("-19.5", "29.5");
    OpenActive();
    const struct
    {
        const char* box;
        const char* attribute;
        Qt::Key key;
        const char* stored;
    } rows[] = {
        {"TxtSetFarjAngle", "angle1", Qt::Key_Up, "-19"},
        {"TxtSetFarjAngle", "angle1", Qt::Key_Down, "-20"},
        {"TxtSetFarjAngle", "angle1", Qt::Key_Down, "-21"},
        {"TxtSetIshaAngle", "angle2", Qt::Key_Up, "30"},
        {"TxtSetIshaAngle", "angle2", Qt::Key_Up, "30"},
        {"TxtSetIshaAngle", "angle2", Qt::Key_Down, "29"},
    };
    for (const auto& [box, attribute, key, stored] : rows) {
        Focus(box);
        PressKey(key);
        EXPECT_EQ(Stored(QLatin1String(attribute)), QLatin1String(stored)) << box;
        EXPECT_EQ(TextOf(box), QLatin1String(stored));
        EXPECT_TRUE(Widget(box).hasFocus());
    }
}

TEST_F(DialogKeys, upInABoxWithAModifier_changesNothing_fromTheKeypadItSteps)
{
    WriteUserDefined("-18", "-15");
    OpenActive();
    Focus("TxtSetFarjAngle");
    for (const Qt::KeyboardModifier modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
        PressKey(Qt::Key_Up, modifier);
        EXPECT_EQ(Stored(u"angle1"), u"-18") << modifier;
    }
    PressKey(Qt::Key_Up, Qt::KeypadModifier);
    EXPECT_EQ(Stored(u"angle1"), u"-17");
}

TEST_F(DialogKeys, downInTheBoxOfMinutes_stepsItsBar)
{
    WriteChanged(u"useAdvWarn=\"false\"", u"useAdvWarn=\"true\"");
    OpenActive();
    Focus("TxtAdvWarn");
    PressKey(Qt::Key_Down);
    EXPECT_EQ(Stored(u"advWarn"), u"9");
    EXPECT_EQ(Bar("VScroll1").Value(), 9);
}

TEST_F(DialogKeys, downWhileADraftIsHidden_stepsTheBarAndEndsTheDraft)
{
    WriteUserDefined("-18", "-15");
    OpenActive();
    Focus("TxtSetFarjAngle");
    Press("TxtSetFarjAngle", QStringLiteral("Ctrl+A"));
    Press("TxtSetFarjAngle", QStringLiteral("-"));
    PressKey(Qt::Key_Down);
    EXPECT_EQ(Stored(u"angle1"), u"-19");
    Press("TxtSetFarjAngle", QStringLiteral("."));
    Press("TxtSetFarjAngle", QStringLiteral("5"));
    EXPECT_EQ(Stored(u"angle1"), u"-19.5");
}

TEST_F(DialogKeys, noteUnderAMethod_selectsItWhenClicked)
{
    const struct
    {
        const char* note;
        const char* option;
        const char* method;
    } rows[] = {{"Label6", "OptEGAS", "Egyptian General Authority of Survey"},
                {"Label5", "OptMWL", "Muslim World League"},
                {"Label4", "OptUOIS", "University Of Islamic Sciences"},
                {"Label3", "OptISNA", "ISNA"}};
    OpenActive();
    for (const auto& [note, option, method] : rows) {
        Desk::Click(Widget(note));
        EXPECT_TRUE(IsTicked(option)) << note;
        EXPECT_EQ(Stored(u"method"), QLatin1String(method));
        EXPECT_TRUE(Widget(option).hasFocus());
    }
    const std::size_t saves = Saves();
    Desk::Click(Widget("Label3"));
    EXPECT_EQ(Saves(), saves) << "selected already";
}
