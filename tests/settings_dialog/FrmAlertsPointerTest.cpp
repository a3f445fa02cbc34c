// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

namespace {

constexpr const char* kTabLabels[] = {"LblGeneral", "LblMobilAlert", "LblFajr", "LblShuruq",
                                      "LblDuhr",    "LblAsr",        "Maghrib", "LblIsha"};

void MoveOver(QWidget& widget)
{
    // Two places, for a move that goes nowhere is none.
    QTest::mouseMove(&widget, QPoint(3, 3));
    QTest::mouseMove(&widget, QPoint(4, 4));
    QCoreApplication::processEvents();
}

bool IsHand(const QWidget& window)
{
    return window.cursor().shape() == Qt::PointingHandCursor;
}

class FrmAlertsHover : public DialogTest
{
};

} // namespace

TEST_F(FrmAlertsHover, tabLabels_setTheHandAndTheDialogTakesItAway)
{
    Open();
    for (const char* const tab : kTabLabels) {
        QTest::mouseMove(dialog, QPoint(505, 10));
        QTest::mouseMove(dialog, QPoint(506, 11));
        QCoreApplication::processEvents();
        EXPECT_FALSE(IsHand(*dialog)) << tab;
        MoveOver(Widget(tab));
        EXPECT_TRUE(IsHand(*dialog)) << tab;
    }
}

TEST_F(FrmAlertsHover, behindTheLinks_onlyTheListedAreasTakeTheHandAway)
{
    const struct
    {
        std::int16_t tab;
        const char* area;
        bool takesAway;
    } rows[] = {
        {1, "FrmGeneral", false},  {1, "Frame2", false},        {1, "Label1", false},
        {1, "Label9", false},      {2, "FrmMobilAlert", false}, {2, "LblMobilH1", false},
        {2, "FrmMobilSub", true},  {2, "LblMobil1", false},     {3, "FrmPrayer", true},
        {3, "ChkSilAlert", false}, {3, "FrmFileSelect", true},
    };
    for (const auto& row : rows) {
        Open(row.tab);
        dialog->SetHandPointer();
        MoveOver(Widget(row.area));
        EXPECT_EQ(IsHand(*dialog), !row.takesAway) << row.area;
        dialog->Unload();
    }
}

TEST_F(FrmAlertsHover, browseAndReset_setTheHand)
{
    Open(3);
    MoveOver(Widget("LblBrowseLink"));
    EXPECT_TRUE(IsHand(*dialog));
    Open(2);
    dialog->SetDefaultPointer();
    MoveOver(Widget("LblReset"));
    EXPECT_TRUE(IsHand(*dialog));
}

TEST_F(FrmAlertsHover, disabledBrowse_letsTheFrameTakeTheHandAway)
{
    Open(4);
    ASSERT_FALSE(IsLive("LblBrowseLink"));
    dialog->SetHandPointer();
    MoveOver(Widget("LblBrowseLink"));
    EXPECT_FALSE(IsHand(*dialog));
}

namespace {

class FrmAlertsKeyboard : public DialogTest
{
protected:
    [[nodiscard]] QStringList TabOrder() const
    {
        QStringList names;
        QWidget* const first = &Widget("LblGeneral");
        first->setFocus();
        while (dialog->focusWidget() != nullptr && !names.contains(dialog->focusWidget()->objectName())) {
            names << dialog->focusWidget()->objectName();
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
        }
        return names;
    }
    static QStringList Row()
    {
        return QStringLiteral("LblGeneral LblMobilAlert LblFajr LblShuruq LblDuhr LblAsr Maghrib LblIsha")
            .split(u' ');
    }
};

} // namespace

TEST_F(FrmAlertsKeyboard, generalPage_tabGoesWithTheEye)
{
    WriteChanged({{QStringLiteral("method=\"ISNA\""), QStringLiteral("method=\"User Defined\"")},
                  {QStringLiteral("useAdvWarn=\"false\""), QStringLiteral("useAdvWarn=\"true\"")}});
    Open();
    const QStringList page =
        QStringLiteral("OptISNA OptUOIS OptMWL OptEGAS OptSetByUser TxtSetFarjAngle VScroll2 "
                       "TxtSetIshaAngle VScroll3 OptShafi OptHanafi Opt12Hour Opt24Hour "
                       "ChkDLS ChkAdvWarn TxtAdvWarn VScroll1 CmdClose")
            .split(u' ');
    EXPECT_EQ(TabOrder(), Row() + page);
}

TEST_F(FrmAlertsKeyboard, prayerPage_tabGoesWithTheEye)
{
    WriteChanged({{QStringLiteral("mobileEnabled=\"false\""), QStringLiteral("mobileEnabled=\"true\"")},
                  {QStringLiteral("mobileConfirm=\"0\""), QStringLiteral("mobileConfirm=\"1\"")}});
    Open(3);
    EXPECT_EQ(
        TabOrder(),
        Row() + QStringLiteral("ChkAlertMain ChkSilAlert ChkAudioAlert TxtPath LblBrowseLink ChkIndMobAlert")
                    .split(u' '));
}

TEST_F(FrmAlertsKeyboard, mobilePage_tabGoesWithTheEye)
{
    Open(2);
    EXPECT_EQ(TabOrder(),
              Row() + QStringLiteral("ChkMobilEnable TxtMDID TxtPC CmdMobilReg LblReset").split(u' '));
}

TEST_F(FrmAlertsKeyboard, closeByEnterAndBySpace)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        Open();
        QTest::keyClick(&Widget("CmdClose"), key);
        EXPECT_FALSE(IsOpen()) << key;
    }
}

TEST_F(FrmAlertsKeyboard, boxesAndBars_haveAccessibleNames)
{
    Open();
    for (const QWidget* const control : dialog->findChildren<QWidget*>()) {
        if (qobject_cast<const TextBox*>(control) != nullptr ||
            qobject_cast<const SpinBar*>(control) != nullptr) {
            EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
        }
    }
}
