// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

#include <QFrame>
#include <QGroupBox>
#include <QLabel>

namespace {

// The control has room for its whole text.
void ExpectTextFits(const QWidget& control)
{
    const auto* const label = qobject_cast<const QLabel*>(&control);
    const auto* const button = qobject_cast<const QAbstractButton*>(&control);
    if (label != nullptr && label->wordWrap()) {
        EXPECT_LE(label->heightForWidth(label->width()), label->height())
            << label->objectName().toStdString();
    } else if (label != nullptr || button != nullptr) {
        const QSize needed = control.sizeHint();
        EXPECT_LE(needed.width(), control.width()) << control.objectName().toStdString();
        EXPECT_LE(needed.height(), control.height() + 4) << control.objectName().toStdString();
    } else if (const auto* const frame = qobject_cast<const QGroupBox*>(&control); frame != nullptr) {
        EXPECT_LE(frame->fontMetrics().horizontalAdvance(frame->title()) + 8, frame->width())
            << frame->objectName().toStdString();
    }
}

void ExpectInOrder(const QWidget& parent)
{
    const QList<QWidget*> children = parent.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (qsizetype i = 0; i < children.size(); ++i) {
        const QWidget& child = *children[i];
        if (!child.isVisible()) {
            continue;
        }
        const std::string name = child.objectName().toStdString();
        EXPECT_TRUE(parent.rect().contains(child.geometry())) << name;
        ExpectTextFits(child);
        if (qobject_cast<const QFrame*>(&child) != nullptr ||
            qobject_cast<const QGroupBox*>(&child) != nullptr) {
            ExpectInOrder(child);
        }
        const bool isLine = name.starts_with("Line");
        for (qsizetype j = i + 1; j < children.size() && !isLine; ++j) {
            const QWidget& other = *children[j];
            EXPECT_FALSE(other.isVisible() && child.geometry().intersects(other.geometry()))
                << name << " and " << other.objectName().toStdString();
        }
    }
}

using Layout = DialogTest;

} // namespace

TEST_F(Layout, eachPage_fitsWithoutOverlap)
{
    WriteSettings(SettingsWith({{"method", "User Defined"},
                                {"angle1", "-19.5"},
                                {"useAdvWarn", "true"},
                                {"mobileEnabled", "true"}}));
    // The longest usable text, of letters of medium width.
    forms.Variables().Settings.SignupText = QStringLiteral("signup@") + QString(43, u'e');
    Open();
    EXPECT_EQ(dialog->size(), QSize(510, 300));
    for (std::int16_t tab = 1; tab <= 8; ++tab) {
        SCOPED_TRACE(tab);
        dialog->SelectTab(tab);
        ASSERT_TRUE(IsOpen());
        ExpectInOrder(*dialog);
    }
}

TEST_F(Layout, presetAndLockedStates_fitWithoutOverlap)
{
    WriteSettings(SettingsWith({{"mobileEnabled", "true"},
                                {"mobilePC", "5521"},
                                {"mobileDID", "0123456789"},
                                {"mobileConfirm", "1"}}));
    Open();
    ExpectInOrder(*dialog);
    dialog->SelectTab(2);
    ExpectInOrder(*dialog);
    Click("ChkMobilEnable");
    dialog->SelectTab(4);
    ExpectInOrder(*dialog);
}
