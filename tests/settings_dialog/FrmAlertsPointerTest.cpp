// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

namespace {

constexpr const char* kTabLabels[] = {"LblGeneral", "LblMobilAlert", "LblFajr", "LblShuruq",
                                      "LblDuhr",    "LblAsr",        "Maghrib", "LblIsha"};

void MoveOver(QWidget& widget)
{
    // Two positions: Qt ignores a move to the same position.
    QTest::mouseMove(&widget, QPoint(3, 3));
    QTest::mouseMove(&widget, QPoint(4, 4));
    QCoreApplication::processEvents();
}

bool IsHand(const QWidget& window)
{
    return window.cursor().shape() == Qt::PointingHandCursor;
}

using FrmAlertsHover = DialogTest;

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

TEST_F(FrmAlertsHover, outsideTheLinks_onlyTheListedAreasRemoveTheHand)
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

TEST_F(FrmAlertsHover, browseAndReset_setTheHand_disabledTheFrameTakesItAway)
{
    const struct
    {
        std::int16_t tab;
        const char* link;
    } rows[] = {{3, "LblBrowseLink"}, {2, "LblReset"}, {4, "LblBrowseLink"}};
    for (const auto& [tab, link] : rows) {
        Open(tab);
        EXPECT_EQ(IsLive(link), tab != 4) << "the alert of this prayer is off";
        IsLive(link) ? dialog->SetDefaultPointer() : dialog->SetHandPointer();
        MoveOver(Widget(link));
        EXPECT_EQ(IsHand(*dialog), IsLive(link)) << link;
        dialog->Unload();
    }
}

namespace {

class FrmAlertsKeyboard : public DialogTest
{
protected:
    /// The controls after the tabs, in Tab order.
    [[nodiscard]] QString TabOrder() const
    {
        QStringList names;
        Widget("LblGeneral").setFocus();
        while (dialog->focusWidget() != nullptr && !names.contains(dialog->focusWidget()->objectName())) {
            names << dialog->focusWidget()->objectName();
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(names.mid(0, 8).join(u' '),
                  u"LblGeneral LblMobilAlert LblFajr LblShuruq LblDuhr LblAsr Maghrib LblIsha");
        return names.mid(8).join(u' ');
    }
};

} // namespace

TEST_F(FrmAlertsKeyboard, eachPage_tabFollowsTheVisualOrder)
{
    WriteSettings(SettingsWith({{"method", "User Defined"}, {"useAdvWarn", "true"}}));
    Open();
    EXPECT_EQ(TabOrder(),
              u"OptISNA OptUOIS OptMWL OptEGAS OptSetByUser TxtSetFarjAngle VScroll2 TxtSetIshaAngle "
              u"VScroll3 OptShafi OptHanafi Opt12Hour Opt24Hour ChkDLS ChkAdvWarn TxtAdvWarn VScroll1 "
              u"CmdClose");
    dialog->SelectTab(2);
    EXPECT_EQ(TabOrder(), u"ChkMobilEnable TxtMDID TxtPC CmdMobilReg LblReset");
    dialog->Unload();
    WriteSettings(SettingsWith({{"mobileEnabled", "true"}, {"mobileConfirm", "1"}}));
    Open(3);
    EXPECT_EQ(TabOrder(), u"ChkAlertMain ChkSilAlert ChkAudioAlert TxtPath LblBrowseLink ChkIndMobAlert");
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
