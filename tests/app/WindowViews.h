// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "alerts/FrmPopup.h"
#include "app/Appearance.h"
#include "app/FirstTouchFixture.h"
#include "fakes/Desk.h"
#include "forms/Boxes.h"
#include "forms/LinkLabel.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"
#include "locations/FrmWait.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"

#include <QComboBox>

#include <functional>
#include <string>

/// Every window of the program with the program's style, each page of the settings dialog with its controls
/// enabled and disabled.
class WindowViews : public FirstTouchFixture
{
protected:
    using Check = std::function<void(QWidget& window)>;

    WindowViews()
    {
        SetAppearance();
        forms.Register(FrmAlerts::kName, [this] { return std::make_unique<FrmAlerts>(forms, signup); });
        forms.Register(FrmLocation::kName, [this] { return std::make_unique<FrmLocation>(forms); });
        forms.Register(FrmNewLoc::kName, [this] { return std::make_unique<FrmNewLoc>(forms); });
        forms.Register(FrmWait::kName, [this] { return std::make_unique<FrmWait>(forms); });
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
        platform.http.reachable = true;
        platform.http.replies[QStringLiteral("getStates.pl")] =
            "<root><a state='Illinois' state_id='17'/></root>";
    }

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
        WriteSettings(OffSettings());
        ViewPages("off", check);
        WriteSettings(OnSettings());
        ViewPages("on", check);
    }

private:
    static QString OnSettings()
    {
        QString text = SettingsText();
        for (const auto& [before, after] : {std::pair{"method=\"ISNA\"", "method=\"User Defined\""},
                                            {"angle1=\"-15\"", "angle1=\"-19.5\""},
                                            {"useAdvWarn=\"false\"", "useAdvWarn=\"true\""},
                                            {"mobileEnabled=\"false\"", "mobileEnabled=\"true\""},
                                            {"mobilePC=\"\"", "mobilePC=\"5521\""},
                                            {"mobileDID=\"\"", "mobileDID=\"0123456789\""},
                                            {"enabled=\"false\"", "enabled=\"true\""},
                                            {"mobileConfirm=\"0\"", "mobileConfirm=\"1\""},
                                            {"audioFile=\"\"", "audioFile=\"/usr/share/sounds/call.mp3\""}}) {
            text.replace(QLatin1String(before), QLatin1String(after));
        }
        return text;
    }
    static QString OffSettings()
    {
        QString text = SettingsText();
        return text.replace(QLatin1String("enabled=\"true\""), QLatin1String("enabled=\"false\""));
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
        for (std::int16_t tab = 1; tab <= 3; ++tab) {
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

    MobileSignup signup{forms};
};
