// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/FrmAlerts.h"

#include "engine/Prayers.h"
#include "forms/Areas.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"
#include "ui_FrmAlerts.h"

namespace {

constexpr std::int16_t kGeneralTab = 1;
constexpr std::int16_t kMobileTab = 2;

} // namespace

FrmAlerts::FrmAlerts(Forms& forms, MobileSignup& signup)
    : Form(forms, kName, Qt::Window)
    , m_context(*this)
    , m_ui(MakeControls<Ui::FrmAlerts>(*this))
    , m_general(m_context, *m_ui->FrmGeneral)
    , m_mobile(m_context, signup, *m_ui->FrmMobilAlert)
    , m_prayer(m_context, *m_ui->FrmPrayer)
{
    ConnectTabs();
    CentreOver(forms.Loaded(MainForm::kName));
    // Intended: the general and the mobile page have no HoverArea. The hand stays when the mouse moves from a
    // tab straight onto one of them.
    new HoverArea(this, [this] { Handle([this] { SetDefaultPointer(); }); });
}

FrmAlerts::~FrmAlerts() = default;

void FrmAlerts::ConnectTabs()
{
    m_tabLabels = {{kGeneralTab, m_ui->LblGeneral}, {kMobileTab, m_ui->LblMobilAlert}};
    for (const Prayer& prayer : kPrayers) {
        m_tabLabels[prayer.tab] = findChild<LinkLabel*>(prayer.tabLabel);
    }
    for (const auto& [tab, label] : m_tabLabels) {
        label->OnMouseMove([this] { Handle([this] { SetHandPointer(); }); });
        label->OnClick([this, number = tab] { SelectTab(number); });
    }
}

void FrmAlerts::SelectCurrentLabel()
{
    for (const auto& [tab, label] : m_tabLabels) {
        label->SetSelected(tab == m_context.currentTab);
    }
    GiveFocus(*m_tabLabels.at(m_context.currentTab));
}

void FrmAlerts::OnLoad()
{
    m_context.loading = false;
}

void FrmAlerts::OnUnload()
{
    // Intended: a failed step skips the later ones without a message; ActiveForm then stays as it is.
    m_context.RunOrUnload([this] {
        MainForm& main = Siblings().Main();
        main.Enable(true);
        main.UpdateEverything();
        main.TakeFocus();
        Variables().ActiveForm = MainForm::kName;
    });
}

void FrmAlerts::OnGotFocus()
{
    Refresh();
}

void FrmAlerts::HideFrames()
{
    for (QFrame* const frame : {m_ui->FrmGeneral, m_ui->FrmMobilAlert, m_ui->FrmPrayer}) {
        frame->hide();
    }
}

void FrmAlerts::SelectTab(std::int16_t tab)
{
    m_context.RunOrUnload([this, tab] {
        m_context.currentTab = m_tabLabels.contains(tab) ? tab : kGeneralTab;
        SelectCurrentLabel();
        HideFrames();
        if (m_context.currentTab == kGeneralTab) {
            LoadGeneralPage();
        } else if (m_context.currentTab == kMobileTab) {
            m_mobile.LoadMobilePage();
        } else {
            m_prayer.LoadPrayerPage();
        }
    });
}

void FrmAlerts::ShowSignup(const MobileDevice& device, const QString& result)
{
    m_context.RunOrUnload([&] {
        m_mobile.ShowSignup(device, result);
        m_prayer.RefreshMobileReason();
    });
}

void FrmAlerts::LoadGeneralPage()
{
    m_context.RunOrUnload([this] {
        HideFrames();
        m_general.Load();
    });
}
