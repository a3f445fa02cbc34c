// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/GeneralPage.h"
#include "settings_dialog/MobilePage.h"
#include "settings_dialog/PrayerPage.h"

#include <cstdint>
#include <map>
#include <memory>

class LinkLabel;
namespace Ui {
class FrmAlerts;
}

/// The settings dialog: one window with eight pages behind a row of link labels. Each control stores its
/// change in settings.xml at once; there is no Cancel. Closing the dialog makes the main window read the file
/// again.
class FrmAlerts final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmAlerts"};

    FrmAlerts(Forms& forms, MobileSignup& signup);
    ~FrmAlerts() override;

    /// Shows page 1 General, 2 Mobile Alert or the tab of a prayer; any other number shows page 1. The label
    /// of the page gets the keyboard focus. An error closes the dialog without a message.
    void SelectTab(std::int16_t tab);
    /// Stores the result of a sign-up, "1" for a confirmation, and shows it on the mobile page, even if
    /// another page is shown; a prayer page corrects its reason for a grey "Mobile Alert". An error closes
    /// the dialog without a message.
    void ShowSignup(const MobileDevice& device, const QString& result);

protected:
    void OnLoad() override;
    void OnUnload() override;
    void OnGotFocus() override;

private:
    void ConnectTabs();
    /// Marks the label of the current page, and gives it the keyboard focus.
    void SelectCurrentLabel();
    void HideFrames();
    void LoadGeneralPage();

    DialogContext m_context;
    std::unique_ptr<Ui::FrmAlerts> m_ui;
    /// The labels by the number of their page.
    std::map<std::int16_t, LinkLabel*> m_tabLabels;
    GeneralPage m_general;
    MobilePage m_mobile;
    PrayerPage m_prayer;
};
