// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Desk.h"
#include "settings_dialog/DialogTest.h"

#include <QAccessible>

namespace {

constexpr const char* kLabels[] = {"LblGeneral", "LblMobilAlert", "LblFajr", "LblShuruq",
                                   "LblDuhr",    "LblAsr",        "Maghrib", "LblIsha"};

class PageTabs : public DialogTest
{
protected:
    static void SetUpTestSuite() { InstallLinkAccessibility(); }

    [[nodiscard]] QAccessibleInterface& Reader(const char* name) const
    {
        return *QAccessible::queryAccessibleInterface(&Widget(name));
    }
    [[nodiscard]] QStringList BoldLabels() const
    {
        QStringList bold;
        for (const char* const label : kLabels) {
            if (Widget(label).font().bold()) {
                bold << QLatin1String(label);
            }
        }
        return bold;
    }
    [[nodiscard]] QStringList SelectedTabs() const
    {
        QStringList selected;
        for (const char* const label : kLabels) {
            EXPECT_EQ(Reader(label).role(), QAccessible::PageTab) << label;
            EXPECT_TRUE(Reader(label).state().selectable) << label;
            if (Reader(label).state().selected) {
                selected << QLatin1String(label);
            }
        }
        return selected;
    }
};

} // namespace

TEST_F(PageTabs, labelOfTheCurrentPage_isBoldAndSelected_noOther)
{
    Open();
    EXPECT_EQ(BoldLabels(), QStringList{QStringLiteral("LblGeneral")});
    for (const char* const label : kLabels) {
        Desk::Click(Widget(label));
        EXPECT_EQ(BoldLabels(), QStringList{QLatin1String(label)});
        EXPECT_EQ(SelectedTabs(), QStringList{QLatin1String(label)});
    }
    dialog->SelectTab(9);
    EXPECT_EQ(BoldLabels(), QStringList{QStringLiteral("LblGeneral")}) << "an unknown page is the first one";
}

TEST_F(PageTabs, clickedLabel_isTheOneFromWhichTabStarts)
{
    Open();
    dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
    for (std::size_t page = 0; page + 1 < std::size(kLabels); ++page) {
        Widget("LblGeneral").setFocus();
        Desk::Click(Widget(kLabels[page]));
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Tab);
        EXPECT_TRUE(Widget(kLabels[page + 1]).hasFocus()) << kLabels[page];
    }
}
