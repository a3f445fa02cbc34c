// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ProgramWindowsFixture.h"
#include "service/ServiceRequests.h"

namespace {

/// The tab order of each window, in both directions.
class KeyboardWalk : public ProgramWindowsFixture
{
protected:
    /// Presses Tab from @p first until it has the focus again, and then Shift+Tab the same way back.
    static void ExpectWalk(const Form& window, const QString& order)
    {
        const QStringList names = order.split(u' ');
        window.findChild<QWidget*>(names.front())->setFocus();
        EXPECT_EQ(Walk(window, Qt::Key_Tab, names.size()), names.join(u' '));
        QStringList back(names.rbegin(), names.rend());
        back.prepend(back.takeLast());
        EXPECT_EQ(Walk(window, Qt::Key_Backtab, names.size()), back.join(u' '));
    }

private:
    static QString Walk(const Form& window, Qt::Key key, qsizetype limit)
    {
        QStringList reached;
        while (reached.size() <= limit && !reached.contains(window.focusWidget()->objectName())) {
            reached << window.focusWidget()->objectName();
            QTest::keyClick(window.windowHandle(), key);
        }
        EXPECT_EQ(window.focusWidget()->objectName(), reached.front()) << "the walk is not closed";
        return reached.join(u' ');
    }
};

const QString kTabs =
    QStringLiteral("LblGeneral LblMobilAlert LblFajr LblShuruq LblDuhr LblAsr Maghrib LblIsha ");

TEST_F(KeyboardWalk, mainWindow_reachesEachLiveControl)
{
    ExpectWalk(OpenMain(), QStringLiteral("LblLocLink LblAlertsLink LblHelp LblGetMoreLink VolControl "
                                          "LblFarjLink LblShuruqLink LblDuhrLink LblAsrLink LblMaghribLink "
                                          "LblIshaLink WebAd"));
}

TEST_F(KeyboardWalk, mainWindowWhileASoundIsPlayed_reachesTheStopLinkToo)
{
    const Form& window = OpenMain();
    Window().EnableStopLink();
    ExpectWalk(window, QStringLiteral("LblLocLink LblAlertsLink LblHelp LblGetMoreLink VolControl "
                                      "LblStopLink LblFarjLink LblShuruqLink LblDuhrLink LblAsrLink "
                                      "LblMaghribLink LblIshaLink WebAd"));
}

TEST_F(KeyboardWalk, generalPage_reachesTheSelectedOptions)
{
    ExpectWalk(OpenAlerts(), kTabs + QStringLiteral("OptISNA OptShafi Opt24Hour ChkDLS ChkAdvWarn CmdClose"));
}

TEST_F(KeyboardWalk, generalPageWithAnglesOfTheUser_reachesBoxesAndBars)
{
    const Form& dialog = OpenAlerts();
    for (const char* const option : {"OptSetByUser", "OptHanafi", "Opt12Hour", "ChkAdvWarn"}) {
        dialog.findChild<QAbstractButton*>(QLatin1String(option))->click();
    }
    ExpectWalk(dialog, kTabs + QStringLiteral("OptSetByUser TxtSetFarjAngle VScroll2 TxtSetIshaAngle "
                                              "VScroll3 OptHanafi Opt12Hour ChkDLS ChkAdvWarn TxtAdvWarn "
                                              "VScroll1 CmdClose"));
}

TEST_F(KeyboardWalk, mobilePage_reachesEachControl)
{
    const Form& dialog = OpenAlerts();
    Click(dialog, "LblMobilAlert");
    ExpectWalk(dialog, kTabs + QStringLiteral("ChkMobilEnable TxtMDID TxtPC CmdMobilReg LblReset"));
}

TEST_F(KeyboardWalk, prayerPages_reachEachLiveControl)
{
    WriteSettings(SettingsWith({{"mobileEnabled", "true"}, {"mobileConfirm", "1"}}));
    ExpectWalk(OpenAlerts("LblFarjLink"),
               kTabs + QStringLiteral("ChkAlertMain ChkSilAlert ChkAudioAlert TxtPath LblBrowseLink "
                                      "ChkIndMobAlert"));
    ExpectWalk(OpenAlerts("LblShuruqLink"), kTabs + QStringLiteral("ChkAlertMain ChkIndMobAlert"));
}

TEST_F(KeyboardWalk, listOfPlaces_reachesEachControl)
{
    ExpectWalk(OpenList(), QStringLiteral("LstLocations CmdSet CmdDel LblNewLocLink"));
}

TEST_F(KeyboardWalk, searchOfPlaces_reachesEachControl)
{
    ExpectWalk(OpenSearch(), QStringLiteral("TxtZipCode LblGetLink CombState TxtCity LblGet2Link "
                                            "LstSearchResults CmdAdd CmdCancel"));
}

TEST_F(KeyboardWalk, popup_reachesItsButton)
{
    ExpectWalk(OpenPopup(), QStringLiteral("Command1"));
}

TEST_F(KeyboardWalk, tabTabReturn_opensTheHelp)
{
    const Form& window = OpenMain();
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return}) {
        QTest::keyClick(window.windowHandle(), key);
    }
    EXPECT_EQ(platform.browser.opened, QStringList{ServiceRequests::HelpPage(Configuration())});
}

TEST_F(KeyboardWalk, prayerLink_opensItsPageWithTheFocusOnItsLabel)
{
    EXPECT_EQ(OpenAlerts("LblAsrLink").focusWidget()->objectName(), u"LblAsr");
}

} // namespace
