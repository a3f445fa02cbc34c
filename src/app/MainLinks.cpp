// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainLinks.h"

#include "app/MainControls.h"
#include "engine/Prayers.h"
#include "forms/Areas.h"
#include "forms/Form.h"
#include "forms/Forms.h"
#include "locations/FrmLocation.h"
#include "platform/Desktop.h"
#include "platform/MediaPlayer.h"
#include "platform/Platform.h"
#include "service/ServiceRequests.h"
#include "settings_dialog/FrmAlerts.h"

MainLinks::MainLinks(Form& window, MainControls& controls)
    : m_window(window)
    , m_controls(controls)
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
        OpenPage(*m_controls.LblGetMoreLink, ServiceRequests::SoundFilesPage(m_window.Variables().Settings));
    });
    onClick(m_controls.LblHelp, [this] {
        OpenPage(*m_controls.LblHelp, ServiceRequests::HelpPage(m_window.Variables().Settings));
    });
    new ClickArea(m_controls.Picture2, [this] {
        m_window.Handle([this] {
            m_window.GetPlatform().browser.Open(ServiceRequests::HomePage(m_window.Variables().Settings));
        });
    });
}

void MainLinks::ConnectPointer()
{
    for (LinkLabel* const link : m_window.findChildren<LinkLabel*>()) {
        link->OnMouseMove([this] { m_window.Handle([this] { m_window.SetHandPointer(); }); });
    }
    // Intended: over all other controls the pointer keeps its shape, even the hand of a link that it has
    // left.
    for (QWidget* const place :
         {static_cast<QWidget*>(&m_window), static_cast<QWidget*>(m_controls.FrmOptions),
          static_cast<QWidget*>(m_controls.PrayerFrame)}) {
        new HoverArea(place, [this] { m_window.Handle([this] { m_window.SetDefaultPointer(); }); });
    }
}

bool MainLinks::ClickLblAlertsLink()
{
    const auto trace = [this](int step) {
        m_window.Variables().TraceLoc = QStringLiteral("FrmMain - LblAlertsLink_Click %1").arg(step);
    };
    trace(0);
    DisabledControl link(m_window, *m_controls.LblAlertsLink);
    trace(1);
    try {
        trace(2);
        m_window.Siblings().Touch<FrmAlerts>().Show();
        trace(3);
        const bool isOpen = SelectTab(1);
        trace(4);
        // A dialog that can't show the settings is closed by now. As ActiveForm it would suppress every
        // alert.
        if (isOpen) {
            m_window.Variables().ActiveForm = FrmAlerts::kName;
        }
        trace(5);
        link.Enable();
        return isOpen;
    } catch (const std::exception&) {
        EndWithFatalBox(m_window.GetPlatform(), 4);
        return false;
    }
}

void MainLinks::ClickPrayerLink(LinkLabel& link, std::int16_t tab)
{
    DisabledControl disabled(m_window, link);
    // The first page always comes first: it loads the settings that the other pages show.
    // Intended: SelectTab is outside the failure path of ClickLblAlertsLink, which ends the program.
    if (ClickLblAlertsLink()) {
        SelectTab(tab);
    }
    disabled.Enable();
}

bool MainLinks::SelectTab(std::int16_t tab)
{
    Forms& forms = m_window.Siblings();
    forms.Touch<FrmAlerts>().SelectTab(tab);
    return forms.Loaded(FrmAlerts::kName) != nullptr;
}

void MainLinks::ClickLblLocLink()
{
    DisabledControl link(m_window, *m_controls.LblLocLink);
    try {
        m_window.Enable(false);
        auto& location = m_window.Siblings().Touch(FrmLocation::kName);
        location.Enable(true);
        location.Show();
        m_window.Variables().ActiveForm = FrmLocation::kName;
        link.Enable();
    } catch (const std::exception&) {
        EndWithFatalBox(m_window.GetPlatform(), 3);
    }
}

void MainLinks::OpenPage(LinkLabel& link, const QString& url)
{
    DisabledControl disabled(m_window, link);
    m_window.GetPlatform().browser.Open(url);
    disabled.Enable();
}

SoundControls::SoundControls(Form& form, MainControls& controls)
    : m_player(form.GetPlatform().player)
    , m_controls(controls)
{
    m_controls.LblStopLink->OnClick([this, &form] {
        form.Handle([this] {
            // Disabled at once: the player may report the stop later or never.
            m_controls.LblStopLink->setEnabled(false);
            m_player.Stop();
        });
    });
    m_controls.VolControl->OnChange(
        [this, &form] { form.Handle([this] { m_player.SetVolume(m_controls.VolControl->Value()); }); });
    m_player.SetPlayStateHandler(
        [this, &form](int newState) { form.Handle([this, newState] { OnPlayStateChange(newState); }); });
}

SoundControls::~SoundControls()
{
    m_player.SetPlayStateHandler(nullptr);
}

void SoundControls::ShowVolume()
{
    m_controls.VolControl->SetValue(m_player.Volume());
}

void SoundControls::OnPlayStateChange(int newState)
{
    if (newState == MediaPlayer::kStopped) {
        m_player.ClearPlaylist();
        m_controls.LblStopLink->setEnabled(false);
    }
}
