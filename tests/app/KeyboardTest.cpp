// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindowFixture.h"
#include "forms/LinkLabel.h"
#include "service/ServiceRequests.h"

namespace {

/// The whole main window used by keyboard alone, from its initial focus.
class KeyboardTest : public MainWindowFixture
{
protected:
    void Press(Qt::Key key)
    {
        QTest::keyClick(Window().windowHandle(), key);
        Desk::Settle();
    }
    [[nodiscard]] QString InFocus()
    {
        const QWidget* const widget = Window().focusWidget();
        return widget == nullptr ? QString() : widget->objectName();
    }
};

TEST_F(KeyboardTest, tab_reachesEachLinkOnce_fromTopToBottom)
{
    QStringList reached;
    for (Start(); !reached.contains(InFocus()) && reached.size() < 30; Press(Qt::Key_Tab)) {
        reached << InFocus();
    }
    Press(Qt::Key_Backtab);
    EXPECT_EQ(InFocus(), reached.back()) << "and back again";
    QStringList links;
    for (const QString& name : reached) {
        if (Window().findChild<LinkLabel*>(name) != nullptr) {
            links << name;
        }
    }
    EXPECT_EQ(links.join(u' '), u"LblLocLink LblAlertsLink LblHelp LblGetMoreLink LblFarjLink LblShuruqLink "
                                u"LblDuhrLink LblAsrLink LblMaghribLink LblIshaLink")
        << "all but the one that is disabled";
    EXPECT_TRUE(reached.contains(QStringLiteral("VolControl")));
}

TEST_F(KeyboardTest, tabTabReturn_opensTheHelp)
{
    Start();
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return}) {
        Press(key);
    }
    EXPECT_EQ(platform.browser.opened, QStringList{ServiceRequests::HelpPage(Configuration())});
}

} // namespace
