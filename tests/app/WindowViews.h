// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Appearance.h"
#include "app/ProgramWindowsFixture.h"
#include "forms/Boxes.h"

#include <QComboBox>

#include <functional>
#include <string>

/// Every window of the program with the program's style, each page of the settings dialog with its controls
/// enabled and disabled.
class WindowViews : public ProgramWindowsFixture
{
protected:
    using Check = std::function<void(QWidget& window)>;

    WindowViews() { SetAppearance(); }

    /// Runs @p check on each window while it is visible.
    void ForEachView(const Check& check)
    {
        View(Window(), "main", check);
        View(forms.Touch<DlgStart>(), "splash", check);
        forms.Touch<FrmPopup>().ShowPopup(QStringLiteral("Prayer Time:\nMaghrib: 12:58 PM"), 600);
        View(forms.Touch<FrmPopup>(), "popup", check);
        View(forms.Touch<FrmWait>(), "wait", check);
        View(forms.Touch<FrmLocation>(), "locations", check);
        ViewSearch(check);
        WriteSettings(SettingsWith({{"enabled", "false"}}));
        ViewPages("off", check);
        WriteSettings(OnSettings());
        ViewPages("on", check);
    }

private:
    static QString OnSettings()
    {
        // The longest usable address, of letters of medium width.
        return SettingsWith({{"method", "User Defined"},
                             {"angle1", "-19.5"},
                             {"useAdvWarn", "true"},
                             {"mobileEnabled", "true"},
                             {"mobilePC", "5521"},
                             {"mobileDID", "0123456789"},
                             {"mobileConfirm", "1"},
                             {"enabled", "true"},
                             {"audioFile", "/usr/share/sounds/call.mp3"}})
            .replace(QStringLiteral("<app "),
                     QStringLiteral("<app signup=\"signup@%1\" ").arg(QString(43, u'e')));
    }

    void View(QWidget& window, const std::string& name, const Check& check)
    {
        SCOPED_TRACE(name);
        window.show();
        Desk::Settle();
        KeepPicture(window, name);
        check(window);
        if (&window != &Window()) {
            window.close();
        }
    }
    void ViewSearch(const Check& check)
    {
        auto& search = forms.Touch<FrmNewLoc>();
        View(search, "search", check);
        auto& busy = forms.Touch<FrmNewLoc>();
        busy.Show();
        busy.findChild<QComboBox*>(QStringLiteral("CombState"))->setCurrentIndex(0);
        busy.findChild<TextBox*>(QStringLiteral("TxtCity"))->SetText(QStringLiteral("Ch"));
        platform.http.whileWaiting = [&] { View(busy, "search_busy", check); };
        busy.findChild<LinkLabel*>(QStringLiteral("LblGet2Link"))->Click();
    }
    void ViewPages(const std::string& state, const Check& check)
    {
        // The prayer with the longest name.
        constexpr std::int16_t kMaghribTab = 7;
        for (const std::int16_t tab : {std::int16_t{1}, std::int16_t{2}, kMaghribTab}) {
            auto& dialog = forms.Touch<FrmAlerts>();
            dialog.Show();
            dialog.SelectTab(1);
            dialog.SelectTab(tab);
            View(dialog, "page_" + std::to_string(tab) + '_' + state, check);
        }
    }
    /// Saves a picture for inspection.
    static void KeepPicture(QWidget& window, const std::string& name)
    {
        const QString folder = qEnvironmentVariable("DUSKBEACON_PICTURE_FOLDER");
        if (!folder.isEmpty()) {
            EXPECT_TRUE(
                window.grab().save(folder + u'/' + QString::fromStdString(name) + QStringLiteral(".png")));
        }
    }
};
