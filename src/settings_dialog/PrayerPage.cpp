// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/PrayerPage.h"

#include "engine/Prayers.h"
#include "forms/Areas.h"
#include "forms/Form.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "settings_dialog/DialogContext.h"
#include "support/RuntimeError.h"
#include "ui_PrayerPage.h"

namespace {

const QString kAlertIsOff = QStringLiteral("Tick \"Alert on\" first.");

} // namespace

PrayerPage::PrayerPage(DialogContext& context, QFrame& frame)
    : m_context(context)
    , m_frame(frame)
    , m_ui(MakeControls<Ui::PrayerPage>(frame))
{
    for (QFrame* const line : {m_ui->Line1, m_ui->Line2, m_ui->Line3, m_ui->Line4}) {
        // Mouse moves over a drawn line reach the widget behind it.
        line->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    for (QWidget* const control : m_frame.findChildren<QWidget*>()) {
        if (control->accessibleName().contains(u"%1")) {
            m_accessibleNames.emplace_back(control, control->accessibleName());
        }
    }
    Connect();
    m_frame.hide();
}

PrayerPage::~PrayerPage() = default;

void PrayerPage::Connect()
{
    m_ui->ChkAlertMain->OnClick(m_context.RunOrUnloadHandler([this] { OnAlertMainClick(); }));
    StoreOnClick(m_ui->ChkSilAlert, QStringLiteral("popup"));
    StoreOnClick(m_ui->ChkAudioAlert, QStringLiteral("play"));
    StoreOnClick(m_ui->ChkIndMobAlert, QStringLiteral("mobil"));
    m_ui->TxtPath->OnChange(
        m_context.RunOrUnloadHandler([this] { Store(QStringLiteral("audioFile"), m_ui->TxtPath->Text()); }));
    Form& dialog = m_context.Dialog();
    m_ui->LblBrowseLink->OnMouseMove(m_context.RunOrUnloadHandler([&dialog] { dialog.SetHandPointer(); }));
    m_ui->LblBrowseLink->OnClick(m_context.RunOrUnloadHandler([this] { OnBrowseClick(); }));
    for (QWidget* const area :
         {static_cast<QWidget*>(&m_frame), static_cast<QWidget*>(m_ui->FrmFileSelect)}) {
        new HoverArea(area, m_context.RunOrUnloadHandler([&dialog] { dialog.SetDefaultPointer(); }));
    }
}

bool PrayerPage::IsOnPrayer() const
{
    return PrayerOfTab(m_context.currentTab) != nullptr;
}

QString PrayerPage::ElementPath() const
{
    const Prayer* const prayer = PrayerOfTab(m_context.currentTab);
    return prayer == nullptr ? QString() : kAlertsPath + QStringLiteral("//") + prayer->element;
}

void PrayerPage::ShowPrayerName(const QString& caption)
{
    m_ui->LblPrayerName->setText(caption);
    for (const auto& [control, name] : m_accessibleNames) {
        control->setAccessibleName(name.arg(caption));
    }
}

void PrayerPage::LoadPrayerPage()
{
    m_context.loading = true;
    m_frame.show();
    if (const Prayer* const prayer = PrayerOfTab(m_context.currentTab); prayer != nullptr) {
        ShowPrayerName(prayer->caption);
    }
    const QString path = ElementPath();
    const auto isSet = [this, &path](const char16_t* attribute) {
        return IsTrue(m_context.Read(QString::fromUtf16(attribute), path)) ? 1 : 0;
    };
    // Intended: raises Click, which enables or disables the options below, only if the value differs from
    // that of the previous prayer. Otherwise they keep their state.
    m_ui->ChkAlertMain->SetValue(isSet(u"enabled"));
    m_ui->ChkSilAlert->SetValue(isSet(u"popup"));
    m_ui->ChkAudioAlert->SetValue(isSet(u"play"));
    m_ui->TxtPath->SetText(m_context.Read(QStringLiteral("audioFile"), path));
    // Intended: does not depend on ChkAlertMain. A prayer whose alert is off still offers the mobile alert.
    EnableMobileAlert(true);
    m_ui->ChkIndMobAlert->SetValue(isSet(u"mobil"));
    m_context.loading = false;
}

void PrayerPage::EnableMobileAlert(bool isAllowed)
{
    const QString reason = isAllowed ? m_context.MissingStepForMobile() : kAlertIsOff;
    m_ui->ChkIndMobAlert->setEnabled(reason.isEmpty());
    GiveMobileReason(reason);
}

void PrayerPage::RefreshMobileReason()
{
    if (m_ui->ChkIndMobAlert->isEnabled() || m_ui->ChkIndMobAlert->toolTip() == kAlertIsOff) {
        return;
    }
    // Intended: the box stays grey until the page is loaded again.
    const QString step = m_context.MissingStepForMobile();
    GiveMobileReason(
        step.isEmpty() ? QStringLiteral("Your mobile device is registered. Open this page again.") : step);
}

void PrayerPage::GiveMobileReason(const QString& reason)
{
    m_ui->ChkIndMobAlert->setToolTip(reason);
    m_ui->ChkIndMobAlert->setAccessibleDescription(reason);
}

void PrayerPage::OnAlertMainClick()
{
    m_context.Load();
    const bool isTicked = m_ui->ChkAlertMain->Value() == 1;
    m_ui->ChkSilAlert->setEnabled(isTicked);
    m_ui->ChkAudioAlert->setEnabled(isTicked);
    m_ui->FrmFileSelect->setEnabled(isTicked);
    EnableMobileAlert(isTicked);
    if (!m_context.loading && IsOnPrayer()) {
        m_context.Write(QStringLiteral("enabled"), TrueOrFalse(m_ui->ChkAlertMain->Value() != 0),
                        ElementPath());
        m_context.Save();
    }
}

void PrayerPage::StoreOnClick(CheckBox* box, const QString& attribute)
{
    box->OnClick(m_context.RunOrUnloadHandler(
        [this, box, attribute] { Store(attribute, TrueOrFalse(box->Value() != 0)); }));
}

void PrayerPage::Store(const QString& attribute, const QString& value)
{
    if (IsOnPrayer()) {
        m_context.Store({{attribute, value}}, ElementPath());
    }
}

void PrayerPage::OnBrowseClick()
{
    m_ui->LblBrowseLink->setEnabled(false);
    const QString folder = m_context.GetPlatform().process.ApplicationFolder() + QStringLiteral("\\sound");
    // Intended: there is no file dialog, and this error closes the settings dialog. The user chooses a file
    // by typing its path.
    throw RuntimeError(ErrorNumber::kObjectNotSet,
                       QStringLiteral("There is no file dialog to open in ") + folder);
}
