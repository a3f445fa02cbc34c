// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

namespace {

constexpr const char* kTabLabels[] = {"LblGeneral", "LblMobilAlert", "LblFajr", "LblShuruq",
                                      "LblDuhr",    "LblAsr",        "Maghrib", "LblIsha"};

class FrmAlertsHover : public DialogTest
{
protected:
    /// Whether the pointer is a hand after a move of the mouse over the widget.
    bool IsHandOver(QWidget& widget, bool wasHand, const QPoint& place = {3, 3})
    {
        wasHand ? dialog->SetHandPointer() : dialog->SetDefaultPointer();
        // Two positions: Qt ignores a move to the same position.
        QTest::mouseMove(&widget, place);
        QTest::mouseMove(&widget, place + QPoint(1, 1));
        QCoreApplication::processEvents();
        return dialog->cursor().shape() == Qt::PointingHandCursor;
    }
};

using FrmAlertsKeyboard = DialogTest;

} // namespace

TEST_F(FrmAlertsHover, tabLabels_setTheHandAndTheDialogTakesItAway)
{
    Open();
    for (const char* const tab : kTabLabels) {
        EXPECT_FALSE(IsHandOver(*dialog, true, {505, 10})) << tab;
        EXPECT_TRUE(IsHandOver(Widget(tab), false)) << tab;
    }
}

TEST_F(FrmAlertsHover, onThePages_liveLinksSetTheHand_theListedAreasTakeItAway)
{
    const struct
    {
        std::int16_t tab;
        const char* place;
        bool wasHand;
        bool isHand;
    } rows[] = {
        {1, "FrmGeneral", true, true},
        {1, "Frame2", true, true},
        {1, "Label1", true, true},
        {1, "Label9", true, true},
        {2, "FrmMobilAlert", true, true},
        {2, "LblMobilH1", true, true},
        {2, "FrmMobilSub", true, false},
        {2, "LblMobil1", true, true},
        {2, "LblReset", false, true},
        {3, "FrmPrayer", true, false},
        {3, "ChkSilAlert", true, true},
        {3, "FrmFileSelect", true, false},
        {3, "LblBrowseLink", false, true},
        // Disabled, since the alert of this prayer is off: the frame behind it takes the move.
        {4, "LblBrowseLink", true, false},
    };
    for (const auto& row : rows) {
        Open(row.tab);
        EXPECT_EQ(IsHandOver(Widget(row.place), row.wasHand), row.isHand) << row.tab << ' ' << row.place;
        dialog->Unload();
    }
}

TEST_F(FrmAlertsKeyboard, closeByEnterAndBySpace)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        Open();
        QTest::keyClick(&Widget("CmdClose"), key);
        EXPECT_FALSE(IsOpen()) << key;
    }
}
