// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainLinks.h"

#include "app/MainControls.h"
#include "engine/Prayers.h"
#include "forms/Areas.h"
#include "forms/DisabledControl.h"
#include "forms/Forms.h"
#include "forms/Guard.h"
#include "forms/LinkLabel.h"
#include "forms/MainForm.h"
#include "locations/FrmLocation.h"
#include "platform/Browser.h"
#include "platform/Platform.h"
#include "service/ServiceRequests.h"
#include "settings_dialog/FrmAlerts.h"

#include <QGroupBox>
#include <QLabel>

MainLinks::Dialogs MainLinks::DialogsAmong(Forms& forms)
{
    return {[&forms] { forms.Touch(FrmAlerts::kName).Show(); },
            [&forms](std::int16_t tab) {
                forms.Touch<FrmAlerts>().SelectTab(tab);
                return forms.Loaded(FrmAlerts::kName) != nullptr;
            },
            [&forms] {
                Form& location = forms.Touch(FrmLocation::kName);
                location.Enable(true);
                location.Show();
            }};
}

MainLinks::MainLinks(Form& window, MainForm& main, MainControls& controls, Dialogs dialogs)
    : m_window(window)
    , m_main(main)
    , m_controls(controls)
    , m_dialogs(std::move(dialogs))
{
    ConnectClicks();
    ConnectPointer();
}

void MainLinks::ConnectClicks()
{
    const auto onClick = [this](LinkLabel* link, const std::function<void()>& act) {
        link->OnClick([this, act] { m_window.Handle(act); });
    };
    onClick(m_controls.LblAlertsLink, [this] { ClickLblAlertsLink(); });
    onClick(m_controls.LblLocLink, [this] { ClickLblLocLink(); });
    for (const PrayerColumn& column : m_controls.PrayerColumns) {
        onClick(column.link, [this, &column] { ClickPrayerLink(*column.link, column.prayer->tab); });
    }
    onClick(m_controls.LblGetMoreLink, [this] {
        OpenPage(*m_controls.LblGetMoreLink, ServiceRequests::SoundFilesPage(m_main.Settings));
    });
    onClick(m_controls.LblHelp,
            [this] { OpenPage(*m_controls.LblHelp, ServiceRequests::HelpPage(m_main.Settings)); });
    new ClickArea(m_controls.Picture2, [this] {
        m_window.Handle(
            [this] { m_window.Outside().browser.Open(ServiceRequests::HomePage(m_main.Settings)); });
    });
}

void MainLinks::ConnectPointer()
{
    for (LinkLabel* const link : m_window.findChildren<LinkLabel*>()) {
        link->OnMouseMove([this] { m_window.Handle([this] { m_window.SetHandPointer(); }); });
    }
    // Over all other places the pointer stays as it is, so that the hand may outlive the link. That is
    // wanted.
    for (QWidget* const place :
         {static_cast<QWidget*>(&m_window), static_cast<QWidget*>(m_controls.FrmOptions),
          static_cast<QWidget*>(m_controls.PrayerFrame)}) {
        new HoverArea(place, [this] { m_window.Handle([this] { m_window.SetDefaultPointer(); }); });
    }
}

bool MainLinks::ClickLblAlertsLink()
{
    const auto trace = [this](int step) {
        m_main.TraceLoc = QStringLiteral("FrmMain - LblAlertsLink_Click %1").arg(step);
    };
    trace(0);
    DisabledControl link(m_window, *m_controls.LblAlertsLink);
    trace(1);
    try {
        trace(2);
        m_dialogs.ShowAlerts();
        trace(3);
        const bool isOpen = m_dialogs.SelectTab(1);
        trace(4);
        // Settings that can't be shown close the dialog at once. To name it then would drop every alert.
        if (isOpen) {
            m_main.ActiveForm = FrmAlerts::kName;
        }
        trace(5);
        link.Enable();
        return isOpen;
    } catch (const std::exception&) {
        EndWithFatalBox(m_window.Outside(), 4);
        return false;
    }
}

void MainLinks::ClickPrayerLink(LinkLabel& link, std::int16_t tab)
{
    DisabledControl disabled(m_window, link);
    // Each opening goes through the first page: it loads the settings that the other pages show.
    if (ClickLblAlertsLink()) {
        m_dialogs.SelectTab(tab);
    }
    disabled.Enable();
}

void MainLinks::ClickLblLocLink()
{
    DisabledControl link(m_window, *m_controls.LblLocLink);
    try {
        m_main.Enable(false);
        m_dialogs.ShowLocation();
        m_main.ActiveForm = FrmLocation::kName;
        link.Enable();
    } catch (const std::exception&) {
        EndWithFatalBox(m_window.Outside(), 3);
    }
}

void MainLinks::OpenPage(LinkLabel& link, const QString& url)
{
    DisabledControl disabled(m_window, link);
    m_window.Outside().browser.Open(url);
    disabled.Enable();
}
